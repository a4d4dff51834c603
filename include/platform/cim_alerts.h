/* CIM hooks: alert destinations of LANs. For the common rules see cim_hooks.h.
 *
 * The destinations of a channel are its LAN configuration parameters 17, 18 and 19 (IPMI 2.0
 * revision 1.1, 23.1 and 23.2). Selectors 1 to 15 name those that the BMC keeps. */
#ifndef PLATFORM_CIM_ALERTS_H
#define PLATFORM_CIM_ALERTS_H

#include <assert.h>
#include <stdint.h>

#include "platform/cim_session.h"

#ifdef __cplusplus
extern "C" {
#endif

enum { CIM_MAX_LAN_DESTINATIONS = 15 };
enum { CIM_DESTINATION_PET_TRAP = 0, CIM_DESTINATION_EMAIL = 6 /* OEM 1 */ };

typedef struct {
    uint8_t selector; /* 0: the slot is not used */
    uint8_t type;     /* bits 2 to 0: CIM_DESTINATION_…; bit 7: the alert wants an acknowledgement */
    uint8_t acknowledgeTimeout; /* seconds */
    uint8_t retries;
} CIM_LANDestinationType;

typedef struct {
    uint8_t selector; /* 0: the destination has no IPv4 address; all other fields are 0 then */
    uint8_t format;
    uint8_t gateway; /* 0 default gateway, 1 backup gateway */
    uint8_t address[4];
    uint8_t mac[6];
} CIM_LANDestinationAddress;

typedef struct {
    uint8_t isUsed; /* 0: the destination has no IPv6 address, which is 0 then */
    uint8_t format;
    uint8_t gateway;
    uint8_t address[16];
} CIM_LANDestinationV6Address;
static_assert(sizeof(CIM_LANDestinationType) == 4 && sizeof(CIM_LANDestinationAddress) == 13 &&
                  sizeof(CIM_LANDestinationV6Address) == 19,
              "layouts shared with the platform");

/* Both tables hold CIM_MAX_LAN_DESTINATIONS; entry n is selector n + 1. `count` is how many destinations the
 * channel has (parameter 17), at most so many. */
int CIM_GetLANDestinationType_AddrTable(IPMI20_SESSION_T* session, CIM_LANDestinationType* types,
                                        CIM_LANDestinationAddress* addresses, uint8_t* count, uint8_t channel,
                                        int timeout);
/* Sets bits 2 to 0 of the type and keeps the rest. */
int CIM_SetLANDestinationType(IPMI20_SESSION_T* session, uint8_t channel, uint8_t selector, uint8_t type,
                              int timeout);

/* `format` is 0. The MAC address is written as zeros: the BMC resolves it. */
int CIM_SetLANDestinationAddress(IPMI20_SESSION_T* session, uint8_t channel, uint8_t selector, uint8_t format,
                                 const uint8_t* address, int timeout);
int CIM_GetLANDestinationV6Address(IPMI20_SESSION_T* session, uint8_t channel, uint8_t selector,
                                   CIM_LANDestinationV6Address* address, int timeout);
/* `format` is 1. Address :: clears an IPv6 destination and leaves an IPv4 one alone, also on a BMC without
 * IPv6. */
int CIM_SetLANDestinationV6Address(IPMI20_SESSION_T* session, uint8_t channel, uint8_t selector,
                                   uint8_t format, const uint8_t* address, int timeout);

#ifdef __cplusplus
}
#endif

#endif
