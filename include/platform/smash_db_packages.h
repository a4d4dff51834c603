/* SMASH database: the physical packages of the managed system. For the common rules see smash_db.h. */
#ifndef PLATFORM_SMASH_DB_PACKAGES_H
#define PLATFORM_SMASH_DB_PACKAGES_H

#include <stdint.h>

#include "platform/smash_db_handle.h"

#ifdef __cplusplus
extern "C" {
#endif

enum { SMASH_NO_FRU_DEVICE = 0xFF }; /* a FRU device ID that IPMI reserves */

/* A part of the machine that is installed. A row stands for a FRU device that the BMC locates (SDR type 11h), or for
 * an IPMI entity that it locates otherwise (types 10h and 12h) or only watches with sensors. The row is published as
 * the physical class of its entity. A value that is not known is an empty text, or 0. */
typedef struct {
    char tag[128];    /* "<entity ID>.<entity instance>[.<FRU device ID>][:<name>]", identifies the row */
    uint8_t entityId; /* IPMI 2.0 table 43-13 */
    uint8_t entityInstance;
    uint8_t fruDeviceId; /* behind the BMC's FRU commands, or SMASH_NO_FRU_DEVICE */
    uint8_t hasFruData;  /* 1: the FRU device says something of this part, and could be read */
    char name[64];       /* ID string of the locator */
    /* The following are from the FRU's areas (IPMI Platform Management FRU Information Storage Definition). */
    char manufacturer[128];
    char model[128]; /* product name */
    char serialNumber[128];
    char partNumber[128];
    char version[128];
    char assetTag[128];
    uint32_t manufactured; /* minutes since 1996-01-01 00:00 UTC */
    uint8_t chassisType;   /* of the system chassis: SMBIOS system enclosure type */
} PackageRow;

/* All packages in the order in which the BMC locates them; none is a success with NULL and 0. */
int db_get_all_packages(SMASH_DB_HANDLE handle, PackageRow** rows, int* count);
/* The package with this tag; none is a failure. */
int db_get_package(SMASH_DB_HANDLE handle, const char* tag, PackageRow** row);

/* The ratings of a power supply, as its FRU device tells them (multirecord type 00h). A voltage range that the
 * supply does not have is 0 to 0. */
typedef struct {
    uint8_t entityId;
    uint8_t entityInstance;
    uint16_t capacity;         /* W; 0 not specified */
    uint16_t peakVoltAmperes;  /* VA; FFFFh not specified */
    uint8_t inrushCurrent;     /* A; FFh not specified */
    uint8_t inrushInterval;    /* ms */
    uint16_t lowVoltage1;      /* 10 mV, of the input's first range */
    uint16_t highVoltage1;     /* 10 mV */
    uint16_t lowVoltage2;      /* 10 mV, of its second range */
    uint16_t highVoltage2;     /* 10 mV */
    uint8_t lowFrequency;      /* Hz; 0 when direct current will do too */
    uint8_t highFrequency;     /* Hz */
    uint8_t dropoutTolerance;  /* ms without input */
    uint8_t flags;             /* SMASH_SUPPLY_… */
    uint16_t peakCapacity;     /* W; 0 not specified */
    uint8_t holdUpTime;        /* s, of the peak */
    uint8_t combinedVoltages;  /* bits 7 to 4 and 3 to 0: outputs that share combinedCapacity; 0 is 12 V, 1 is
                                   -12 V, 2 is 5 V, 3 is 3.3 V */
    uint16_t combinedCapacity; /* W; 0: no outputs share any */
    /* Revolutions per second below which the supply predicts a failure of its fan. */
    uint8_t tachometerThreshold;
} PowerSupplyInfoRow;

enum {
    SMASH_SUPPLY_PREDICTS_FAILURE = 0x01,
    SMASH_SUPPLY_POWER_FACTOR_CORRECTION = 0x02,
    SMASH_SUPPLY_SWITCHES_RANGES = 0x04, /* by itself */
    SMASH_SUPPLY_HOT_SWAP = 0x08,
    /* The tachometer gives two pulses a revolution; without one, the failure signal is asserted high. */
    SMASH_SUPPLY_FAILURE_POLARITY = 0x10
};

/* The ratings of the entity's supply. It is a success with NULL when its FRU does not tell them. */
int db_get_power_supply_info(SMASH_DB_HANDLE handle, int entityId, int entityInstance,
                             PowerSupplyInfoRow** row);

#ifdef __cplusplus
}
#endif

#endif
