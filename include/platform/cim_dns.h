/* CIM hooks: the DNS clients of the BMC. For the common rules see cim_hooks.h.
 *
 * IPMI 2.0 has no commands for DNS. The reference platform asks with OEM commands (docs/oem-commands.md, "DNS": network
 * function 30h, commands 27h and 28h). A firmware that keeps these settings in a file of its own, such as
 * "/conf/ncml.conf", reads and writes that instead. A BMC without DNS settings is a success of the functions that read,
 * with isSupported 0, and a failure of those that write.
 *
 * Names are ASCII: labels of letters, digits and hyphens, 1 to 63 characters each, with dots between them. */
#ifndef PLATFORM_CIM_DNS_H
#define PLATFORM_CIM_DNS_H

#include <stdint.h>

#include "platform/cim_session.h"

#ifdef __cplusplus
extern "C" {
#endif

enum {
    CIM_MAX_DNS_SERVERS = 3,       /* of an IP version of a LAN */
    CIM_MAX_DNS_SUFFIXES = 6,      /* of the search list */
    CIM_DNS_HOST_NAME_SIZE = 64,   /* bytes of a host name with its end */
    CIM_DNS_DOMAIN_NAME_SIZE = 256 /* of a domain name or search list with its end */
};

/* What a LAN takes of its DHCP lease, in place of what is configured. */
enum { CIM_DNS_SERVERS_FROM_DHCP = 1, CIM_DNS_HOST_NAME_FROM_DHCP = 2, CIM_DNS_DOMAIN_FROM_DHCP = 4 };

/* The DNS client of one IP version of a LAN. */
typedef struct {
    uint8_t isSupported;
    uint8_t registersAddress;    /* 1: it registers the LAN's address with the DNS server */
    uint8_t registersWithDomain; /* 1: and the name in that is with the domain's name */
    uint8_t fromDhcp;            /* CIM_DNS_…_FROM_DHCP bits */
    uint8_t serverCount;
    uint8_t servers[CIM_MAX_DNS_SERVERS]
                   [16]; /* in the order in which they are asked; IPv4 addresses have 4 bytes */
    char hostName[CIM_DNS_HOST_NAME_SIZE]; /* one label; empty for none, as the domain's */
    char domainName[CIM_DNS_DOMAIN_NAME_SIZE];
} CIM_DNSConfig;

/* Reads what is configured, or with `inUse` 1 what is used, which may be of the DHCP lease. `ipVersion` is 4 or 6. */
int CIM_GetDNSConfig(IPMI20_SESSION_T* session, CIM_DNSConfig* configuration, uint8_t channel,
                     uint8_t ipVersion, uint8_t inUse, int timeout);
/* Configures all of it, or nothing when it fails. isSupported is not looked at. */
int CIM_SetDNSConfig(IPMI20_SESSION_T* session, const CIM_DNSConfig* configuration, uint8_t channel,
                     uint8_t ipVersion, int timeout);

/* How all DNS clients complete names. */
typedef struct {
    uint8_t isSupported;
    uint8_t appendsPrimarySuffix;  /* 1: the domain of the client */
    uint8_t appendsParentSuffixes; /* 1: and the domains that it is in */
    char suffixes
        [CIM_DNS_DOMAIN_NAME_SIZE]; /* domain names with one blank between them, in the order of trying */
} CIM_DNSSearch;

int CIM_GetDNSSearch(IPMI20_SESSION_T* session, CIM_DNSSearch* search, int timeout);
int CIM_SetDNSSearch(IPMI20_SESSION_T* session, const CIM_DNSSearch* search, int timeout);

#ifdef __cplusplus
}
#endif

#endif
