/* What the host boots from, as DSP1012 (Boot Control) has it.
 *
 * IPMI has one set of boot flags. It names one boot device, for the next boot only or for every boot from now on.
 * So there are two boot configurations, one that lasts and one for the next boot; each has one source at most,
 * and setting one clears the other. A BMC without boot flags has no instances of these classes. */
#ifndef PROVIDER_HELPER_BOOT_H
#define PROVIDER_HELPER_BOOT_H

#include "provider_helper/utility.h"

#ifdef __cplusplus
extern "C" {
#endif

/* CIM_BootService, hosted by the service processor.
 *
 * SetBootConfigRole(BootConfigSetting, Role) makes a configuration the next one. The roles are 1, next for a
 * single use, of the configuration for the next boot, and 0, next, of the one that lasts: this cancels the
 * other. Role 2, default, the lasting configuration has anyhow. */
typedef struct {
    char SystemCreationClassName[256]; /* key */
    char CreationClassName[256];       /* key */
    char SystemName[256];              /* key */
    char Name[256];                    /* key */
    char ElementName[128];
    int OperationalStatus[4];
    uint16_t HealthState;
    uint16_t EnabledState;
    uint16_t RequestedState;
    bool Started;
} BootServiceRecord;

PH_DECLARE_CLASS_FAMILY(BootService, BootServiceRecord);
PH_EXPORT extern const char* const g_BootServiceKeyList[4];

/* CIM_BootServiceCapabilities. Lists end with a negative number. */
typedef struct {
    char InstanceID[256]; /* key */
    char ElementName[128];
    bool ElementNameEditSupported;
    int BootConfigCapabilities[4];
    int BootStringsSupported[4];
} BootServiceCapabilitiesRecord;

PH_DECLARE_CLASS_FAMILY(BootServiceCapabilities, BootServiceCapabilitiesRecord);
PH_EXPORT extern const char* const g_BootServiceCapabilitiesKeyList[1];

/* CIM_BootConfigSetting: "BootConfigSetting-Persistent" and "BootConfigSetting-Once".
 *
 * ChangeBootOrder(Source) sets the boot flags to the source, of which there is one at most, and makes the
 * configuration the next one. Without a source (an empty array) it clears the flags if they are those of the
 * configuration. */
typedef struct {
    char InstanceID[256]; /* key */
    char ElementName[128];
    uint16_t ChangeableType; /* 1 changeable and transient, 2 changeable and persistent */
} BootConfigSettingRecord;

PH_DECLARE_CLASS_FAMILY(BootConfigSetting, BootConfigSettingRecord);
PH_EXPORT extern const char* const g_BootConfigSettingKeyList[1];

/* CIM_BootSourceSetting: one for each boot device selector of IPMI 2.0. Which of them a BMC takes it tells
 * when one is set. StructuredBootString is NULL where DMTF has no word for the device. */
typedef struct {
    char InstanceID[256]; /* key */
    char ElementName[128];
    const char* StructuredBootString; /* "CIM:Network:1", a constant */
    uint16_t FailThroughSupported;    /* 0 unknown */
} BootSourceSettingRecord;

PH_DECLARE_CLASS_FAMILY(BootSourceSetting, BootSourceSettingRecord);
PH_EXPORT extern const char* const g_BootSourceSettingKeyList[1];

/* PHBootChoice tells what the boot flags say: the InstanceIDs of the configuration that is the next one, and of
 * its source. Without a source the system firmware's order holds. Both are empty for a BMC without boot flags. */
typedef struct {
    char configuration[64];
    char source[64];
} PHBootChoice;
/* Returns -1 when the BMC cannot be read. */
PH_EXPORT int PH_GetBootChoice(PHBootChoice* choice);

#ifdef __cplusplus
}
#endif

#endif
