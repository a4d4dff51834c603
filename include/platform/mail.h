/* Mail library of the platform: libsmtp. */
#ifndef PLATFORM_MAIL_H
#define PLATFORM_MAIL_H

#include <assert.h>
#include <stdint.h>

#ifdef __cplusplus
extern "C" {
#endif

/* One mail and the server that takes it: 4514 bytes, numbers little-endian and not aligned, texts UTF-8 and
 * ended by a NUL. Whoever fills it zeroes it first. Mail addresses are plain ones, name@domain in ASCII. */
#pragma pack(push, 1)
typedef struct {
    char userName[65];  /* for AUTH */
    char password[65];  /* secret */
    char hostName[256]; /* the name that the client says hello with; empty: the machine's own */
    char server[46];    /* IPv4 or IPv6 address */
    char recipient[256];
    char moreRecipients[2][256]; /* empty for none */
    char sender[256];            /* address; empty: made from the host's name */
    char moreSenders[256];       /* not used */
    char subject[256];
    char body[1024]; /* lines end with CR LF or LF */
    uint32_t attachments;
    char attachmentNames[1497]; /* not used: there are no attachments */
    uint8_t userId;             /* BMC user that the mail is for */
    uint32_t security;          /* low byte: CIM_SMTP_… of cim_mail.h */
    uint32_t timeout;           /* seconds, for each attempt as a whole; 0 counts as 1 */
    uint32_t retries;           /* attempts after a first one that failed */
    uint32_t retryInterval;     /* seconds between attempts */
    uint32_t port;              /* 0: 25 */
} AlertMailRequest;
#pragma pack(pop)
static_assert(sizeof(AlertMailRequest) == 4514, "layout shared with the platform");

/* Sends one mail and waits for the server's answer, at most (timeout + retryInterval) * (retries + 1)
 * seconds, and the timeout once more where a server does not even answer QUIT. A refusal that is permanent (SMTP replies 5yz) is not tried again, and neither is a server that
 * was to be authenticated to and offers no AUTH, that does not answer within the time-out, or whose machine
 * does not answer for 7 seconds. Alerts wait for each other: a server that kept one waiting in vain, in a
 * time-out or between attempts, is left alone for a minute, in which the function fails at once; where it
 * refused for now, only for this recipient. Returns 0 when the server took the mail, another number
 * otherwise. The request is not kept; its secrets are not logged. */
int smtp_mail(const AlertMailRequest* request);

#ifdef __cplusplus
}
#endif

#endif
