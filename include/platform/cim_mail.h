/* CIM hooks: alerts by e-mail. For the common rules see cim_hooks.h. The functions are those of
 * libCIMTRZHooks.
 *
 * IPMI has no commands for them; the reference platform asks with OEM commands (docs/oem-commands.md,
 * "Mail"). On a BMC without those each function fails. */
#ifndef PLATFORM_CIM_MAIL_H
#define PLATFORM_CIM_MAIL_H

#include <assert.h>
#include <stdint.h>

#include "platform/cim_session.h"

#ifdef __cplusplus
extern "C" {
#endif

/* Reads whom an alert destination of the e-mail kind mails, and with which texts. `userId` is a slot of
 * the BMC's user table, 0 for nobody. A subject has at most 64 bytes and a message 256; the buffers of a
 * caller have one byte more, for the NUL at the end. */
enum { CIM_EMAIL_SUBJECT_SIZE = 64, CIM_EMAIL_MESSAGE_SIZE = 256 };
int CIM_TRZGetEmailDest(IPMI20_SESSION_T* session, uint8_t selector, uint8_t* userId, char* subject,
                        char* message, uint8_t channel, int timeout);
/* Longer texts are cut. */
int CIM_TRZSetEmailDest(IPMI20_SESSION_T* session, uint8_t selector, uint8_t userId, const char* subject,
                        const char* message, uint8_t channel, int timeout);

/* Reads a user's mail address, which is empty for a user without one. `address` holds CIM_USER_EMAIL_SIZE
 * bytes, its end included. */
enum { CIM_USER_EMAIL_SIZE = 256 };
int CIM_TRZGetUserEmail(IPMI20_SESSION_T* session, uint8_t userId, char* address, int timeout);

/* How mail is sent through a server; the password is secret. Texts end with a NUL, except `sender` and
 * `hostName`, which may fill their fields. */
#pragma pack(push, 1)
typedef struct {
    uint8_t isEnabled;
    char userName[65]; /* for AUTH; at most 64 characters */
    char password[65];
    char sender[64];   /* address that the mail comes from */
    char hostName[64]; /* the name that this BMC says hello with */
    uint8_t security;  /* bits: CIM_SMTP_… */
    uint16_t port;     /* little-endian */
} CIM_SMTPInfo;
#pragma pack(pop)
static_assert(sizeof(CIM_SMTPInfo) == 262, "layout shared with the platform");

enum {
    CIM_SMTP_AUTHENTICATE = 1, /* with userName and password */
    CIM_SMTP_STARTTLS = 2      /* encrypted, or not at all */
};

/* Read the primary and the secondary server of a channel. Their IPv4 addresses come as text (46 bytes, its
 * end included; empty or "0.0.0.0" for none), their IPv6 addresses as 16 bytes (:: for none). */
enum { CIM_SMTP_ADDRESS_SIZE = 46 };
int CIM_TRZGetSMTPInfo(IPMI20_SESSION_T* session, CIM_SMTPInfo* info, uint8_t channel, int timeout);
int CIM_TRZGetSMTPServerInfo(IPMI20_SESSION_T* session, char* address, uint8_t channel, int timeout);
int CIM_TRZGetSMTPServerInfoIPv6(IPMI20_SESSION_T* session, uint8_t* address, uint8_t channel, int timeout);
int CIM_TRZGetSMTP2Info(IPMI20_SESSION_T* session, CIM_SMTPInfo* info, uint8_t channel, int timeout);
int CIM_TRZGetSMTPServer2Info(IPMI20_SESSION_T* session, char* address, uint8_t channel, int timeout);
int CIM_TRZGetSMTPServer2InfoIPv6(IPMI20_SESSION_T* session, uint8_t* address, uint8_t channel, int timeout);

#ifdef __cplusplus
}
#endif

#endif
