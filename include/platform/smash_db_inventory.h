/* SMASH database: how to reach the BMC, its devices, FRUs and sensors. For the common rules see smash_db.h. */
#ifndef PLATFORM_SMASH_DB_INVENTORY_H
#define PLATFORM_SMASH_DB_INVENTORY_H

#include <stdint.h>

#include "platform/smash_db_handle.h"

#ifdef __cplusplus
extern "C" {
#endif

/* How to reach the BMC. Numbers are texts in C notation ("3", "0x10"); see CIM_Create_IPMI20_Session for what
 * each means. An empty text reads as 0. */
typedef struct {
    char address[256];
    uint16_t port;
    char userName[32];
    char password[32];
    char interfaceType[16];
    char cipherSuite[16];
    char workaroundFlags[16];
    char retransmission[16];
    char privilegeLevel[16];
} IPMISessionInfo;

int db_get_ipmi_session_info(SMASH_DB_HANDLE handle, IPMISessionInfo** info);
int db_set_ipmi_session_info(SMASH_DB_HANDLE handle, const IPMISessionInfo* info);

enum { SMASH_DEVICE_SP = 1, SMASH_DEVICE_HOST = 2 };

/* One managed device: the service processor (type 1) or the host (type 2). */
typedef struct {
    int32_t type;
    char deviceId[64]; /* names the device where the vendor gives no name: its GUID without separators */
    char guid[64];     /* "xxxxxxxx-xxxx-xxxx-xxxx-xxxxxxxxxxxx" (IPMI 2.0, Get System/Device GUID) */
    uint32_t manufacturerId; /* IANA enterprise number (Get Device ID) */
    uint16_t productId;      /* Get Device ID */
    uint8_t firmwareMajor;
    uint8_t firmwareMinor;   /* BCD, as Get Device ID has it */
    int32_t tag[2];          /* asset tag numbers: device ID and device revision of Get Device ID */
    uint16_t requestedState; /* last RequestedState asked of the device; 12 not applicable */
} DeviceRecord;

int db_get_device_bytype(SMASH_DB_HANDLE handle, int type, DeviceRecord** device);
/* Stores the device under its type, replacing the row that is there. */
int db_set_device(SMASH_DB_HANDLE handle, const DeviceRecord* device);

/* Board area of one FRU (IPMI Platform Management FRU Information Storage Definition). */
typedef struct {
    uint8_t entityId; /* IPMI entity ID; 7 system board */
    uint8_t entityInstance;
    char manufacturer[64];
    char model[64]; /* product name */
    char serialNumber[64];
    char partNumber[64];
} FruRecord;

/* Reads the FRU with the lowest entity instance of an entity ID. */
int db_get_fru_by_entity_id(SMASH_DB_HANDLE handle, int entityId, FruRecord** fru);

/* One sensor of the SDR repository that is published as CIM_Sensor.
 *
 * `deviceId` is "<owner ID>.<sensor number>.<owner LUN>.<sensor type>.<event/reading type>.<offset>:<ID
 * string>": decimal numbers, but the event/reading type as two lower-case hexadecimal digits; offset is the
 * state offset of one state of a sensor-specific sensor, or 99 for the sensor as a whole. It identifies the
 * row. */
typedef struct {
    char deviceId[256];
    char name[32];             /* SDR ID string */
    char otherSensorType[128]; /* OtherSensorTypeDescription where sensorType is 1: name of the IPMI sensor
                                  type */
    char source[256];          /* where the row comes from: "SDR record 0x0012" */
    uint16_t sensorType; /* CIM SensorType: 1 other, 2 temperature, 3 voltage, 4 current, 5 tachometer */
    uint8_t ownerId;     /* IPMI slave address of the owning controller, 20h the BMC */
    uint8_t ownerLun;
    uint8_t sensorNumber;
    uint8_t entityId;
    uint8_t entityInstance;
    uint8_t ipmiSensorType;   /* IPMI 2.0 table 42-3 */
    uint8_t eventReadingType; /* IPMI 2.0 table 42-1 */
    uint32_t supportedStates; /* state bits a discrete sensor supports, or threshold bits 0 to 5 */
} CompactSdr;

/* One threshold sensor, published as CIM_NumericSensor. Raw values are SDR bytes. */
typedef struct {
    CompactSdr common;
    uint16_t baseUnits;   /* IPMI 2.0 table 43-15, sensor unit type code */
    uint16_t rateUnits;   /* sensor units 1, bits 5 to 3 */
    int32_t analogFormat; /* 0 unsigned, 1 one's complement, 2 two's complement, 3 not analog */
    int32_t m;            /* signed 10 bits */
    int32_t b;            /* signed 10 bits */
    int32_t exponents;    /* bits 7 to 4 R exponent (K2), bits 3 to 0 B exponent (K1), each signed 4 bits */
    uint8_t nominalReading;
    uint8_t normalMax;
    uint8_t normalMin;
    uint8_t maxReadable;
    uint8_t minReadable;
    uint8_t hysteresis; /* positive-going */
    uint8_t lowerNonCritical;
    uint8_t lowerCritical;
    uint8_t lowerNonRecoverable;
    uint8_t upperNonCritical;
    uint8_t upperCritical;
    uint8_t upperNonRecoverable;
    uint32_t resolution; /* published times 100, like a reading: the value of one raw step */
    int32_t tolerance;   /* published times 100: half raw steps converted to units */
    int32_t accuracy;    /* 1/100 per cent */
    uint8_t isLinear;    /* linearization byte is 0 (linear) */
} FullSdr;

/* Read all rows in repository order; no rows is a success with a NULL array and count 0. */
int db_get_all_compact_sdrs(SMASH_DB_HANDLE handle, CompactSdr** rows, int* count);
int db_get_all_full_sdrs(SMASH_DB_HANDLE handle, FullSdr** rows, int* count);
/* Read those that an event of this sensor number may be of, in the same order: all rows whose ElementName,
 * "<name>(<sensor number>.<owner ID>.<owner LUN>)", has the number behind its first '('. Other rows may be among
 * them. A platform may lack these functions: an alert then takes longer the more sensors there are. */
int db_get_compact_sdrs_of_event(SMASH_DB_HANDLE handle, int sensorNumber, CompactSdr** rows, int* count)
    __attribute__((weak));
int db_get_full_sdrs_of_event(SMASH_DB_HANDLE handle, int sensorNumber, FullSdr** rows, int* count)
    __attribute__((weak));
/* Read the row with this deviceId; none is a failure. */
int db_get_compact_sdr(SMASH_DB_HANDLE handle, const char* deviceId, CompactSdr** row);
int db_get_full_sdr(SMASH_DB_HANDLE handle, const char* deviceId, FullSdr** row);

#ifdef __cplusplus
}
#endif

#endif
