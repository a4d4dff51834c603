/* Installing the BMC's firmware. */
#ifndef PROVIDER_HELPER_FIRMWARE_H
#define PROVIDER_HELPER_FIRMWARE_H

#include "provider_helper/utility.h"

#ifdef __cplusplus
extern "C" {
#endif

/* ---- CIM_SoftwareInstallationService ------------------------------------------------------------------- */

/* The one service, of the service processor. */
typedef struct {
    char SystemCreationClassName[256]; /* key; "CIM_SPComputerSystem" */
    char SystemName[256];              /* key */
    char CreationClassName[256];       /* key */
    char Name[256];                    /* key; "Software Installation Service" */
    char ElementName[64];
    int OperationalStatus[2]; /* 2 OK; ends with a negative number */
    uint16_t HealthState;     /* 5 OK */
    uint16_t EnabledState;    /* 2 enabled */
    uint16_t RequestedState;  /* 12 not applicable */
    bool Started;             /* true */
} SoftwareInstallationServiceRecord;

/* Method InstallFromURI installs the image that "URI" names ("file:///…" or "http://…", at most 1023 bytes).
 * "Target", a reference, is the service processor where it is given; "InstallOptions" may have 4 (install) and 5
 * (update). The method returns 4096 once a job has begun, and the reference to it as "Job": its PercentComplete
 * moves from 0 to 100, its JobStatus tells the step. The job ends when the BMC has come back with the new
 * firmware, or fails with its error (CIM_Error: ErrorType 2 communications, 4 software, 5 hardware), and then
 * the former firmware goes on. Other values, and nothing is begun:
 *   1     the BMC or its platform takes no firmware; an option that is not supported
 *   2     no job could be begun
 *   6     another installation is under way, of this or another process
 *   4097  "Target" is no service processor; 4106: it is another one
 *   4107  there is no such scheme of URIs
 *   4108  a "Collection" is given
 * A "URI" that is missing or too long is refused with status 4, "URI Parameter is Invalid".
 *
 * InstallFromSoftwareIdentity does the same with the image that "Source" refers to, an instance of
 * CIM_SoftwareIdentity whose image the platform keeps (CIM_GetStoredFirmware); any other gives 4107.
 * CheckSoftwareIdentity tells of such an image that the service processor resets itself to start it:
 * "InstallCharacteristics" 2.
 *
 * An installation is a thread of this process. One that ends with its process leaves the former firmware, too,
 * unless the BMC is about to start the new one. */
PH_DECLARE_CLASS_FAMILY(SoftwareInstallationService, SoftwareInstallationServiceRecord);
PH_EXPORT extern const char* const g_SoftwareInstallationServiceKeyList[4];

/* Waits until this process installs nothing, at most so many seconds. Returns 0 when that is so, -1 when it goes
 * on. Providers that are about to be unloaded ask. */
PH_EXPORT int PH_WaitForInstallation(unsigned int seconds);

/* ---- CIM_SoftwareInstallationServiceCapabilities ------------------------------------------------------- */

/* Where the BMC or its platform takes no firmware there are no actions. */
typedef struct {
    char InstanceID[64]; /* key; "SoftwareInstallationServiceCapabilities" */
    char ElementName[64];
    int SupportedAsynchronousActions[3];   /* 3 from a software identity, 5 from a URI; 2 none */
    int SupportedSynchronousActions[2];    /* 2 none */
    char* SupportedTargetTypes[2];         /* "BMC firmware" */
    int SupportedExtendedResourceTypes[2]; /* 2 not applicable */
    bool CanAddToCollection;               /* false */
    int SupportedInstallOptions[3];        /* 4 install, 5 update; published where firmware is taken */
    int SupportedURISchemes[3];            /* 3 file, 5 http; the same */
} SoftwareInstallationServiceCapabilitiesRecord;

PH_DECLARE_CLASS_FAMILY(SoftwareInstallationServiceCapabilities,
                        SoftwareInstallationServiceCapabilitiesRecord);
PH_EXPORT extern const char* const g_SoftwareInstallationServiceCapabilitiesKeyList[1];

#ifdef __cplusplus
}
#endif

#endif
