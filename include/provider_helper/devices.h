/* Fans, power supplies and their redundancy; processors, memory and PCI devices of the host. A fan, a supply or a processor is an
 * IPMI entity that sensors watch; the database says which there are (EntityDeviceRow), and the sensors whether they are
 * installed and how they do. */
#ifndef PROVIDER_HELPER_DEVICES_H
#define PROVIDER_HELPER_DEVICES_H

#include "provider_helper/utility.h"

#ifdef __cplusplus
extern "C" {
#endif

/* ---- Fans and power supplies --------------------------------------------------------------------------- */

/* Holds what both have. A device that its presence sensor says is not installed has Availability 11, EnabledState 3,
 * HealthState 10 and OperationalStatus 12 at least: it cannot be put to work, and DSP1015 keeps "enabled but
 * offline" from the members of an N+1 set. Where nothing is known of its health, it is 2, 5, 0 and 0. */
typedef struct {
    char SystemCreationClassName[256]; /* key; "CIM_HostComputerSystem" */
    char SystemName[256];              /* key */
    char CreationClassName[256];       /* key */
    char DeviceID[64];                 /* key; "<IPMI entity ID>.<entity instance>" */
    char ElementName[128];   /* "Fan 2": name and instance of the entity, as its sensors have them */
    uint16_t Availability;   /* 2 unknown, 3 running, 10 degraded, 11 not installed */
    uint16_t EnabledState;   /* 2 enabled, 3 disabled, 5 not applicable */
    uint16_t RequestedState; /* 12 not applicable: IPMI switches neither */
    uint16_t HealthState;
    int OperationalStatus[4]; /* ends with a negative number */
} EntityDeviceRecord;

/* The health of a fan is that of its tachometer's reading (PH_Fill_HealthState). */
typedef struct {
    EntityDeviceRecord device;
    bool VariableSpeed; /* false also where no sensor tells that its speed is controlled */
    bool ActiveCooling; /* true */
} FanRecord;

PH_DECLARE_CLASS_FAMILY(Fan, FanRecord);
/* Fills all but the first three keys and what sensors tell. Returns 0. */
PH_EXPORT int PH_Fill_Fan(const EntityDeviceRow* row, FanRecord* record);
PH_EXPORT extern const char* const g_FanKeyList[4];

/* A supply's ratings are those of its FRU (PowerSupplyInfoRow). Those that it does not give are not published, except
 * TotalOutputPower. The health of a supply is rolled up from its discrete sensors, as PH_DeviceInstance does it. */
typedef struct {
    EntityDeviceRecord device;
    uint32_t TotalOutputPower;      /* mW; 0 unknown */
    uint32_t Range1InputVoltageLow; /* mV */
    uint32_t Range1InputVoltageHigh;
    uint32_t Range1InputFrequencyLow; /* Hz; 0 direct current */
    uint32_t Range1InputFrequencyHigh;
    uint32_t Range2InputVoltageLow;
    uint32_t Range2InputVoltageHigh;
    uint32_t Range2InputFrequencyLow;
    uint32_t Range2InputFrequencyHigh;
} PowerSupplyRecord;

PH_DECLARE_CLASS_FAMILY(PowerSupply, PowerSupplyRecord);
/* Fills the record as PH_Fill_Fan does; `info` may be NULL. */
PH_EXPORT int PH_Fill_PowerSupply(const EntityDeviceRow* row, const PowerSupplyInfoRow* info,
                                  PowerSupplyRecord* record);
PH_EXPORT extern const char* const g_PowerSupplyKeyList[4];

/* ---- Processors, memory and PCI devices ---------------------------------------------------------------- */

/* A processor that is installed, as the host's firmware describes it (ProcessorRow). What it does not say is not published.
 * The health is rolled up from the discrete sensors of the entity. EnabledState and Availability follow from CPUStatus as
 * far as no sensor tells: 3 and 8 for a processor that the user or the firmware disabled. */
typedef struct {
    EntityDeviceRecord device;
    char Description[128]; /* the processor in its maker's words */
    char Role[64];
    uint16_t Family;                 /* 1 other, 2 unknown */
    char OtherFamilyDescription[64]; /* where Family is 1 */
    uint16_t UpgradeMethod;          /* 2 unknown */
    uint32_t MaxClockSpeed;          /* MHz; 0 not known */
    uint32_t CurrentClockSpeed;      /* MHz; 0 not known */
    uint32_t ExternalBusClockSpeed;  /* MHz; 0 not known */
    uint16_t DataWidth;              /* bits; 0 not known */
    uint16_t CPUStatus;              /* 0 unknown */
    int Characteristics[8];          /* ends with a negative number */
    uint16_t NumberOfEnabledCores;   /* 0 not known */
    uint16_t threads;                /* hardware threads, not published; 0 not known */
} ProcessorRecord;

PH_DECLARE_CLASS_FAMILY(Processor, ProcessorRecord);
/* Fills the record as PH_Fill_Fan does; `processor` may be NULL. */
PH_EXPORT int PH_Fill_Processor(const EntityDeviceRow* row, const ProcessorRow* processor,
                                ProcessorRecord* record);
PH_EXPORT extern const char* const g_ProcessorKeyList[4];

/* The cores of the processors. Which of a processor's cores are disabled firmware does not tell: where some are, the state
 * of all is unknown. */
typedef struct {
    char InstanceID
        [320]; /* key; "SMBIOS:<host system name> <DeviceID of the processor>.<number, from 1 on>" */
    char ElementName[64];
    uint16_t EnabledState;     /* 2 enabled, 0 unknown */
    uint16_t RequestedState;   /* 12 not applicable */
    uint16_t HealthState;      /* 0 unknown: no sensor tells of a core */
    int OperationalStatus[2];  /* ends with a negative number */
    uint16_t CoreEnabledState; /* 2 enabled, 0 unknown */
} ProcessorCoreRecord;

PH_DECLARE_CLASS_FAMILY(ProcessorCore, ProcessorCoreRecord);
PH_EXPORT extern const char* const g_ProcessorCoreKeyList[1];

/* The memory of the host as a whole (MemoryRow); none where nothing is known of it. Its health is rolled up from the discrete
 * sensors of all modules. */
typedef struct {
    EntityDeviceRecord device; /* DeviceID "Memory" */
    bool Volatile;             /* true */
    uint16_t Access;           /* 3 read and write */
    uint64_t BlockSize;        /* 1 byte */
    uint64_t NumberOfBlocks;
    char ErrorMethodology[64]; /* "Multi-bit ECC"; empty: not known, not published */
} MemoryRecord;

PH_DECLARE_CLASS_FAMILY(Memory, MemoryRecord);
/* Fills all but the first three keys and what sensors tell. Returns 0. */
PH_EXPORT int PH_Fill_Memory(const MemoryRow* row, MemoryRecord* record);
PH_EXPORT extern const char* const g_MemoryKeyList[4];

/* A device on the host's PCI (PciDeviceRow). No sensor tells of it. */
typedef struct {
    EntityDeviceRecord device; /* DeviceID "PCI 0000:3b:00.0": segment, bus, device and function */
    char Description[256];     /* what it is, and the Tag of the physical element that it is on */
    uint8_t ClassCode;         /* 255: other, or not known; not published then */
    uint8_t BusNumber;
    uint8_t DeviceNumber;
    uint8_t FunctionNumber;
} PCIDeviceRecord;

PH_DECLARE_CLASS_FAMILY(PCIDevice, PCIDeviceRecord);
/* Fills all but the first three keys. Returns 0. */
PH_EXPORT int PH_Fill_PCIDevice(const PciDeviceRow* row, PCIDeviceRecord* record);
PH_EXPORT extern const char* const g_PCIDeviceKeyList[4];

/* ---- Redundancy ---------------------------------------------------------------------------------------- */

/* There is a set for each sensor of event/reading type 0Bh. Its members are the devices within the sensor's entity by the
 * entity associations; where there are none, all devices that the sensor's entity or type is about. */
typedef struct {
    char InstanceID[520];      /* key; "IPMI:<host system name> <DeviceID of the sensor>" */
    char ElementName[64];      /* the sensor's name */
    uint16_t RedundancyStatus; /* 0 unknown, 2 fully redundant, 3 degraded, 4 lost, 5 overall failure */
    int TypeOfSet[4];          /* 2 N+1; ends with a negative number */
    uint32_t MinNumberNeeded;  /* one less than there are members; 0 unknown */
    char VendorIdentifyingInfo[1024]; /* DeviceIDs of the members, separated by blanks */
} RedundancySetRecord;

PH_DECLARE_CLASS_FAMILY(RedundancySet, RedundancySetRecord);
PH_EXPORT extern const char* const g_RedundancySetKeyList[1];

#ifdef __cplusplus
}
#endif

#endif
