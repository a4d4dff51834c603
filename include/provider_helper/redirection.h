/* Redirection: the host's serial port (text), its screen with keyboard and mouse (KVM), and media that it sees as drives.
 *
 * Text is IPMI's Serial over LAN (SOL; CIM_GetSOLConfig and its siblings): each LAN channel that has it is a service, and
 * each instance that can be active an access point. There is nothing of it on a BMC without SOL. The others are services
 * of the BMC (CIM_GetServiceConf): their access points stay without a state where the BMC does not tell.
 *
 * Integer lists end with a negative number. */
#ifndef PROVIDER_HELPER_REDIRECTION_H
#define PROVIDER_HELPER_REDIRECTION_H

#include "provider_helper/utility.h"

#ifdef __cplusplus
extern "C" {
#endif

/* ---- Services ------------------------------------------------------------------------------------------ */

typedef struct {
    char SystemCreationClassName[256]; /* key; "CIM_SPComputerSystem" */
    char CreationClassName[256];       /* key */
    char SystemName[256];              /* key */
    char Name[256]; /* key; "TextRedirectionService*Channel-<IPMI channel>", "KVMRedirectionService",
                       "MediaRedirectionService", "USBRedirectionService" */
    char ElementName[128];
    char Description
        [256]; /* of text, see PH_Fill_TextRedirectionService; empty, and not published, of others */
    int OperationalStatus[2]; /* 2 OK, 10 stopped, 0 unknown: the BMC does not tell */
    uint16_t HealthState;     /* 5 OK, 0 unknown: it is not enabled */
    uint16_t EnabledState; /* 2 enabled: at least one of its access points is, 3 disabled; 0 not published */
    uint16_t RequestedState;        /* 12 not applicable */
    int RedirectionServiceType[2];  /* 2 text, 3 KVM, 4 USB, 5 media */
    uint16_t MaxCurrentEnabledSAPs; /* 0, not published: the BMC does not tell */
    uint16_t SharingMode;           /* 2 exclusive, 3 shared: several sessions at a time; 0 unknown */
} RedirectionServiceRecord;

/* RequestStateChange (2 enabled, 3 disabled) lets SOL be activated on the service's channel, or not; an active session
 * goes on. */
PH_DECLARE_CLASS_FAMILY(TextRedirectionService, RedirectionServiceRecord);
/* Fills everything but the keys. The description tells what no property has, as far as the BMC does: "Serial over LAN on
 * channel 1; UDP port 623; 115200 bit/s; privilege level Administrator; encryption required; authentication required".
 * Returns 0. */
PH_EXPORT int PH_Fill_TextRedirectionService(uint8_t channel, const CIM_SOLConfig* config,
                                             const CIM_SOLActivation* activation,
                                             RedirectionServiceRecord* record);
PH_EXPORT extern const char* const g_TextRedirectionServiceKeyList[4];

/* KVM and media. Both these and the USB service are switched at their access points. */
PH_DECLARE_CLASS_FAMILY(RedirectionService, RedirectionServiceRecord);
/* Fills what follows from the record's Name. Returns -1 for a Name that none has. */
PH_EXPORT int PH_Fill_RedirectionService(IPMI20_SESSION_T* session, RedirectionServiceRecord* record);
PH_EXPORT extern const char* const g_RedirectionServiceKeyList[4];

/* The media, which the host finds at its USB. */
PH_DECLARE_CLASS_FAMILY(USBRedirectionService, RedirectionServiceRecord);
PH_EXPORT int PH_Fill_USBRedirectionService(IPMI20_SESSION_T* session, RedirectionServiceRecord* record);
PH_EXPORT extern const char* const g_USBRedirectionServiceKeyList[4];

/* ---- Access points ------------------------------------------------------------------------------------- */

typedef struct {
    char SystemCreationClassName[256]; /* key; "CIM_SPComputerSystem" */
    char CreationClassName[256];       /* key */
    char SystemName[256];              /* key */
    char Name[256]; /* key; "TextRedirectionSAP-<instance>", "KVMRedirectionSAP", "CDMEDIARedirectionSAP",
                       "CDMEDIAUSBRedirectionSAP", and so for FDMEDIA and HDMEDIA */
    char ElementName[128];
    char Description
        [256]; /* "TCP port 5900; with encryption 5901; 1 of 2 sessions"; of text "serial port 2", where
                                 it is active and the BMC tells; empty, and not published, where nothing is told */
    int OperationalStatus[2]; /* as a service has it */
    uint16_t HealthState;
    uint16_t
        EnabledState; /* 2 enabled and in use, 6 enabled and waiting for a session, 3 disabled; 0 not published */
    uint16_t RequestedState; /* 12 not applicable */
    uint16_t TextFlowType;   /* of text: 2 character stream */
    uint16_t KVMProtocol;    /* of KVM: 0 unknown, the BMC does not tell */
    uint16_t ConnectionMode; /* of media and USB: 2, it listens */
    char
        SessionTimeout[26]; /* of media and USB: interval after which an idle session ends; empty for never */
} RedirectionSAPRecord;

PH_DECLARE_CLASS_FAMILY(TextRedirectionSAP, RedirectionSAPRecord);
/* Fills everything but the keys, of an instance from 1. It is enabled where SOL is on any channel. `sol` is NULL where
 * the BMC does not tell of an active instance. Returns 0. */
PH_EXPORT int PH_Fill_TextRedirectionSAP(uint8_t instance, bool isEnabled,
                                         const CIM_SOLActivation* activation, const CIM_SOLInstance* sol,
                                         RedirectionSAPRecord* record);
PH_EXPORT extern const char* const g_TextRedirectionSAPKeyList[4];

/* RequestStateChange of these (2 enabled, 3 disabled) switches the service of the BMC, and nothing else of it. Media and
 * USB are two views of the same services. The functions fill what follows from the record's Name, and return -1 for one
 * that none has. */
PH_DECLARE_CLASS_FAMILY(KVMRedirectionSAP, RedirectionSAPRecord);
PH_EXPORT int PH_Fill_KVMRedirectionSAP(IPMI20_SESSION_T* session, RedirectionSAPRecord* record);
PH_EXPORT extern const char* const g_KVMRedirectionSAPKeyList[4];

PH_DECLARE_CLASS_FAMILY(MediaRedirectionSAP, RedirectionSAPRecord);
PH_EXPORT int PH_Fill_MediaRedirectionSAP(IPMI20_SESSION_T* session, RedirectionSAPRecord* record);
PH_EXPORT extern const char* const g_MediaRedirectionSAPKeyList[4];

PH_DECLARE_CLASS_FAMILY(USBRedirectionSAP, RedirectionSAPRecord);
PH_EXPORT int PH_Fill_USBRedirectionSAP(IPMI20_SESSION_T* session, RedirectionSAPRecord* record);
PH_EXPORT extern const char* const g_USBRedirectionSAPKeyList[4];

/* ---- Capabilities -------------------------------------------------------------------------------------- */

/* What a service of redirection can do. Lists of media stand in the order of their kinds: CD, floppy, hard disk. */
typedef struct {
    char InstanceID[64]; /* key; "TextRedirectionCapabilities", "KVMRedirectionCapabilities",
                            "MediaRedirectionCapabilities", "USBRedirectionCapabilities" */
    char ElementName[64];
    bool ElementNameEditSupported;   /* false */
    int RequestedStatesSupported[3]; /* of text: 2 and 3; others are switched at their access points: none */
    int SharingModeSupported[2];     /* as SharingMode of the service */
    int ConnectionModesSupported[2]; /* of media and USB: 2, their access points listen */
    int DevicesSupported[4];         /* of media: 2 CD drive, 4 diskette drive, 3 disk drive */
    int MaxDevicesSupported
        [4]; /* of media: the most sessions of each kind; not published where one is not told */
    int MaxDevicesPerSAP[4];         /* of media: 1 of each */
    int SAPCapabilitiesSupported[2]; /* of USB: 2, its access points are there */
    bool SingleClassPerSAP;          /* of USB: true, mass storage */
} RedirectionCapabilitiesRecord;

/* Of text, where there is SOL, and KVM. */
PH_DECLARE_CLASS_FAMILY(RedirectionServiceCapabilities, RedirectionCapabilitiesRecord);
PH_EXPORT extern const char* const g_RedirectionServiceCapabilitiesKeyList[1];

PH_DECLARE_CLASS_FAMILY(MediaRedirectionCapabilities, RedirectionCapabilitiesRecord);
PH_EXPORT extern const char* const g_MediaRedirectionCapabilitiesKeyList[1];

PH_DECLARE_CLASS_FAMILY(USBRedirectionCapabilities, RedirectionCapabilitiesRecord);
PH_EXPORT extern const char* const g_USBRedirectionCapabilitiesKeyList[1];

#ifdef __cplusplus
}
#endif

#endif
