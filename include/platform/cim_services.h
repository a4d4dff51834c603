/* CIM hooks: the BMC's network services. For the common rules see cim_hooks.h. */
#ifndef PLATFORM_CIM_SERVICES_H
#define PLATFORM_CIM_SERVICES_H

#include <stdint.h>

#include "platform/cim_session.h"

#ifdef __cplusplus
extern "C" {
#endif

/* A service is named by its bit. */
enum {
    CIM_SERVICE_WEB = 1 << 0,
    CIM_SERVICE_KVM = 1 << 1,
    CIM_SERVICE_CD_MEDIA = 1 << 2,
    CIM_SERVICE_FD_MEDIA = 1 << 3,
    CIM_SERVICE_HD_MEDIA = 1 << 4,
    CIM_SERVICE_SSH = 1 << 5,
    CIM_SERVICE_TELNET = 1 << 6
};

#define CIM_SERVICE_NAME_SIZE 17 /* bytes of a service name with its end */

/* The present state of a service. */
typedef struct {
    char name[CIM_SERVICE_NAME_SIZE]; /* "web", "kvm", "cd-media", "fd-media", "hd-media", "ssh", "telnet" */
    uint8_t currentState;             /* 1 enabled, 0 disabled */
    uint16_t port;                    /* TCP port without encryption, 0 for none */
    uint16_t securePort;              /* TCP port with encryption, 0 for none */
    uint16_t timeout;                 /* seconds after which an idle session ends, 0 for never */
    uint8_t maxSessions;
    uint8_t activeSessions;
} CIM_ServiceConf;

/* The state that a service shall have. */
typedef struct {
    char name[CIM_SERVICE_NAME_SIZE];
    uint8_t enable; /* 1 or 0 */
    uint16_t port;
    uint16_t securePort;
    uint16_t timeout;
    uint8_t maxSessions;
} CIM_ServiceSettings;

/* Both are OEM commands (docs/oem-commands.md: network function 30h, commands 10h and 11h) that a BMC may not
 * have: they fail then. `service` is one CIM_SERVICE_… bit. The change takes effect at once. */
int CIM_GetServiceConf(IPMI20_SESSION_T* session, uint32_t service, CIM_ServiceConf* conf, int timeout);
int CIM_SetServiceConf(IPMI20_SESSION_T* session, uint32_t service, const CIM_ServiceSettings* settings,
                       int timeout);

#ifdef __cplusplus
}
#endif

#endif
