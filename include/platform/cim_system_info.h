/* CIM hooks: what the BMC says of itself, and of the system that it manages. For the common rules see
 * cim_hooks.h. */
#ifndef PLATFORM_CIM_SYSTEM_INFO_H
#define PLATFORM_CIM_SYSTEM_INFO_H

#include <stdint.h>

#include "platform/cim_session.h"

#ifdef __cplusplus
extern "C" {
#endif

/* What Get Device ID (IPMI 2.0, 20.1; network function 06h, command 01h) tells of the BMC and its firmware. */
typedef struct {
    uint8_t deviceId;
    uint8_t deviceRevision; /* 0 to 15 */
    uint8_t firmwareMajor;  /* 0 to 127 */
    uint8_t firmwareMinor;  /* BCD */
    uint8_t ipmiVersion;    /* BCD, the lower digit first: 02h for 2.0 */
    uint32_t manufacturerId;
    uint16_t productId;
    uint8_t hasAuxiliary; /* 1: the answer has the auxiliary firmware revision */
    uint8_t auxiliary[4]; /* its meaning is the manufacturer's own; the most significant byte comes first */
} CIM_DeviceID;
int CIM_GetDeviceID(IPMI20_SESSION_T* session, CIM_DeviceID* device, int timeout);

/* Parameters of the system that are texts (IPMI 2.0, table 22-16c). The last two are those of the operating
 * system that runs now. */
enum {
    CIM_SYSTEM_FIRMWARE_VERSION = 1,
    CIM_SYSTEM_NAME = 2,
    CIM_SYSTEM_PRIMARY_OS_NAME = 3,
    CIM_SYSTEM_OS_NAME = 4,
    CIM_SYSTEM_OS_VERSION = 5
};

#define CIM_SYSTEM_INFO_SIZE 768 /* bytes that a text has at most in UTF-8, its NUL included */

/* Reads such a text, which is UTF-8 whatever the BMC keeps it in: Get System Info Parameters (22.14b; 06h,
 * 59h), a request for each 16 bytes. Of a BMC that has not got the command or the parameter it is empty. */
int CIM_GetSystemInfo(IPMI20_SESSION_T* session, uint8_t parameter, char* text, int timeout);

#ifdef __cplusplus
}
#endif

#endif
