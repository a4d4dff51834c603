/* CIM hooks: LAN channels and their addresses, in standard IPMI commands. For the common rules see
 * cim_hooks.h.
 *
 * A LAN of the BMC has three names: the LAN index (a small number, 1 for the first), the IPMI channel that
 * carries it, and the interface name (cim_network.h). Those below take the channel, but for the first two.
 *
 * LAN configuration parameters are those of Get and Set LAN Configuration Parameters (IPMI 2.0
 * revision 1.1, 23.1 and 23.2; network function 0Ch, commands 01h and 02h). IPv4 addresses are 4 bytes, IPv6
 * addresses 16, MAC addresses 6, the first byte of the text first. */
#ifndef PLATFORM_CIM_LAN_H
#define PLATFORM_CIM_LAN_H

#include <stdint.h>

#include "platform/cim_session.h"

#ifdef __cplusplus
extern "C" {
#endif

/* IPMI has channels 1 to 11 for LANs and others. */
enum { CIM_MAX_LANS = 11 };

/* LAN indices of the BMC, in order: the channels of medium 802.3 LAN, numbered from 1 (Get Channel Info;
 * IPMI 2.0, 22.24). `lanIndices` holds CIM_MAX_LANS. A BMC without a LAN is a success with a count of 0. Both
 * functions fail when the BMC does not tell of every channel whether it is one, because the indices behind it
 * would be wrong. */
int CIM_GetLANCount(IPMI20_SESSION_T* session, uint8_t* count, uint8_t* lanIndices, int timeout);
/* IPMI channel of a LAN; an index that is not listed fails. */
int CIM_GetChannelNum(IPMI20_SESSION_T* session, uint8_t lanIndex, uint8_t* channel, int timeout);

/* Both read the MAC address, LAN parameter 5; the second is the older name. */
int CIM_Get_MACAddress(IPMI20_SESSION_T* session, uint8_t* mac, uint8_t channel, int timeout);
int LIBIPMI_HL_GetMACAddress(IPMI20_SESSION_T* session, uint8_t* mac, uint8_t channel, int timeout);

/* 802.1q VLAN, LAN parameters 20 and 21: 1 when the channel is in a VLAN, the VLAN's ID (12 bits; 0 where
 * there is none) and the priority of its frames (0 to 7). A BMC without these parameters has no VLAN. */
int CIM_GetVlanStatus(IPMI20_SESSION_T* session, uint8_t* enabled, uint16_t* vlanId, uint8_t* priority,
                      uint8_t channel, int timeout);

/* How a channel gets its address, as LAN parameter 4 says. IPv6 knows the first two. */
enum {
    CIM_ADDRESS_SOURCE_UNSPECIFIED = 0,
    CIM_ADDRESS_SOURCE_STATIC = 1,
    CIM_ADDRESS_SOURCE_DYNAMIC = 2, /* DHCP; for IPv6 also router advertisements */
    CIM_ADDRESS_SOURCE_BIOS = 3,
    CIM_ADDRESS_SOURCE_OTHER = 4
};

/* Reads the IPv4 configuration in use, LAN parameters 3, 4, 6 and 12. */
typedef struct {
    uint8_t source; /* CIM_ADDRESS_SOURCE_… */
    uint8_t address[4];
    uint8_t netmask[4];
    uint8_t gateway[4]; /* default gateway, 0.0.0.0 for none */
} CIM_IPv4NetworkCfg;

int CIM_GetIPv4NetworkCfg(IPMI20_SESSION_T* session, CIM_IPv4NetworkCfg* configuration, uint8_t channel,
                          int timeout);

/* Write LAN parameters 4, 3, 6 and 12. A BMC may refuse addresses while the source is dynamic: set the
 * source first. */
int CIM_SetIPv4Source(IPMI20_SESSION_T* session, uint8_t source, uint8_t channel, int timeout);
int CIM_SetIPv4Address(IPMI20_SESSION_T* session, const uint8_t* address, uint8_t channel, int timeout);
int CIM_SetIPv4NetMask(IPMI20_SESSION_T* session, const uint8_t* netmask, uint8_t channel, int timeout);
int CIM_SetIPv4Gateway(IPMI20_SESSION_T* session, const uint8_t* gateway, uint8_t channel, int timeout);

/* IPv6 as it is configured, LAN parameters 51, 56 (static address 0), 64 and 65. IPMI lets static and dynamic
 * addresses stand side by side. The source is static when the static address is enabled or routers are only
 * the static ones, else dynamic, as on a BMC that has no static address. A BMC without IPv6 parameters fails. */
typedef struct {
    uint8_t source;      /* CIM_ADDRESS_SOURCE_STATIC or _DYNAMIC */
    uint8_t address[16]; /* static address, "::" for none; it is in use when the source is static */
    uint8_t prefixLength;
    uint8_t gateway[16]; /* static router 1 */
} CIM_IPv6NetworkCfg;

int CIM_GetIPv6NetworkCfg(IPMI20_SESSION_T* session, CIM_IPv6NetworkCfg* configuration, uint8_t channel,
                          int timeout);

/* IPv6 addresses in use: the active ones of LAN parameters 56 (static) and 59 (dynamic), in this order,
 * "::" left out. There are none while IPv6 is disabled (parameter 51), and on a BMC without IPv6
 * parameters. */
enum { CIM_MAX_IPV6_ADDRESSES = 32 };
typedef struct {
    uint8_t count;
    struct {
        uint8_t address[16];
        uint8_t prefixLength; /* bits, 0 to 128 */
        uint8_t origin;       /* 0 static, 1 router advertisement (SLAAC), 2 DHCPv6 */
    } addresses[CIM_MAX_IPV6_ADDRESSES];
} CIM_IPv6Addresses;

int CIM_GetAllIPv6Addresses(IPMI20_SESSION_T* session, CIM_IPv6Addresses* addresses, uint8_t channel,
                            int timeout);

/* IPv6 routers in use: the static ones that are set, LAN parameters 65 and 69, where parameter 64 has them used; then
 * those that advertise themselves, 73 and 74, where it has those used. "::" is left out. There are none while IPv6 is
 * disabled (parameter 51), and on a BMC without IPv6 parameters. */
enum { CIM_MAX_IPV6_ROUTERS = 8 };
typedef struct {
    uint8_t count;
    uint8_t addresses[CIM_MAX_IPV6_ROUTERS][16];
} CIM_IPv6Routers;

int CIM_GetIPv6Routers(IPMI20_SESSION_T* session, CIM_IPv6Routers* routers, uint8_t channel, int timeout);

/* CIM_ADDRESS_SOURCE_STATIC: enables IPv6 beside IPv4 where it is disabled (parameter 51) and uses static
 * routers only (64); changes nothing and fails on a BMC that has no static address.
 * CIM_ADDRESS_SOURCE_DYNAMIC: the same with routers by advertisement, and disables the static address (56)
 * where there is one. Others fail. */
int CIM_SetIPv6Source(IPMI20_SESSION_T* session, uint8_t source, uint8_t channel, int timeout);
/* Sets and enables static address 0 (parameter 56), keeping its prefix length. */
int CIM_SetIPv6Address(IPMI20_SESSION_T* session, const uint8_t* address, uint8_t channel, int timeout);
/* Sets the prefix length of static address 0, keeping its address. */
int CIM_SetIPv6Prefix(IPMI20_SESSION_T* session, uint8_t prefixLength, uint8_t channel, int timeout);
/* Sets static router 1 (parameter 65). */
int CIM_SetIPv6Gateway(IPMI20_SESSION_T* session, const uint8_t* gateway, uint8_t channel, int timeout);

#ifdef __cplusplus
}
#endif

#endif
