/* CIM hooks: the BMC's network interfaces beyond what IPMI describes. For the common rules see cim_hooks.h.
 *
 * The reference platform asks with OEM commands (docs/oem-commands.md, "Network"). On a BMC without them each
 * function does what its comment says: what cannot be known is a failure. */
#ifndef PLATFORM_CIM_NETWORK_H
#define PLATFORM_CIM_NETWORK_H

#include <stdint.h>

#include "platform/cim_session.h"

#ifdef __cplusplus
extern "C" {
#endif

/* Reads the name of a LAN's interface, "eth0"; a name with "bond" in it is the bonded interface. `name`
 * holds 32 characters; it has no blanks and no '/'. Without the command, the name is "eth" and the LAN
 * index less 1. */
enum { CIM_INTERFACE_NAME_SIZE = 32 };
int CIM_GetLANIndex(IPMI20_SESSION_T* session, uint8_t lanIndex, char* name, int timeout);

/* Whether a LAN is up, and for what. Setting CIM_LAN_DISABLED fails for the last LAN that works: somebody
 * has to reach the BMC. Without the command all of them fail.
 * LIBIPMI_HL_GetLANEnable is the older name. */
enum { CIM_LAN_DISABLED = 0, CIM_LAN_IPV4 = 1, CIM_LAN_IPV6 = 2, CIM_LAN_BOTH = 3 };
int CIM_GetLANEnable(IPMI20_SESSION_T* session, uint8_t lanIndex, uint8_t* enable, int timeout);
int CIM_SetLANEnable(IPMI20_SESSION_T* session, uint8_t lanIndex, uint8_t enable, int timeout);
int LIBIPMI_HL_GetLANEnable(IPMI20_SESSION_T* session, uint8_t lanIndex, uint8_t* enable, int timeout);

/* Bonding joins LANs into one interface, which takes the LAN index, channel, MAC and addresses of its
 * first member. Without the command, bonding is not enabled. */
typedef struct {
    uint8_t enabled;  /* 1 when bonding is on */
    uint8_t lanIndex; /* of the bonded interface */
} CIM_BondInfo;
int CIM_IsBondEnabled(IPMI20_SESSION_T* session, CIM_BondInfo* info, int timeout);

/* The bond's configuration. Switching it off fails when no LAN would work then, switching it on when there
 * are fewer than two members. Without the command both fail. */
typedef struct {
    uint8_t enabled;
    uint8_t mode; /* Linux bonding mode: 0 round robin, 1 active-backup, … 6 adaptive load balancing */
    uint16_t milliseconds; /* between link checks */
    uint16_t members;      /* bit n: LAN index n + 1 */
} CIM_BondConfig;
int CIM_GetBondEnable(IPMI20_SESSION_T* session, CIM_BondConfig* configuration, int timeout);
int CIM_SetBondEnable(IPMI20_SESSION_T* session, const CIM_BondConfig* configuration, int timeout);

/* PHY of a channel: bits 0 to 7 link state (bit 0 link up, bit 1 full duplex, bit 2 auto-negotiation), bits 8
 * to 23 speed in Mb/s, bits 24 to 31 reserved. Without the command it fails. */
int CIM_GetPHYConfig(IPMI20_SESSION_T* session, uint8_t channel, uint32_t* phy, int timeout);

/* Ethernet settings that hold for all interfaces. The function has no session: it opens one of its own with
 * the settings of the SMASH database (smash_db.h, IPMISessionInfo), and fails when there is none. Without the
 * command the settings are full duplex, auto-negotiation, an MTU of 1500 and no capabilities, and `isDefault`
 * is 1; else 0. */
typedef struct {
    uint16_t duplex;           /* 1 full, 2 half */
    uint16_t autoNegotiation;  /* 1 on, 2 off */
    uint16_t mtu;              /* bytes */
    uint8_t capability;        /* other than 0: wake-on-LAN is there (DMTF Capabilities 3) */
    uint8_t enabledCapability; /* other than 0: and it is on */
} CIM_NWExtEthCfg;
int CIM_GetNWExtEthCfg(CIM_NWExtEthCfg* configuration, uint8_t* isDefault);

#ifdef __cplusplus
}
#endif

#endif
