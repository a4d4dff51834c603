/* Sessions of the BMC's command lines over SSH, Telnet and the command-line protocol (CLP), what they are set
 * to, and what each network service allows. For the conventions see utility.h.
 *
 * What SSH and Telnet have comes from the record of the service (CIM_GetServiceConf). A BMC that does not
 * tell it has no such instances. Under a bit of which the record has another name than that of the service, a
 * maker runs a service of its own: it has neither sessions nor settings here, but its TCP ports. */
#ifndef PROVIDER_HELPER_SERVICE_SESSIONS_H
#define PROVIDER_HELPER_SERVICE_SESSIONS_H

#include "platform/clp_packets.h"
#include "provider_helper/utility.h"

#ifdef __cplusplus
extern "C" {
#endif

/* ---- SSH and Telnet ------------------------------------------------------------------------------------ */

#define PH_SSH_MAX_CIPHERS 32

enum { /* bits of SSHOptions.told */
       PH_SSH_TELLS_KEEP_ALIVE = 1 << 0,
       PH_SSH_TELLS_FORWARD_X11 = 1 << 1,
       PH_SSH_TELLS_COMPRESSION = 1 << 2
};

/* What "/etc/ssh/sshd_config" says of all sessions. A value that it does not say, or that is none, is left
 * out. Number lists end with FFFFh; the texts belong to the record. */
typedef struct {
    uint16_t EnabledSSHVersions[3];                                /* 2 SSHv1, 3 SSHv2 */
    uint16_t EnabledEncryptionAlgorithms[PH_SSH_MAX_CIPHERS + 1];  /* 1 other, 2 DES, 3 DES3, 4 RC4, 5 IDEA */
    char* OtherEnabledEncryptionAlgorithm[PH_SSH_MAX_CIPHERS + 1]; /* names of those that are 1 */
    bool KeepAlive;                                                /* of TCP */
    bool ForwardX11;
    bool Compression;
    uint8_t told; /* which of the three it says */
} SSHOptions;

/* A session, one for each that the service has now: CIM_SSHProtocolEndpoint, CIM_TelnetProtocolEndpoint. The
 * BMC numbers them only. */
typedef struct {
    char SystemCreationClassName[256]; /* key; "CIM_SPComputerSystem" */
    char SystemName[256];              /* key */
    char CreationClassName[256];       /* key */
    char Name[256];                    /* key; "SSHProtocolEndpoint1", … */
    char NameFormat[64];
    char ElementName[64];
    uint16_t ProtocolIFType;       /* 1 other */
    char OtherTypeDescription[64]; /* "SSH", "Telnet" */
    uint16_t EnabledState;         /* 2 enabled */
    uint16_t RequestedState;       /* 12 not applicable */
    uint32_t IdleTimeout;          /* seconds after which an idle session ends, 0 for never */
    SSHOptions ssh;                /* of SSH only */
} LoginEndpointRecord;

PH_DECLARE_CLASS_FAMILY(SSHProtocolEndpoint, LoginEndpointRecord);
PH_DECLARE_CLASS_FAMILY(TelnetProtocolEndpoint, LoginEndpointRecord);
/* Fill all but the keys. Return 0, or -1 when memory is short. */
PH_EXPORT int PH_Fill_SSHProtocolEndpoint(const CIM_ServiceConf* conf, LoginEndpointRecord* record);
PH_EXPORT int PH_Fill_TelnetProtocolEndpoint(const CIM_ServiceConf* conf, LoginEndpointRecord* record);
PH_EXPORT extern const char* const g_SSHProtocolEndpointKeyList[4];
PH_EXPORT extern const char* const g_TelnetProtocolEndpointKeyList[4];

/* What sessions are set to: CIM_SSHSettingData, CIM_TelnetSettingData. Clients may modify IdleTimeout, up to
 * 65535; the record of the service is written at once, with nothing else changed. Refusals: 4 "IdleTimeout
 * Parameter is Invalid", 1 "The BMC refuses the settings". */
typedef struct {
    char InstanceID[64]; /* key; "SSHSettingData", "TelnetSettingData" */
    char ElementName[64];
    uint32_t IdleTimeout; /* seconds, 0 for never */
    SSHOptions ssh;       /* of SSH only */
} LoginSettingRecord;

PH_DECLARE_CLASS_FAMILY(SSHSettingData, LoginSettingRecord);
PH_DECLARE_CLASS_FAMILY(TelnetSettingData, LoginSettingRecord);
PH_EXPORT int PH_Fill_SSHSettingData(const CIM_ServiceConf* conf, LoginSettingRecord* record);
PH_EXPORT int PH_Fill_TelnetSettingData(const CIM_ServiceConf* conf, LoginSettingRecord* record);
PH_EXPORT extern const char* const g_SSHSettingDataKeyList[1];
PH_EXPORT extern const char* const g_TelnetSettingDataKeyList[1];

/* ---- The command-line protocol ------------------------------------------------------------------------- */

/* CIM_CLPProtocolEndpoint: a session of the daemon smashclpd. Its packet library tells of sessions and their
 * options (platform/clp_packets.h); without one, a session is a client process on a terminal, and nobody
 * tells its options. */
typedef struct {
    char SystemCreationClassName[256]; /* key; "CIM_SPComputerSystem" */
    char SystemName[256];              /* key */
    char CreationClassName[256];       /* key */
    char Name[256];                    /* key; "CLPProtocolEndpoint<number of the session or the process>" */
    char NameFormat[64];
    char ElementName[64];
    uint16_t ProtocolIFType;       /* 1 other */
    char OtherTypeDescription[64]; /* "SM CLP" */
    uint16_t EnabledState;         /* 2 enabled */
    uint16_t RequestedState;       /* 12 not applicable */
    CLPOptions options;            /* published where hasOptions is set */
    bool hasOptions;
} CLPProtocolEndpointRecord;

PH_DECLARE_CLASS_FAMILY(CLPProtocolEndpoint, CLPProtocolEndpointRecord);
/* Fills all but the keys; `options` is NULL where nobody tells them. Returns 0. */
PH_EXPORT int PH_Fill_CLPProtocolEndpoint(const CLPOptions* options, CLPProtocolEndpointRecord* record);
PH_EXPORT extern const char* const g_CLPProtocolEndpointKeyList[4];

/* CIM_CLPSettingData, one instance: what new sessions begin with. Clients may modify everything but
 * CurrentDefaultTarget, where there is a packet library. Refusals: 4 "<name> Parameter is Invalid", 1 "The
 * daemon refuses the settings". */
typedef struct {
    char InstanceID[64]; /* key; "CLPSettingData" */
    char ElementName[64];
    CLPOptions options; /* published where hasOptions is set */
    bool hasOptions;
} CLPSettingDataRecord;

PH_DECLARE_CLASS_FAMILY(CLPSettingData, CLPSettingDataRecord);
PH_EXPORT int PH_Fill_CLPSettingData(const CLPOptions* options, CLPSettingDataRecord* record);
PH_EXPORT extern const char* const g_CLPSettingDataKeyList[1];

/* ---- What a service allows ----------------------------------------------------------------------------- */

/* CIM_ProtocolServiceCapabilities, and of SSH, Telnet and CLP their own classes with the same record. */
typedef struct {
    char InstanceID[256]; /* key; "ProtocolServiceCapabilities:KVMProtocolService" */
    char ElementName[256];
    bool ElementNameEditSupported;   /* false */
    int RequestedStatesSupported[4]; /* 2, 3, 11; ends with a negative number */
    uint16_t MaxConnections;
    uint16_t MaxListeningPorts;            /* 0 for a service without a port, which leaves it out */
    bool ListeningPortManagementSupported; /* false: clients add no ports */
} ProtocolServiceCapabilitiesRecord;

PH_DECLARE_CLASS_FAMILY(ProtocolServiceCapabilities, ProtocolServiceCapabilitiesRecord);
PH_DECLARE_CLASS_FAMILY(SSHCapabilities, ProtocolServiceCapabilitiesRecord);
PH_DECLARE_CLASS_FAMILY(TelnetCapabilities, ProtocolServiceCapabilitiesRecord);
PH_DECLARE_CLASS_FAMILY(CLPCapabilities, ProtocolServiceCapabilitiesRecord);
/* Fills all but the key, for the service of that Name; `conf` is NULL for CLP, a daemon of this system.
 * Returns -1 for a Name that no service has. */
PH_EXPORT int PH_Fill_ProtocolServiceCapabilities(const char* serviceName, const CIM_ServiceConf* conf,
                                                  ProtocolServiceCapabilitiesRecord* record);
PH_EXPORT extern const char* const g_ProtocolServiceCapabilitiesKeyList[1];
PH_EXPORT extern const char* const g_SSHCapabilitiesKeyList[1];
PH_EXPORT extern const char* const g_TelnetCapabilitiesKeyList[1];
PH_EXPORT extern const char* const g_CLPCapabilitiesKeyList[1];

#ifdef __cplusplus
}
#endif

#endif
