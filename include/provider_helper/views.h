/* Views: what many instances tell, in one. */
#ifndef PROVIDER_HELPER_VIEWS_H
#define PROVIDER_HELPER_VIEWS_H

#include "provider_helper/utility.h"

#ifdef __cplusplus
extern "C" {
#endif

#define PH_VIEW_SENSORS 256 /* sensors that the view has room for; IPMI numbers 255 of a controller */
#define PH_VIEW_BOOT_SOURCES 16

/* What of the view's system could be told: a property is published where `known` has the bit of its group. */
enum {
    PH_VIEW_PACKAGE = 1,      /* the system chassis */
    PH_VIEW_LOG = 2,          /* the event log */
    PH_VIEW_OS = 4,           /* the operating system */
    PH_VIEW_BIOS_VERSION = 8, /* numbers of the host's firmware: major and minor */
    PH_VIEW_BIOS_REVISION = 16,
    PH_VIEW_BIOS_BUILD = 32,
    PH_VIEW_BIOS_TEXT = 64,
    PH_VIEW_ONE_TIME_BOOT_SOURCE = 128,
    PH_VIEW_PROCESSORS = 256, /* there are some; numbers that are 0 are not known, and not published */
    PH_VIEW_MEMORY = 512
};

/* CIM_PhysicalComputerSystemView: the host with what is known of it, as CIM_HostComputerSystem, CIM_Chassis,
 * CIM_NumericSensor, CIM_Processor, CIM_Memory, CIM_RecordLog, CIM_BootSourceSetting, CIM_SoftwareIdentity and CIM_OperatingSystem have it.
 * Integer lists end with a negative number, text lists with NULL; the texts are heap strings of the record. */
typedef struct {
    char InstanceID[320]; /* key; "PhysicalComputerSystemView:<system name of the host>" */
    char ElementName[128];
    uint32_t known;

    /* The host. */
    uint16_t EnabledState; /* 2 enabled, 3 disabled: it is off; 0 the BMC does not tell */
    uint16_t RequestedState;
    int OperationalStatus[4];
    uint16_t HealthState; /* the worst of the host, its sensors, processors and memory */
    int Dedicated[4];
    char* IdentifyingDescriptions[4];
    char* OtherIdentifyingInfo[4];

    /* Its chassis; a text that is not known is empty, and is not published. */
    bool FRUInfoSupported;
    char Tag[256];
    char Manufacturer[256];
    char Model[256];
    char SerialNumber[256];
    char Version[64];
    char PartNumber[256];

    /* Numeric sensors that can be read: entries with the same index are of the same sensor. */
    uint32_t sensorCount;
    char* NumericSensorElementName[PH_VIEW_SENSORS + 1];
    char* NumericSensorCurrentState[PH_VIEW_SENSORS + 1];
    uint16_t NumericSensorEnabledState[PH_VIEW_SENSORS];
    uint16_t NumericSensorHealthState[PH_VIEW_SENSORS];
    uint16_t NumericSensorPrimaryStatus[PH_VIEW_SENSORS]; /* 0 unknown, 1 OK, 2 degraded, 3 error: what the
                                                             sensor's state means for the system */
    uint16_t NumericSensorBaseUnits[PH_VIEW_SENSORS];
    int32_t NumericSensorUnitModifier[PH_VIEW_SENSORS];
    uint16_t NumericSensorRateUnits[PH_VIEW_SENSORS];
    int32_t NumericSensorCurrentReading[PH_VIEW_SENSORS];
    uint16_t NumericSensorSensorType[PH_VIEW_SENSORS];

    /* The event log, the one entry of its arrays. */
    char* LogInstanceID[2];
    uint64_t LogMaxNumberOfRecords[1];
    uint64_t LogCurrentNumberOfRecords[1];
    uint16_t LogOverWritePolicy[1];
    uint16_t LogState[1];

    /* What it can boot from, and by its index in this list, from 0, what it boots from always and next. */
    char* StructuredBootString[PH_VIEW_BOOT_SOURCES];
    uint8_t bootOrderCount; /* 0 or 1 */
    uint8_t PersistentBootConfigOrder[1];
    uint8_t OneTimeBootSource;

    /* The processors that are installed, of which the first tells family and speeds (MHz), and the memory. */
    uint16_t NumberOfProcessors;
    uint16_t NumberOfProcessorCores;
    uint16_t NumberOfProcessorThreads;
    uint16_t ProcessorFamily;
    uint32_t ProcessorMaxClockSpeed;
    uint32_t ProcessorCurrentClockSpeed;
    uint64_t MemoryBlockSize; /* bytes */
    uint64_t MemoryNumberOfBlocks;

    /* Firmware of the host and of the service processor. */
    uint16_t CurrentBIOSMajorVersion;
    uint16_t CurrentBIOSMinorVersion;
    uint16_t CurrentBIOSRevisionNumber;
    uint16_t CurrentBIOSBuildNumber;
    char CurrentBIOSVersionString[CIM_SYSTEM_INFO_SIZE];
    uint16_t CurrentManagementFirmwareMajorVersion;
    uint16_t CurrentManagementFirmwareMinorVersion;
    char CurrentManagementFirmwareElementName[64];
    char CurrentManagementFirmwareVersionString[64];

    /* The operating system. */
    uint16_t OSType;
    char OSVersion[CIM_SYSTEM_INFO_SIZE]; /* empty, and not published, where none is known to run */
    uint16_t OSEnabledState;
} PhysicalComputerSystemViewRecord;

/* An enumeration fails where one of those classes fails; but a log and boot flags that cannot be read are left out.
 *
 * Methods:
 *   RequestStateChange               that of CIM_HostComputerSystem
 *   ClearLog                         in "LogInstanceID", that of CIM_RecordLog; the value is 0, or 2 when the
 *                                    log was not cleared
 *   ModifyPersistentBootConfigOrder  in "StructuredBootString", an array with one text of the list above or
 *                                    none; out "Job". With none the system firmware's own order holds
 *   SetOneTimeBootSource             in "StructuredBootString", a text of that list; out "Job"
 *   InstallSoftwareFromURI           InstallFromURI of CIM_SoftwareInstallationService, for the service
 *                                    processor; "Classifications" may be 10 (firmware) or 14 (management
 *                                    firmware), any other gives 1, not supported
 * A text that is none of the list, or is missing, is refused with status 4. */
PH_DECLARE_CLASS_FAMILY(PhysicalComputerSystemView, PhysicalComputerSystemViewRecord);
PH_EXPORT extern const char* const g_PhysicalComputerSystemViewKeyList[1];

#ifdef __cplusplus
}
#endif

#endif
