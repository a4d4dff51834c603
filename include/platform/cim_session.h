/* CIM hooks: IPMI sessions. For the common rules see cim_hooks.h. */
#ifndef PLATFORM_CIM_SESSION_H
#define PLATFORM_CIM_SESSION_H

#include <stdint.h>

#ifdef __cplusplus
extern "C" {
#endif

/* An IPMI session. The caller owns the storage (a local of the function that opens it), the platform owns the
 * contents: CIM_Create_IPMI20_Session or _Ext fills it, CIM_Close_Session releases what it holds. A platform
 * may keep a pointer in it, or the whole session. */
typedef struct {
    union {
        void* handle;
        uint64_t alignment;
        uint8_t storage[1024];
    } platform;
} IPMI20_SESSION_T;

/* Opens an IPMI session with the settings of the SMASH database's session row (smash_db.h, IPMISessionInfo).
 *
 *   address          where the BMC is; what the text means depends on `interfaceType`
 *   port             UDP port of an RMCP+ session, 623 by default
 *   userName         at most 16 characters
 *   password         at most 20 characters
 *   interfaceType    0 RMCP+ over LAN (address: host name or IP address),
 *                    1 the local IPMI device (address: "openipmi" for the one of Linux, /dev/ipmi0; "kcs",
 *                    "ssif" or "sunbmc" for a driver without it; empty for what is found),
 *                    2 virtual BMC (address: path of its state file)
 *   cipherSuite      IPMI 2.0 cipher suite ID of an RMCP+ session, 3 where nothing is known
 *   workaroundFlags  bits of the platform's IPMI library for BMCs that deviate from IPMI 2.0, 0 for none
 *   retransmission   milliseconds until an unanswered message is sent again, 0 for the platform's default
 *   privilegeLevel   IPMI privilege level asked for, 4 administrator */
int CIM_Create_IPMI20_Session(IPMI20_SESSION_T* session, const char* address, uint16_t port,
                              const char* userName, const char* password, int interfaceType, int cipherSuite,
                              int workaroundFlags, int retransmission, int privilegeLevel, int timeout);

/* Opens a session of the local controller on behalf of a request's user.
 *
 *   userName         the requesting user, as the controller's user table names it
 *   address          4 bytes, IPv4 address the request came from, most significant byte first
 *   interfaceType    as above
 *   privilegeLevel   4, administrator
 *   flags            0 */
int CIM_Create_IPMI20_Session_Ext(IPMI20_SESSION_T* session, const char* userName, const uint8_t* address,
                                  int interfaceType, int privilegeLevel, int flags, int timeout);

/* Closes a session and releases what it holds. Closing a session twice is allowed and does nothing. */
int CIM_Close_Session(IPMI20_SESSION_T* session);

#ifdef __cplusplus
}
#endif

#endif
