/* SMASH database: the host's processors, memory, slots, ports and PCI devices, as its firmware describes them (SMBIOS, DSP0134).
 * For the common rules see smash_db.h.
 *
 * Codes are the values of the CIM property that is named, a text that is empty is not known. Processors and memory modules
 * are IPMI entities: they are EntityDeviceRow and PackageRow of the same entity, too, by which their sensors and FRU
 * devices are found. */
#ifndef PLATFORM_SMASH_DB_HARDWARE_H
#define PLATFORM_SMASH_DB_HARDWARE_H

#include <stdint.h>

#include "platform/smash_db_handle.h"

#ifdef __cplusplus
extern "C" {
#endif

/* A processor that is installed. Entity ID and instance identify the row. */
typedef struct {
    uint8_t entityId; /* 3, processor (IPMI 2.0 table 43-13) */
    uint8_t entityInstance;
    uint16_t family;           /* CIM_Processor.Family; 2 unknown */
    uint16_t upgradeMethod;    /* CIM_Processor.UpgradeMethod; 2 unknown */
    uint16_t status;           /* CIM_Processor.CPUStatus; 0 unknown */
    uint16_t maxClock;         /* MHz; 0 unknown, as the following two */
    uint16_t currentClock;     /* MHz */
    uint16_t externalBusClock; /* MHz */
    uint16_t cores;            /* 0 unknown */
    uint16_t enabledCores;     /* 0 unknown; no more than cores */
    uint16_t threads;          /* hardware threads of all cores; 0 unknown */
    uint16_t characteristics;  /* SMBIOS processor characteristics (DSP0134, 7.5.9) */
    char role[64];             /* "Central Processor" */
    char version[128];         /* the processor in its maker's words */
} ProcessorRow;

/* The processor of an entity. It is a success with NULL when there is none. */
int db_get_processor(SMASH_DB_HANDLE handle, int entityId, int entityInstance, ProcessorRow** row);
/* All processors; none is a success with NULL and 0. */
int db_get_all_processors(SMASH_DB_HANDLE handle, ProcessorRow** rows, int* count);

/* The memory of the host as a whole: what its modules have together. */
typedef struct {
    int64_t size;              /* bytes */
    int64_t capacity;          /* bytes that there is room for; 0 unknown */
    uint16_t modules;          /* installed ones */
    uint16_t sockets;          /* 0 unknown */
    char errorMethodology[64]; /* "Multi-bit ECC" */
} MemoryRow;

/* It is a success with NULL when nothing is known of the memory. */
int db_get_memory(SMASH_DB_HANDLE handle, MemoryRow** row);

/* A memory module that is installed. Entity ID and instance identify the row. */
typedef struct {
    uint8_t entityId; /* 32, memory device */
    uint8_t entityInstance;
    uint16_t formFactor;      /* CIM_PhysicalMemory.FormFactor; 0 unknown */
    uint16_t memoryType;      /* CIM_PhysicalMemory.MemoryType; 0 unknown */
    uint16_t totalWidth;      /* bits, with those for error correction; 0 unknown */
    uint16_t dataWidth;       /* bits; 0 unknown */
    uint32_t maxSpeed;        /* MT/s; 0 unknown */
    uint32_t configuredSpeed; /* MT/s; 0 unknown */
    int64_t capacity;         /* bytes; 0 unknown */
    char bankLabel[64];
} MemoryModuleRow;

/* The module of an entity. It is a success with NULL when nothing is known of it. */
int db_get_memory_module(SMASH_DB_HANDLE handle, int entityId, int entityInstance, MemoryModuleRow** row);
/* All modules; none is a success with NULL and 0. */
int db_get_all_memory_modules(SMASH_DB_HANDLE handle, MemoryModuleRow** rows, int* count);

/* Something to plug into: a socket of a processor or memory module, an expansion slot, or a port. */
typedef struct {
    char tag[128];  /* identifies the row: "Slot 3:PCIe Slot 3", "Memory Socket 1:DIMM A1", "Port 2:LAN 1" */
    uint8_t isSlot; /* 1: a slot or socket; 0: a port */
    uint8_t isHotPluggable;
    uint16_t layout;    /* CIM_PhysicalConnector.ConnectorLayout; 0 unknown */
    uint16_t gender;    /* CIM_PhysicalConnector.ConnectorGender; 0 unknown */
    uint16_t dataWidth; /* bits; 0 unknown, or a link */
    uint16_t linkWidth; /* CIM_Slot.MaxLinkWidth; 0 unknown, or no link */
    uint16_t number;    /* of a slot; 0 none */
    char name[64];      /* designation */
    char connector[64]; /* "PCI Express Gen 4 x16", "RJ-45" */
    /* What it is, and what is in it. Where that is a package, it ends with the PackageRow's tag: "memory socket with
     * 32.1:DIMM A1", "memory socket, empty". */
    char description[256];
} ConnectorRow;

/* All of them; none is a success with NULL and 0. */
int db_get_all_connectors(SMASH_DB_HANDLE handle, ConnectorRow** rows, int* count);

/* A device on the host's PCI: on a board, or in an expansion slot. */
typedef struct {
    char deviceId[64]; /* identifies the row: "PCI 0000:3b:00.0", segment, bus, device and function */
    uint8_t classCode; /* CIM_PCIController.ClassCode; 255 other */
    uint8_t bus;
    uint8_t device;
    uint8_t function;
    uint16_t enabledState; /* CIM_EnabledLogicalElement.EnabledState; 5 where nothing tells */
    char name[64];         /* designation of the device or of its slot */
    char description[256]; /* "Ethernet on 7.1.0": what it is, and the tag of the PackageRow that it is on */
} PciDeviceRow;

/* All of them; none is a success with NULL and 0. */
int db_get_all_pci_devices(SMASH_DB_HANDLE handle, PciDeviceRow** rows, int* count);

#ifdef __cplusplus
}
#endif

#endif
