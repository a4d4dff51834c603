/* The BMC's own network interfaces: ports, LAN and IP endpoints, and the assignment of addresses. For the
 * conventions see utility.h.
 *
 * All instances belong to the service processor: SystemCreationClassName is "CIM_SPComputerSystem",
 * SystemName what PH_GetSPSystemName gives. The ports that are listed are the bonded interface alone when
 * bonding is on, else every LAN of the BMC. What the BMC does not answer is left zero. */
#ifndef PROVIDER_HELPER_NETWORK_H
#define PROVIDER_HELPER_NETWORK_H

#include "provider_helper/utility.h"

#ifdef __cplusplus
extern "C" {
#endif

/* ---- Ports and LAN endpoints --------------------------------------------------------------------------- */

/* CIM_EthernetPort */
typedef struct {
    char SystemCreationClassName[256]; /* key */
    char SystemName[256];              /* key */
    char CreationClassName[256];       /* key */
    char DeviceID[64];                 /* key: EthernetPort<position>:<interface name>:<LAN index> */
    char ElementName[64];
    char Name[64];
    uint16_t PortType;         /* 51 (10-100BaseT) at 100 Mb/s, else 50 (10BaseT) */
    char* NetworkAddresses[8]; /* ended by NULL; the MAC's first 15 characters */
    uint16_t
        Capabilities[16]; /* ended by FFFFh; 3 wake-on-LAN, 0 unknown; none where the BMC tells nothing of
                                  duplex, auto-negotiation and MTU either */
    uint16_t EnabledCapabilities[16];
    uint16_t LinkTechnology;   /* 2 Ethernet */
    char PermanentAddress[64]; /* the whole MAC */
    bool FullDuplex;
    bool AutoSense;
    uint64_t ActiveMaximumTransmissionUnit; /* bytes */
    uint16_t EnabledState;                  /* 2 enabled, 3 disabled, 0 unknown */
    uint16_t RequestedState;                /* last state asked for, 0 when none was */
    uint64_t Speed;                         /* Mb/s times 8388608 in 32 bits: 1000 Mb/s reads 4093640704 */
    uint64_t MaxSpeed;
    uint64_t RequestedSpeed;
} EthernetPortRecord;

PH_DECLARE_CLASS_FAMILY(EthernetPort, EthernetPortRecord);
PH_EXPORT extern const char* const g_EthernetPortKeyList[4];
/* `speed` is in Mb/s. RequestedState is read from "/tmp/ethport_reqstate_<interface name>". Returns -1 when
 * NetworkAddresses cannot be allocated. */
PH_EXPORT int PH_Fill_EthernetPort(EthernetPortRecord* record, const char* macAddress,
                                   const char* interfaceName, const CIM_NWExtEthCfg* configuration,
                                   const uint16_t* speed, int enabled);

/* Enables (2) or disables (3) an interface, or switches it off and on again (any other value), and notes
 * the state in "/tmp/ethport_reqstate_<interface name>". A name with "bond" in it is the bonded interface,
 * one with "eth" a LAN; any other is only noted. A reset takes its pause, 25 s for the bond and 7 s for a
 * LAN, before the function returns. Returns -1 with status 1 and a message when the port is in that state
 * already, when the BMC refused, or when it would have no working interface left. Returns -1 without them
 * when the BMC did not answer. `context` and `arguments` are not looked at. */
PH_EXPORT int RequestStateChange(const CMPIBroker* broker, const CMPIContext* context,
                                 const CMPIArgs* arguments, CMPIStatus* status, int lanIndex,
                                 const char* interfaceName, int requestedState);

/* CIM_LANEndpoint */
typedef struct {
    char SystemCreationClassName[64]; /* key */
    char CreationClassName[64];       /* key */
    char SystemName[64];              /* key */
    char Name[64];                    /* key: LANEndpoint-<interface name> */
    char NameFormat[64];
    uint16_t ProtocolIFType; /* 6 Ethernet CSMA/CD */
    char MACAddress[64];
    char LANID[64];          /* VLAN ID, decimal */
    uint16_t EnabledState;   /* 2 enabled, 3 disabled, 0 unknown */
    uint16_t RequestedState; /* 12 not applicable */
    char ElementName[64];
} LANEndpointRecord;

PH_DECLARE_CLASS_FAMILY(LANEndpoint, LANEndpointRecord);
PH_EXPORT extern const char* const g_LANEndpointKeyList[4];
/* `enable` is a value of CIM_GetLANEnable; above 3 the state is unknown. Returns 0. */
PH_EXPORT int PH_Fill_LANEndpoint(const char* interfaceName, LANEndpointRecord* record,
                                  const char* macAddress, int enable, const char* lanId);

/* CIM_PortController, one fixed instance */
typedef struct {
    char SystemCreationClassName[256]; /* key */
    char SystemName[256];              /* key */
    char CreationClassName[256];       /* key */
    char DeviceID[64];                 /* key */
    char Name[64];
    char ElementName[64];
    uint16_t ControllerType;      /* 2 Ethernet */
    uint16_t ProtocolSupported;   /* 2 unknown */
    uint32_t MaxNumberControlled; /* 0 unlimited */
    uint16_t EnabledState;        /* 5 not applicable */
    uint16_t RequestedState;      /* 12 not applicable */
} PortControllerRecord;

PH_DECLARE_CLASS_FAMILY(PortController, PortControllerRecord);
PH_EXPORT extern const char* const g_PortControllerKeyList[4];
/* Fills all but SystemName. Returns 0. */
PH_EXPORT int PH_Fill_PortController(PortControllerRecord* record);

/* ---- IP endpoints -------------------------------------------------------------------------------------- */

/* CIM_IPProtocolEndpoint: one for each LAN's IPv4 address, one for each of its IPv6 addresses. */
typedef struct {
    char SystemCreationClassName[256]; /* key */
    char CreationClassName[256];       /* key */
    char SystemName[256];              /* key */
    char Name[256]; /* key: IPProtocolEndpoint<count>*Channel-<channel>*<interface name>-<4 or 6> */
    char NameFormat[256];
    uint16_t ProtocolIFType; /* 4096 IPv4, 4097 IPv6 */
    uint16_t EnabledState;   /* 2 enabled */
    uint16_t RequestedState; /* 12 not applicable */
    char ElementName[256];
    char IPv4Address[64]; /* this and the mask of an IPv4 endpoint only */
    char IPv6Address[64]; /* this, type and prefix length of an IPv6 endpoint only */
    char SubnetMask[64];
    uint16_t IPv6AddressType;        /* 6 */
    uint16_t IPv6SubnetPrefixLength; /* bits */
    uint16_t AddressOrigin;          /* 3 static, 4 DHCP, 7 DHCPv6, 8 IPv6 auto-configuration */
} IPProtocolEndpointRecord;

PH_DECLARE_CLASS_FAMILY(IPProtocolEndpoint, IPProtocolEndpointRecord);
PH_EXPORT extern const char* const g_IPProtocolEndpointKeyList[4];
/* `subnetMask` is not looked at for version 6, `prefixLength` not for version 4. Returns 0. */
PH_EXPORT int PH_Fill_IPProtocolEndpoint(IPProtocolEndpointRecord* record, int addressOrigin,
                                         const char* address, const char* subnetMask, int prefixLength,
                                         int ipVersion);

/* Appends an endpoint to a caller's array, whose new count is the number in its Name. With `namesOnly` only
 * the keys are filled. When memory is short the array is freed, pointer and count are cleared, and the result
 * is -1. */
PH_EXPORT int PH_CreateIPProtocolEndpointInstance(IPProtocolEndpointRecord** records, int* count,
                                                  const char* systemName, const char* interfaceName,
                                                  int channel, int addressOrigin, const char* address,
                                                  const char* subnetMask, int prefixLength, int namesOnly,
                                                  int ipVersion);

/* Returns 1 while "/tmp/dhcp6_server_<interface name>" exists, else 0: the DHCPv6 client notes there which
 * server it has its address from. */
PH_EXPORT int PH_IsDHCPServerAddressFilePresent(const char* interfaceName);

/* Walks the channels that CIM_DHCPProtocolEndpoint (network_clients.h) has endpoints of, and has an OEM's DHCP part
 * create its own: for each IPv4 address other than 0.0.0.0 (IP version 4), and once for each channel with an IPv6
 * address other than :: and ::1 (6). Returns 0, or -1 when the BMC cannot be reached or an endpoint was not
 * created. */
PH_EXPORT int PH_Get_All_Lanchannels(const CMPIBroker* broker, const CMPIContext* context);
/* This is what it calls: a library with DHCP classes of its own defines it. Where none is loaded, there is
 * nothing to create. Returns 0 for success. */
int PH_CreateDHCPProtocolEndpointInstance(const CMPIBroker* broker, const CMPIContext* context,
                                          const char* interfaceName, int channel, int ipVersion)
    __attribute__((weak, visibility("default")));

/* ---- Assignment of addresses --------------------------------------------------------------------------- */

/* CIM_StaticIPAssignmentSettingData: the static address that waits to be applied. Clients modify it; nothing
 * reaches the BMC before ApplySettingToIPProtocolEndpoint. Without a staged address there is one of zeros. */
typedef struct {
    char InstanceID[64];    /* key: StaticIPAssignmentSettingData<row, from 1> */
    uint16_t AddressOrigin; /* 3 static */
    char ElementName[256];
    char IPv4Address[64];
    char SubnetMask[64];
    char GatewayIPv4Address[64];
    char IPv6Address[64];
    uint32_t IPv6AddressType;        /* this and the prefix length are published as uint16 */
    uint32_t IPv6SubnetPrefixLength; /* bits, 0 to 128 */
    char GatewayIPv6Address[64];
} StaticIPAssignmentSettingDataRecord;

PH_DECLARE_CLASS_FAMILY(StaticIPAssignmentSettingData, StaticIPAssignmentSettingDataRecord);
PH_EXPORT extern const char* const g_StaticIPAssignmentSettingDataKeyList[1];
PH_EXPORT int PH_Fill_StaticIPAssignmentSettingData(const StaticIPRow* row,
                                                    StaticIPAssignmentSettingDataRecord* record);

/* Checks whether every property of a modify request may be set to the value given. Returns -1 with status
 * 4 and "<name> Parameter is Invalid" for the first that may not. */
PH_EXPORT int SIPASD_Modify_Condition(const CMPIBroker* broker, const PHPropertyList* modifiable,
                                      CMPIStatus* status);
/* Sets one property, checked before, in a record. Returns -1 for a name that cannot be set. */
PH_EXPORT int SetProperty(StaticIPAssignmentSettingDataRecord* record, const char* name, CMPIData value);

/* Store or fill the staged address as it is at first: "0.0.0.0" and "::". Both return 0 or -1. */
PH_EXPORT int InitializeStaticIPTable(SMASH_DB_HANDLE handle);
PH_EXPORT int UpdateStaticIPTable(SMASH_DB_HANDLE handle, const char* ipv4Address, const char* subnetMask,
                                  const char* gatewayIPv4Address, const char* ipv6Address,
                                  int ipv6AddressType, int ipv6SubnetPrefixLength,
                                  const char* gatewayIPv6Address);

/* CIM_IPAssignmentSettingData: the two ways to get an address */
typedef struct {
    char InstanceID[64]; /* key: IPAssignmentSettingData-DHCP, IPAssignmentSettingData-Static */
    char ElementName[256];
    uint16_t AddressOrigin; /* 4 DHCP, 3 static */
} IPAssignmentSettingDataRecord;

PH_DECLARE_CLASS_FAMILY(IPAssignmentSettingData, IPAssignmentSettingDataRecord);
PH_EXPORT extern const char* const g_IPAssignmentSettingDataKeyList[1];
/* `isStatic` chooses between the two. Returns 0. */
PH_EXPORT int PH_Fill_IPAssignmentSettingData(IPAssignmentSettingDataRecord* record, int isStatic);

/* CIM_IPConfigurationService, one instance */
typedef struct {
    char SystemCreationClassName[256]; /* key */
    char CreationClassName[256];       /* key */
    char SystemName[256];              /* key */
    char Name[256];                    /* key */
    char ElementName[256];
    uint16_t EnabledState;   /* 2 enabled */
    uint16_t RequestedState; /* 12 not applicable */
} IPConfigurationServiceRecord;

PH_DECLARE_CLASS_FAMILY(IPConfigurationService, IPConfigurationServiceRecord);
PH_EXPORT extern const char* const g_IPConfigurationServiceKeyList[4];
/* Fills all but SystemName. Returns 0. */
PH_EXPORT int PH_Fill_IPConfigurationService(IPConfigurationServiceRecord* record);

/* Method ApplySettingToIPProtocolEndpoint of the service: in-arguments Configuration (a
 * CIM_IPAssignmentSettingData) and Endpoint (a CIM_IPProtocolEndpoint). The job goes to the out-argument Job,
 * the method's value to `result`: 0, or 2 with -1 and the status. A static address comes from the first
 * CIM_StaticIPAssignmentSettingData. A failure leaves the BMC with what was set until then; the source is set
 * first. */
PH_EXPORT int PH_ApplySettingToIPProtocolEndpoint(const CMPIBroker* broker, const CMPIResult* result,
                                                  const CMPIObjectPath* ref, const CMPIContext* context,
                                                  const CMPIArgs* in, CMPIArgs* out, CMPIStatus* status);
/* Its parts, for the endpoint of that Name. Failures: -1 and status 4. */
PH_EXPORT int PH_ApplySettingToDHCPIP(const CMPIBroker* broker, const char* endpointName, CMPIStatus* status);
/* Removes the staged address on success. */
PH_EXPORT int PH_ApplySettingToStaticIP(const CMPIBroker* broker, const char* endpointName,
                                        const CMPIInstance* setting, CMPIStatus* status);
PH_EXPORT int PH_ApplySettingToStaticIPv6(const CMPIBroker* broker, const char* endpointName,
                                          const CMPIInstance* setting, CMPIStatus* status);

#ifdef __cplusplus
}
#endif

#endif
