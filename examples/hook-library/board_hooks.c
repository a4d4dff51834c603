/* The hooks of a board whose drivers show its state as files: "/run/board/sensor-3" holds the raw value of sensor 3 as a
 * decimal number, "/run/board/power" is "on" or "off". Put what your board has in the place of readText and writeText. */
#include <platform/cim_hooks.h>
#include <platform/sysroot.h>

#include <string.h>

enum { IPMI_OK = 0x00, IPMI_NOT_PRESENT = 0xCB };

/* Reads the first line of a file. Returns 0, or -1 when there is none. */
static int readText(const char* name, char* text, int size) {
    char path[256];
    FILE* file = PH_SysrootPath(name, path, sizeof path) == 0 ? fopen(path, "r") : NULL;
    const int isRead = file != NULL && fgets(text, size, file) != NULL;
    if (file != NULL)
        fclose(file);
    if (!isRead)
        return -1;
    text[strcspn(text, "\n")] = '\0';
    return 0;
}

static int writeText(const char* name, const char* text) {
    char path[256];
    FILE* file = PH_SysrootPath(name, path, sizeof path) == 0 ? fopen(path, "w") : NULL;
    if (file == NULL)
        return -1;
    const int isWritten = fputs(text, file) >= 0;
    return fclose(file) == 0 && isWritten ? 0 : -1;
}

/* ---- Sessions ------------------------------------------------------------------------------------------ */

/* The board needs none, so an open session is a mark. */
static int mark;

int CIM_Create_IPMI20_Session(IPMI20_SESSION_T* session, const char* address, uint16_t port,
                              const char* userName, const char* password, int interfaceType, int cipherSuite,
                              int workaroundFlags, int retransmission, int privilegeLevel, int timeout) {
    (void)address, (void)port, (void)userName, (void)password, (void)interfaceType, (void)cipherSuite;
    (void)workaroundFlags, (void)retransmission, (void)privilegeLevel, (void)timeout;
    session->platform.handle = &mark;
    return 0;
}

int CIM_Close_Session(IPMI20_SESSION_T* session) {
    session->platform.handle = NULL; /* also when it was closed before */
    return 0;
}

static int isOpen(const IPMI20_SESSION_T* session) {
    return session != NULL && session->platform.handle == &mark;
}

/* ---- The board ----------------------------------------------------------------------------------------- */

int CIM_GetDeviceID(IPMI20_SESSION_T* session, CIM_DeviceID* device, int timeout) {
    (void)timeout;
    if (!isOpen(session))
        return -1;
    memset(device, 0, sizeof *device);
    device->deviceId = 0x20;
    device->firmwareMajor = 1;
    device->ipmiVersion = 0x02;          /* 2.0 */
    device->manufacturerId = 0x00FFFFFE; /* reserved; put yours here */
    device->productId = 1;
    return 0;
}

int CIM_GetSensorReading(IPMI20_SESSION_T* session, uint8_t sensorNumber, CIM_SensorReading* answer,
                         int timeout) {
    char name[64];
    char text[16];
    (void)timeout;
    if (!isOpen(session))
        return -1;
    memset(answer, 0, sizeof *answer);
    snprintf(name, sizeof name, "/run/board/sensor-%d", sensorNumber);
    if (readText(name, text, sizeof text) != 0) {
        answer->completionCode = IPMI_NOT_PRESENT; /* the board has answered: a success of the hook */
        return 0;
    }
    answer->completionCode = IPMI_OK;
    answer->reading = (uint8_t)strtoul(text, NULL, 10);
    answer->flags = 1 << 6; /* scanning is enabled */
    return 0;
}

static int setPower(const IPMI20_SESSION_T* session, const char* state) {
    return isOpen(session) ? writeText("/run/board/power", state) : -1;
}

int CIM_PowerUp(IPMI20_SESSION_T* session, int timeout) {
    (void)timeout;
    return setPower(session, "on\n");
}

int CIM_PowerOff(IPMI20_SESSION_T* session, int timeout) {
    (void)timeout;
    return setPower(session, "off\n");
}

int CIM_GetChassisStatus(IPMI20_SESSION_T* session, CIM_ChassisStatus* status, int timeout) {
    char text[16];
    (void)timeout;
    if (!isOpen(session) || readText("/run/board/power", text, sizeof text) != 0)
        return -1; /* not known: a failure, never "off" */
    memset(status, 0, sizeof *status);
    status->power = strcmp(text, "on") == 0;
    return 0;
}
