/* Sensors: CIM_Sensor has one instance for each sensor, or sensor state, that is read as bits;
 * CIM_NumericSensor one for each threshold sensor whose reading is a number. docs/sdr-mapping.md says which
 * is which. */
#ifndef PROVIDER_HELPER_SENSORS_H
#define PROVIDER_HELPER_SENSORS_H

#include "provider_helper/utility.h"

#ifdef __cplusplus
extern "C" {
#endif

/* ---- Records ------------------------------------------------------------------------------------------- */

/* A sensor. Integer lists end with a negative number, text lists with NULL; the texts are heap strings of the
 * record. Fields in lower case are not published. */
typedef struct {
    char SystemCreationClassName[256]; /* key; "CIM_HostComputerSystem" */
    char SystemName[256];              /* key */
    char CreationClassName[256];       /* key */
    char DeviceID[256];                /* key; see CompactSdr in platform/smash_db.h for its form */
    uint16_t SensorType;               /* 1 other, 2 temperature, 3 voltage, 4 current, 5 tachometer */
    char OtherSensorTypeDescription[128];
    char source[256];         /* the SDR it comes from */
    uint16_t HealthState;     /* 0 unknown, 5 OK: whether the sensor itself can be read */
    int OperationalStatus[4]; /* 0 not readable, 2 OK, 11 reading unavailable */
    char* PossibleStates[12];
    char CurrentState[128];
    char Caption[256];
    char Description[256];
    char ElementName[256];
    uint16_t RequestedState;   /* 12 not applicable */
    uint16_t EnabledState;     /* 2 enabled, 5 not applicable: its state is "Unknown" */
    uint16_t eventReadingType; /* IPMI codes: 01h threshold, 02h to 0Ch generic, 6Fh sensor-specific, 70h to
                                  7Fh OEM */
    uint16_t ipmiSensorType;
    uint16_t entityId; /* what the sensor watches */
    uint16_t entityInstance;
    uint32_t
        supportedStates; /* state bits of a discrete sensor, threshold bits 0 to 5 of a threshold sensor */
} SensorRecord;

/* A threshold sensor. Raw values are bytes of the SDR, published converted and times 100. Of the published
 * properties that have no field, EnabledThresholds is SupportedThresholds (IPMI has no switch for a single
 * threshold) and UnitModifier is analogFormat - 2. */
typedef struct {
    SensorRecord sensor;
    uint16_t BaseUnits;   /* IPMI 2.0 sensor unit type code */
    int32_t analogFormat; /* 0 unsigned, 1 one's complement, 2 two's complement, any other: not analog */
    uint16_t RateUnits;   /* IPMI 2.0 rate unit */
    int32_t m;
    int32_t b;
    int32_t
        exponents; /* bits 3 to 0 K1 (of b), bits 7 to 4 K2 (of the result), each 4 bits two's complement */
    int32_t rawReading; /* of the live reading */
    int32_t rawNominalReading;
    int32_t rawNormalMax;
    int32_t rawNormalMin;
    int32_t rawMaxReadable;
    int32_t rawMinReadable;
    int32_t rawHysteresis; /* positive-going */
    int32_t rawLowerNonCritical;
    int32_t rawUpperNonCritical;
    int32_t rawLowerCritical;
    int32_t rawUpperCritical;
    int32_t rawLowerFatal; /* IPMI: non-recoverable */
    int32_t rawUpperFatal;
    uint32_t Resolution; /* these three are published as they are, see docs/sdr-mapping.md */
    int32_t Tolerance;
    int32_t Accuracy;
    bool IsLinear;
    /* 0 lower and 1 upper non-critical, 2 lower and 3 upper critical, 4 lower and 5 upper fatal. A
     * threshold's property is published when it is supported. */
    int SupportedThresholds[7];
    int SettableThresholds[7];
} NumericSensorRecord;

PH_DECLARE_CLASS_FAMILY(Sensor, SensorRecord);
PH_DECLARE_CLASS_FAMILY(NumericSensor, NumericSensorRecord);
PH_EXPORT extern const char* const g_SensorKeyList[4];
PH_EXPORT extern const char* const g_NumericSensorKeyList[4];

/* ---- Filling records ----------------------------------------------------------------------------------- */

/* Fill everything that the SDR says: all but the first three keys and what a reading gives. The record is
 * zeroed before. Return -1 when an allocation fails. */
PH_EXPORT int PH_Fill_Sensor(const CompactSdr* sdr, SensorRecord* record);
PH_EXPORT int PH_Fill_NumericSensor(const FullSdr* sdr, NumericSensorRecord* record);

/* Write ElementName, Description and Caption. Return 0. */
PH_EXPORT int PH_Fill_Caption_Description_ElementName_Sensor(const CompactSdr* sdr, SensorRecord* record);
PH_EXPORT int PH_Fill_Caption_Description_ElementName_NumericSensor(const FullSdr* sdr,
                                                                    NumericSensorRecord* record);

/* Fills PossibleStates. Returns -1 when an allocation fails. */
PH_EXPORT int PH_Fill_PossibleStates_Sensor(SensorRecord* record);
PH_EXPORT int PH_Fill_PossibleStates_NumericSensor(NumericSensorRecord* record);

/* Fills SupportedThresholds and SettableThresholds, which are equal, from the threshold bits. Returns 0. */
PH_EXPORT int PH_Fill_Settable_SupportedThresholds_NumericSensor(NumericSensorRecord* record);

/* The parts of a DeviceID, each cut at its field's width; name is the first word behind the colon. */
typedef struct {
    char ownerId[4];
    char sensorNumber[4]; /* decimal */
    char ownerLun[4];
    char sensorType[4];
    char eventReadingType[4]; /* two lower-case hexadecimal digits */
    char offset[4];           /* decimal; "99": the sensor as a whole */
    char name[32];
} PHSensorDeviceId;

/* "%[^.].%[^.].%[^.].%[^.].%[^.].%[^.]:%s": a text of another form leaves the parts from there on empty. The
 * sixth part ends at the colon. Returns 0. */
PH_EXPORT int PH_Parse_Sensor_DeviceID(const char* deviceId, PHSensorDeviceId* parts);

/* ---- Readings and states ------------------------------------------------------------------------------- */

/* Reads the sensor that the DeviceID numbers and sets OperationalStatus, HealthState, CurrentState and
 * EnabledState. Returns -1 when it cannot be read: OperationalStatus is 0 then, and CurrentState as it
 * was. */
PH_EXPORT int PH_Get_Reading_Sensor(IPMI20_SESSION_T* session, SensorRecord* record);

/* Fills CurrentState from the two state bytes of Get Sensor Reading; the high one comes without its bit 7.
 * The low byte counts when it is not 0, the high byte otherwise. Returns -1 when the state is not known;
 * CurrentState says so. */
PH_EXPORT int PH_Get_Sensor_CurrentState(SensorRecord* record, uint8_t statesLow, uint8_t statesHigh);

/* Fills CurrentState from the threshold comparison status; the lower non-critical and lower critical
 * thresholds (bits 0 and 1) are looked at. Returns 0. */
PH_EXPORT int PH_Get_Analog_CurrentState(NumericSensorRecord* record, uint8_t thresholds);

/* Returns 1 for a sensor that could not be read, by its first OperationalStatus: it is neither enumerated
 * nor offered to associations, though it has a path and can be fetched by its keys. The other arguments
 * are not looked at. */
PH_EXPORT int IsSkipUnkwonError(const char* deviceId, const char* source, int operationalStatus);

/* ---- Health of other elements -------------------------------------------------------------------------- */

/* Reads a fan's HealthState and first OperationalStatus from its sensor: 5 and 2, 0 and 11 when the
 * reading is unavailable, 0 and 0 with the result -1 when the sensor cannot be read. */
PH_EXPORT int PH_Fill_HealthState(IPMI20_SESSION_T* session, uint8_t sensorNumber, uint16_t* healthState,
                                  int* operationalStatus);

/* Rolls up the health of a logical device from the instances of CIM_Sensor that watch it: those whose SDR
 * names the device's IPMI entity. For each of their CurrentStates that logdev_health_state_mapping has,
 * `healthState` and `operationalStatus` (the first of the device record's list) become the larger of
 * themselves and the row's values. Returns -1 when no state has a row. */
PH_EXPORT int PH_DeviceInstance(const CMPIBroker* broker, const CMPIContext* context, uint16_t entityId,
                                uint16_t entityInstance, uint16_t* healthState, int* operationalStatus);

/* ---- Numbers ------------------------------------------------------------------------------------------- */

/* An SDR's conversion factors as decimal texts. */
typedef struct {
    char analogFormat[12];
    char m[12];
    char b[12];
    char exponents[12];
} PHConversionFactors;

/* Computes (m * x + b * 10^K1) * 10^K2 for a raw value x in decimal, in single precision; the
 * linearization of a non-linear sensor is not applied. For a format that is not analog the result is x
 * itself, and the function returns -1. */
PH_EXPORT int PH_ConvertReading(const PHConversionFactors* factors, const char* rawValue, float* result);
PH_EXPORT float PH_ConvertRawReading(int32_t rawValue, const NumericSensorRecord* record);

#ifdef __cplusplus
}
#endif

#endif
