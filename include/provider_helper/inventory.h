/* The physical inventory: chassis, boards, chips, memory modules, other packages, slots and ports, and what is known of them. */
#ifndef PROVIDER_HELPER_INVENTORY_H
#define PROVIDER_HELPER_INVENTORY_H

#include "provider_helper/utility.h"

#ifdef __cplusplus
extern "C" {
#endif

/* A physical element, whose class follows from its IPMI entity ID. A text that is empty is not known, and is not
 * published. Elements are those that the last sync found: changes of the hardware since then do not show. */
typedef struct {
    char Tag[256];               /* key; that of the PackageRow */
    char CreationClassName[256]; /* key */
    char ElementName[128];       /* as its locator names it, else its entity's name and instance */
    char Description[128];       /* entity's name and instance */
    char Manufacturer[256];
    char Model[256];
    char SerialNumber[256];
    char PartNumber[256];
    char Version[64];
    char UserTracking[256];      /* asset tag */
    uint32_t ManufactureDate;    /* minutes since 1996-01-01 00:00 UTC, published as datetime; 0 not known */
    bool CanBeFRUed;             /* it has a FRU device; published only then */
    uint16_t RemovalConditions;  /* 3 removable when off, 4 removable when on or off; 0 not known */
    uint16_t PackageType;        /* see PH_GetPackageTypeAndName */
    char OtherPackageType[64];   /* where PackageType is 1, other */
    bool HostingBoard;           /* of a card: the system board */
    uint16_t ChassisPackageType; /* of a chassis, as the following three; 0 not known */
    char ChassisTypeDescription[64]; /* where ChassisPackageType is 1, other */
    uint16_t MultipleSystemSupport;  /* 1 true; 0 not known */
    uint16_t RackMountable;          /* 1 true; 0 not known */
} PhysicalElementRecord;

PH_DECLARE_CLASS_FAMILY(Chassis, PhysicalElementRecord);
PH_EXPORT int PH_Fill_Chassis(const PackageRow* row, PhysicalElementRecord* record);
PH_EXPORT extern const char* const g_ChassisKeyList[2];

PH_DECLARE_CLASS_FAMILY(Card, PhysicalElementRecord);
PH_EXPORT int PH_Fill_Card(const PackageRow* row, PhysicalElementRecord* record);
PH_EXPORT extern const char* const g_CardKeyList[2];

PH_DECLARE_CLASS_FAMILY(Chip, PhysicalElementRecord);
PH_EXPORT int PH_Fill_Chip(const PackageRow* row, PhysicalElementRecord* record);
PH_EXPORT extern const char* const g_ChipKeyList[2];

/* These are power supplies, fans, management modules, batteries and disks. `supply` may be NULL. */
PH_DECLARE_CLASS_FAMILY(PhysicalPackage, PhysicalElementRecord);
PH_EXPORT int PH_Fill_PhysicalPackage(const PackageRow* row, const PowerSupplyInfoRow* supply,
                                      PhysicalElementRecord* record);
PH_EXPORT extern const char* const g_PhysicalPackageKeyList[2];

/* A memory module. What neither its FRU device nor the host's firmware tells is not published. */
typedef struct {
    PhysicalElementRecord element;
    uint16_t FormFactor; /* 0 unknown */
    uint16_t MemoryType; /* 0 unknown */
    uint16_t TotalWidth; /* bits; 0 not known */
    uint16_t DataWidth;  /* bits; 0 not known */
    uint64_t Capacity;   /* bytes; 0 not known */
    char BankLabel[64];
    uint32_t ConfiguredMemoryClockSpeed; /* as SMBIOS has it, in MT/s; 0 not known */
    uint32_t MaxMemorySpeed;             /* likewise */
} PhysicalMemoryRecord;

PH_DECLARE_CLASS_FAMILY(PhysicalMemory, PhysicalMemoryRecord);
/* `module` may be NULL. */
PH_EXPORT int PH_Fill_PhysicalMemory(const PackageRow* row, const MemoryModuleRow* module,
                                     PhysicalMemoryRecord* record);
PH_EXPORT extern const char* const g_PhysicalMemoryKeyList[2];

/* A slot, a socket of a processor or memory module, or a port (ConnectorRow). What is 0, or empty, is not known, and not
 * published. */
typedef struct {
    char Tag[256];               /* key */
    char CreationClassName[256]; /* key */
    char ElementName[64];
    char Description
        [256]; /* what it is; of a slot also what is in it, by its Tag: "memory socket with 32.1:DIMM A1" */
    uint16_t ConnectorLayout;
    uint16_t ConnectorGender;
    char ConnectorDescription[64];
    bool SupportsHotPlug;  /* of a slot, as the following three */
    uint16_t MaxDataWidth; /* bits */
    uint16_t MaxLinkWidth;
    uint16_t Number;
} ConnectorRecord;

/* Ports. */
PH_DECLARE_CLASS_FAMILY(PhysicalConnector, ConnectorRecord);
/* Fills all but the keys. Returns 0. */
PH_EXPORT int PH_Fill_PhysicalConnector(const ConnectorRow* row, ConnectorRecord* record);
PH_EXPORT extern const char* const g_PhysicalConnectorKeyList[2];

/* Slots and sockets. PH_Fill_PhysicalConnector fills them too. */
PH_DECLARE_CLASS_FAMILY(Slot, ConnectorRecord);
PH_EXPORT extern const char* const g_SlotKeyList[2];

/* Every physical element has its capabilities. */
typedef struct {
    char InstanceID[320]; /* key; "PhysicalAssetCapabilities:<Tag>" */
    char ElementName[128];
    bool FRUInfoSupported; /* a FRU device says something of the element */
} PhysicalAssetCapabilitiesRecord;

PH_DECLARE_CLASS_FAMILY(PhysicalAssetCapabilities, PhysicalAssetCapabilitiesRecord);
PH_EXPORT int PH_Fill_PhysicalAssetCapabilities(const PackageRow* row,
                                                PhysicalAssetCapabilitiesRecord* record);
PH_EXPORT extern const char* const g_PhysicalAssetCapabilitiesKeyList[1];

#ifdef __cplusplus
}
#endif

#endif
