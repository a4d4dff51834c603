/* The host's operating system, and the firmware of the BMC and of the host. */
#ifndef PROVIDER_HELPER_SOFTWARE_H
#define PROVIDER_HELPER_SOFTWARE_H

#include "provider_helper/utility.h"

#ifdef __cplusplus
extern "C" {
#endif

/* ---- CIM_OperatingSystem ------------------------------------------------------------------------------- */

/* The one operating system of the host, as far as the BMC knows of it. Lists end with a negative number. */
typedef struct {
    char CSCreationClassName[256]; /* key; "CIM_HostComputerSystem" */
    char CSName[256];              /* key */
    char CreationClassName[256];   /* key; "CIM_OperatingSystem" */
    char Name[256];                /* key; "Operating System" */
    char
        ElementName[CIM_SYSTEM_INFO_SIZE]; /* that which runs, else the one that the host starts by default */
    char Version[CIM_SYSTEM_INFO_SIZE];    /* of the one that runs; published where it is known */
    uint16_t OSType;                       /* 36 Linux, 1 other, 0 no name is known */
    char OtherTypeDescription[64];         /* name of another type */
    /* 2 enabled: it runs; 3 disabled: the host is off; 4 it shuts down; 6 enabled but offline: hibernated; 9
     * quiesce: it sleeps; 0 the BMC does not tell. */
    uint16_t EnabledState;
    uint16_t RequestedState;              /* 0 unknown: what others asked for is not recorded */
    uint16_t AvailableRequestedStates[4]; /* 3 and 4 while it is not off; ends with FFFFh */
    int OperationalStatus
        [2];              /* 2 OK, 6 error: it stopped by itself, 9 stopping, 10 stopped, 12 no contact, 0 */
    uint16_t HealthState; /* 5 OK, 10 degraded, 20 major failure, 25 critical failure, 0 unknown */
} OperatingSystemRecord;

/* Method RequestStateChange, as that of the host: states 3 (disabled) and 4 (shut down) ask the operating system
 * to shut down and switch the host off (CIM_SoftOff); any other fails. */
PH_DECLARE_CLASS_FAMILY(OperatingSystem, OperatingSystemRecord);
/* Fills all but the keys, in one IPMI session: from the power of the host, its ACPI state, the system info
 * parameters, and the sensors of the database that watch the operating system. What the BMC does not have is
 * left out. Returns -1 without a session or sensor rows. */
PH_EXPORT int PH_Fill_OperatingSystem(OperatingSystemRecord* record);
PH_EXPORT extern const char* const g_OperatingSystemKeyList[4];

/* ---- CIM_SoftwareIdentity ------------------------------------------------------------------------------ */

/* A version as numbers, each published where `known` has its bit. */
enum {
    PH_VERSION_KNOWN = 1, /* MajorVersion and MinorVersion */
    PH_REVISION_KNOWN = 2,
    PH_BUILD_KNOWN = 4,
    PH_LARGE_BUILD_KNOWN = 8
};

/* Firmware that is installed: that of the BMC, and that of the host where the BMC knows its version. Behind them
 * images for the BMC that the platform keeps for installation (CIM_GetStoredFirmware). */
typedef struct {
    char InstanceID[64]; /* key; "IPMI:BMC Firmware", "IPMI:System Firmware", "IPMI:Image <name>" */
    char ElementName[64];
    uint32_t known;
    uint16_t MajorVersion;
    uint16_t MinorVersion;
    uint16_t RevisionNumber;
    uint16_t BuildNumber;
    uint64_t LargeBuildNumber; /* auxiliary revision of the BMC's firmware */
    bool IsLargeBuildNumber;   /* published where it is */
    char VersionString[CIM_SYSTEM_INFO_SIZE];
    int Classifications[2]; /* 10 firmware, 11 BIOS; ends with a negative number */
    bool IsEntity;          /* true */
} SoftwareIdentityRecord;

PH_DECLARE_CLASS_FAMILY(SoftwareIdentity, SoftwareIdentityRecord);
/* From the BMC's device ID: "2.14", or with an auxiliary revision "2.14.00070001", in hexadecimal. */
PH_EXPORT int PH_Fill_BMCFirmware(const CIM_DeviceID* device, SoftwareIdentityRecord* record);
/* From the version of the host's firmware as the BMC has it. Numbers are read where the text has a word of two
 * to four numbers with dots between them, such as "v2.1.14"; the build is the fourth, or that behind "build". */
PH_EXPORT int PH_Fill_SystemFirmware(const char* version, SoftwareIdentityRecord* record);
PH_EXPORT extern const char* const g_SoftwareIdentityKeyList[1];

#ifdef __cplusplus
}
#endif

#endif
