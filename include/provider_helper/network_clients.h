/* What the BMC is a client of in its networks: DHCP and DNS, and the gateways and servers that it uses.
 *
 * An endpoint or setting belongs to one IP version of a LAN that has an address of it, other than 0.0.0.0, :: and
 * ::1. Its name ends in "*Channel-<channel>*<interface name>-<4 or 6>", behind a count from 1, as the names of IP
 * endpoints do (network.h). Lists of numbers end with FFFFh, lists of texts with NULL, whose texts belong to the
 * record. What the BMC does not tell is left out. */
#ifndef PROVIDER_HELPER_NETWORK_CLIENTS_H
#define PROVIDER_HELPER_NETWORK_CLIENTS_H

#include "provider_helper/utility.h"

#ifdef __cplusplus
extern "C" {
#endif

/* ---- DHCP (DSP1037) ------------------------------------------------------------------------------------ */

/* CIM_DHCPProtocolEndpoint: the DHCP client of an IP version. For IPv6 it is what gets addresses by itself, by DHCPv6
 * or from routers.
 *
 * RequestStateChange sets the source of the LAN's addresses: 2 to dynamic, 3 to static. The client's method value is 0,
 * or 2 when the BMC did not take it; the job is named "DHCPProtocolEndpoint_RequestStateChange_<interface name>-<4 or
 * 6>". Another state is refused with 4. */
typedef struct {
    char SystemCreationClassName[256]; /* key */
    char CreationClassName[256];       /* key */
    char SystemName[256];              /* key */
    char Name[256];                    /* key: DHCPProtocolEndpoint<count>*Channel-… */
    char NameFormat[128];
    char ElementName[128];
    uint16_t ProtocolIFType;      /* 1 other */
    char OtherTypeDescription[8]; /* DHCP */
    uint16_t EnabledState;        /* 2 the source is dynamic, 3 it is not, 0 unknown */
    uint16_t RequestedState;      /* 12 not applicable */
    uint16_t ClientState;         /* 8 bound: there is a lease; 0 unknown */
    uint16_t OptionsReceived[4];  /* 3 subnet mask, 5 router: of an IPv4 lease that has them */
} DHCPProtocolEndpointRecord;

PH_DECLARE_CLASS_FAMILY(DHCPProtocolEndpoint, DHCPProtocolEndpointRecord);
PH_EXPORT extern const char* const g_DHCPProtocolEndpointKeyList[4];
/* Fills all but the keys. Returns 0: a LAN that does not answer has an unknown state. */
PH_EXPORT int PH_Fill_DHCPProtocolEndpoint(IPMI20_SESSION_T* session, DHCPProtocolEndpointRecord* record,
                                           const char* interfaceName, uint8_t channel, int ipVersion);

/* CIM_DHCPCapabilities, one instance for all endpoints */
typedef struct {
    char InstanceID[64]; /* key */
    char ElementName[128];
    bool ElementNameEditSupported;
    uint16_t RequestedStatesSupported[4]; /* 2 enabled, 3 disabled */
    uint16_t
        OptionsSupported[8]; /* 3 subnet mask, 5 router; 8 DNS server, 14 host name, 17 domain name on a BMC
                                     with DNS settings */
} DHCPCapabilitiesRecord;

PH_DECLARE_CLASS_FAMILY(DHCPCapabilities, DHCPCapabilitiesRecord);
PH_EXPORT extern const char* const g_DHCPCapabilitiesKeyList[1];
/* Returns 0. */
PH_EXPORT int PH_Fill_DHCPCapabilities(DHCPCapabilitiesRecord* record, int hasDns);

/* CIM_DHCPSettingData: what a DHCP client asks its server for */
typedef struct {
    char InstanceID[256]; /* key: DHCPSettingData<count>*Channel-… */
    char ElementName[128];
    uint16_t AddressOrigin;  /* 4 DHCP, 7 DHCPv6 */
    uint16_t ProtocolIFType; /* 4096 IPv4, 4097 IPv6 */
    uint16_t
        RequestedOptions[8]; /* 3 subnet mask, 5 router, for IPv4; and what the DNS settings want of DHCP */
} DHCPSettingDataRecord;

PH_DECLARE_CLASS_FAMILY(DHCPSettingData, DHCPSettingDataRecord);
PH_EXPORT extern const char* const g_DHCPSettingDataKeyList[1];
/* Fills all but the key. `dns` is NULL, or not supported, where nothing is asked for. Returns 0. */
PH_EXPORT int PH_Fill_DHCPSettingData(DHCPSettingDataRecord* record, const char* interfaceName, int ipVersion,
                                      const CIM_DNSConfig* dns);

/* ---- DNS (DSP1038) ------------------------------------------------------------------------------------- */

/* A BMC without DNS settings has no instances of these classes. Names consist of labels of letters, digits and
 * hyphens, of 1 to 63 characters, without a hyphen at their ends; domains have at most 253 characters. */

/* CIM_DNSProtocolEndpoint: the DNS client of an IP version, with what it uses now */
typedef struct {
    char SystemCreationClassName[256]; /* key */
    char CreationClassName[256];       /* key */
    char SystemName[256];              /* key */
    char Name[256];                    /* key: DNSProtocolEndpoint<count>*Channel-… */
    char NameFormat[128];
    char ElementName[128];
    uint16_t ProtocolIFType;      /* 1 other */
    char OtherTypeDescription[8]; /* DNS */
    uint16_t EnabledState;        /* 2 enabled */
    uint16_t RequestedState;      /* 12 not applicable */
    char Hostname[64];            /* this and the domain are left out when empty */
    char DomainName[256];
    uint16_t DHCPOptionsToUse[4]; /* 8 DNS server, 14 host name, 17 domain name */
    bool RegisterThisConnectionsAddress;
    bool UseSuffixWhenRegistering;
    bool AppendPrimarySuffixes;
    bool AppendParentSuffixes;
    char* DNSSuffixesToAppend[8];
    bool isTold; /* not published: whether the BMC tells host name to UseSuffixWhenRegistering */
} DNSProtocolEndpointRecord;

PH_DECLARE_CLASS_FAMILY(DNSProtocolEndpoint, DNSProtocolEndpointRecord);
PH_EXPORT extern const char* const g_DNSProtocolEndpointKeyList[4];
/* Fills all but the keys. `inUse` is NULL where the BMC does not tell. Returns -1 when memory is short. */
PH_EXPORT int PH_Fill_DNSProtocolEndpoint(DNSProtocolEndpointRecord* record, const char* interfaceName,
                                          int ipVersion, const CIM_DNSConfig* inUse,
                                          const CIM_DNSSearch* search);

/* CIM_DNSSettingData: what a DNS client is set to. Clients may modify DomainName, RequestedHostname,
 * RegisterThisConnectionsAddress, UseSuffixWhenRegistering, DNSServerAddresses and DHCPOptionsToUse. All are checked
 * before one is written; what is wrong with one is answered with 4 and says so. */
typedef struct {
    char InstanceID[256]; /* key: DNSSettingData<count>*Channel-… */
    char ElementName[128];
    uint16_t AddressOrigin;  /* 2 not applicable */
    uint16_t ProtocolIFType; /* 4096 IPv4, 4097 IPv6 */
    char DomainName[256];    /* this and the host name may be empty */
    char RequestedHostname[64];
    bool UseSuffixWhenRegistering;
    bool RegisterThisConnectionsAddress;
    char* DNSServerAddresses
        [4]; /* CIM_MAX_DNS_SERVERS of the IP version, in the order in which they are asked */
    uint16_t DHCPOptionsToUse[4];
    bool isTold; /* not published, as in the endpoint */
} DNSSettingDataRecord;

PH_DECLARE_CLASS_FAMILY(DNSSettingData, DNSSettingDataRecord);
PH_EXPORT extern const char* const g_DNSSettingDataKeyList[1];
/* Fills all but the key. `configuration` is NULL where the BMC does not tell. Returns -1 when memory is short. */
PH_EXPORT int PH_Fill_DNSSettingData(DNSSettingDataRecord* record, const char* interfaceName, int ipVersion,
                                     const CIM_DNSConfig* configuration);

/* CIM_DNSGeneralSettingData, one instance for all DNS clients. Clients may modify the three last properties; there are
 * at most 6 suffixes, of 255 characters in all with a blank between them. */
typedef struct {
    char InstanceID[64]; /* key */
    char ElementName[128];
    uint16_t AddressOrigin; /* 2 not applicable */
    bool AppendPrimarySuffixes;
    bool AppendParentSuffixes;
    char* DNSSuffixesToAppend[8];
} DNSGeneralSettingDataRecord;

PH_DECLARE_CLASS_FAMILY(DNSGeneralSettingData, DNSGeneralSettingDataRecord);
PH_EXPORT extern const char* const g_DNSGeneralSettingDataKeyList[1];
/* Returns -1 when memory is short. */
PH_EXPORT int PH_Fill_DNSGeneralSettingData(DNSGeneralSettingDataRecord* record, const CIM_DNSSearch* search);

/* ---- Gateways and servers ------------------------------------------------------------------------------ */

/* CIM_RemoteServiceAccessPoint: the gateways and DNS servers that a LAN uses, and the DHCPv6 server that its client has
 * noted in "/tmp/dhcp6_server_<interface name>". */
typedef struct {
    char SystemCreationClassName[256]; /* key */
    char CreationClassName[256];       /* key */
    char SystemName[256];              /* key */
    char Name[256];                    /* key: RemoteServiceAccessPoint<count>*Channel-… */
    char ElementName[128];             /* "DNS Server 2 of eth0": the second that is asked */
    char AccessInfo[64];               /* the address */
    uint16_t InfoFormat;               /* 3 IPv4 address, 4 IPv6 address */
    uint16_t AccessContext;            /* 2 default gateway, 3 DNS server, 6 DHCP server */
} RemoteServiceAccessPointRecord;

PH_DECLARE_CLASS_FAMILY(RemoteServiceAccessPoint, RemoteServiceAccessPointRecord);
PH_EXPORT extern const char* const g_RemoteServiceAccessPointKeyList[4];
/* Fills all but the keys. `address` has the 4 or 16 bytes of the version, `place` counts from 1. Returns 0. */
PH_EXPORT int PH_Fill_RemoteServiceAccessPoint(RemoteServiceAccessPointRecord* record,
                                               const char* interfaceName, int accessContext, int place,
                                               const uint8_t* address, int ipVersion);

#ifdef __cplusplus
}
#endif

#endif
