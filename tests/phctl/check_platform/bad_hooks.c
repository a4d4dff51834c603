/* Hooks of which each breaks its contract in a way of its own. */
#include <platform/cim_hooks.h>

#include <string.h>
#include <unistd.h>

int CIM_Create_IPMI20_Session(IPMI20_SESSION_T* session, const char* address, uint16_t port,
                              const char* userName, const char* password, int interfaceType, int cipherSuite,
                              int workaroundFlags, int retransmission, int privilegeLevel, int timeout) {
    (void)address, (void)port, (void)userName, (void)password, (void)interfaceType, (void)cipherSuite;
    (void)workaroundFlags, (void)retransmission, (void)privilegeLevel, (void)timeout;
    session->platform.storage[0] = 1;
    return 0;
}

int CIM_Close_Session(IPMI20_SESSION_T* session) {
    (void)session;
    return 0;
}

int CIM_GetDeviceID(IPMI20_SESSION_T* session, CIM_DeviceID* device, int timeout) {
    (void)session, (void)timeout;
    memset(device, 0, sizeof *device);
    device->deviceRevision = 0x81;
    return 0;
}

int CIM_GetSystemInfo(IPMI20_SESSION_T* session, uint8_t parameter, char* text, int timeout) {
    (void)session;
    switch (parameter) {
    case CIM_SYSTEM_FIRMWARE_VERSION:
        memset(text, 'x', CIM_SYSTEM_INFO_SIZE);
        break;
    case CIM_SYSTEM_NAME:
        strcpy(text, "caf\xE9"); /* ISO 8859-1 */
        break;
    case CIM_SYSTEM_PRIMARY_OS_NAME:
        memset(text, 'x', CIM_SYSTEM_INFO_SIZE + 1);
        text[CIM_SYSTEM_INFO_SIZE + 1] = '\0';
        break;
    case CIM_SYSTEM_OS_NAME:
        break; /* and nothing is written */
    default:
        *text = '\0';
        sleep((unsigned)timeout + 2);
    }
    return 0;
}

int CIM_GetChassisStatus(IPMI20_SESSION_T* session, CIM_ChassisStatus* status, int timeout) {
    (void)session, (void)timeout;
    memset(status, 0, sizeof *status);
    *(volatile int*)NULL = 0;
    return 0;
}

int CIM_GetACPIPowerState(IPMI20_SESSION_T* session, uint8_t* system, uint8_t* device, int timeout) {
    (void)session, (void)system, (void)device, (void)timeout;
    for (;;)
        pause();
}

int CIM_GetServiceConf(IPMI20_SESSION_T* session, uint32_t service, CIM_ServiceConf* conf, int timeout) {
    (void)session, (void)timeout;
    if (service == CIM_SERVICE_KVM)
        *(volatile int*)NULL = 0;
    memset(conf, 0, sizeof *conf);
    strcpy(conf->name, "web");
    return 0;
}

int CIM_GetLANCount(IPMI20_SESSION_T* session, uint8_t* count, uint8_t* lanIndices, int timeout) {
    (void)session, (void)timeout;
    lanIndices[0] = 1;
    *count = 1;
    return 0;
}

int CIM_GetChannelNum(IPMI20_SESSION_T* session, uint8_t lanIndex, uint8_t* channel, int timeout) {
    (void)session, (void)lanIndex, (void)timeout;
    *channel = 1;
    return 0;
}
