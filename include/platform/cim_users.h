/* CIM hooks: the BMC's users. For the common rules see cim_hooks.h.
 *
 * User IDs, here called slots, are 1 to 63; slot 1 is the one that IPMI calls the null user. Passwords and
 * names are bytes without a NUL; lengths are counted in bytes. A platform does not log, print or keep a
 * password. */
#ifndef PLATFORM_CIM_USERS_H
#define PLATFORM_CIM_USERS_H

#include <stdint.h>

#include "platform/cim_session.h"

#ifdef __cplusplus
extern "C" {
#endif

#define CIM_USER_NAME_SIZE 17         /* bytes of a user name with its end */
#define CIM_USER_PRESENT_CHANNEL 0x0E /* the channel that carries the request */
#define CIM_USER_PASSWORD_20 0x80     /* with a slot: its password has the 20-byte form */
#define CIM_USER_KEEP 0xFF            /* leaves a setting as it is */

/* The number of slots (Get User Access, IPMI 2.0 22.27; network function 06h, command 44h). */
int CIM_GetMaxNumUsers(IPMI20_SESSION_T* session, uint8_t* count, int timeout);

/* The name of a slot's user (Get User Name, 22.29; command 46h) into CIM_USER_NAME_SIZE bytes; empty for a
 * free slot, and for the null user. */
int CIM_GetUser(IPMI20_SESSION_T* session, uint8_t slot, char* name, int timeout);

/* A user's access on a channel (Get User Access, 22.27; command 44h):
 *   bits 3:0  privilege limit: 1 callback, 2 user, 3 operator, 4 administrator, 5 OEM, 15 no access
 *   bit 4     may send IPMI messages
 *   bit 5     may use link authentication
 *   bit 6     the user is enabled; set for a BMC that does not tell
 *   bit 7     may call back only
 * Bits 0 to 5 are as the answer's last byte has them; bits 6 and 7 gather what IPMI has in two bytes. */
int CIM_GetUserAccess(IPMI20_SESSION_T* session, uint8_t slot, uint8_t channel, uint8_t* access, int timeout);

/* Changes a user. Nothing is sent when an argument is not allowed; a failure further on leaves the steps done
 * that came before it: disabling, name, password, access, enabling.
 *
 *   slot                user ID, with CIM_USER_PASSWORD_20 for a password in the 20-byte form
 *   channel             of the access settings
 *   name                1 to 16 bytes, NULL to keep it (Set User Name, 22.28; command 45h)
 *   password            at most 16 bytes, in the 20-byte form 20; NULL for none (Set User Password, 22.30;
 *                       command 47h)
 *   operation           what is done with the password: 2 sets it, 3 compares it with the user's and fails
 *                       when it differs; not looked at without one
 *   privilegeLimit      1 to 5 or 15 as above
 *   messaging           0 or 1: IPMI messaging
 *   linkAuthentication  0 or 1
 *   enable              0 disables the user, 1 enables it (Set User Password too)
 *
 * The last four may be CIM_USER_KEEP. The access settings are written together (Set User Access, 22.26;
 * command 43h), or not at all when all are kept. */
int CIM_ModUser(IPMI20_SESSION_T* session, uint8_t slot, uint8_t channel, const char* name,
                const char* password, uint8_t operation, uint8_t privilegeLimit, uint8_t messaging,
                uint8_t linkAuthentication, uint8_t enable, int timeout);

/* Frees a slot: disables the user, withdraws its access on the present channel and on channel 1, where new
 * users get it, and clears its name. A BMC that refuses a step, as a name that is fixed, is left with the
 * user as it was. IPMI cannot clear a password; that of a slot's next user is set before the user is enabled. */
int CIM_DelUser(IPMI20_SESSION_T* session, uint8_t slot, int timeout);

/* Sessions that users have open with the BMC, this one among them if it is one of a user's. */
#define CIM_MAX_OPEN_SESSIONS 63

typedef struct {
    uint8_t user;      /* slot */
    uint8_t privilege; /* level that the session has now: 1 callback to 5 OEM */
    uint8_t channel;
} CIM_OpenSession;

/* The BMC's open sessions (Get Session Info, 22.20; command 3Dh), at most CIM_MAX_OPEN_SESSIONS. One that ends while
 * they are read is left out. The function may be missing: then nothing says whether a user is logged in. */
int CIM_GetOpenSessions(IPMI20_SESSION_T* session, CIM_OpenSession* sessions, uint8_t* count, int timeout)
    __attribute__((weak));

#ifdef __cplusplus
}
#endif

#endif
