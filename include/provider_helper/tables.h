/* Tables that turn IPMI codes into the words and values of CIM. Read-only; texts fill their fields with NULs. */
#ifndef PROVIDER_HELPER_TABLES_H
#define PROVIDER_HELPER_TABLES_H

#include <stdint.h>

#include "provider_helper/export.h"

#ifdef __cplusplus
extern "C" {
#endif

/* ---- Sensor states ------------------------------------------------------------------------------------- */

/* What a state means for the sensor: "Good", "Bad", "Unknown". */
PH_EXPORT extern const char DMTF_PossibleStates[3][20];

/* By bit of the threshold comparison status (IPMI 2.0, Get Sensor Reading): bit 0 lower non-critical to bit 5
 * upper non-recoverable. */
PH_EXPORT extern const char DMTF_IPMI_Analog_Possible_States[6][30];

/* A state of a generic event/reading type (02h to 0Ch). */
typedef struct {
    uint32_t eventReadingType;
    uint32_t stateMask; /* 1 << state offset */
    uint32_t dmtfState; /* row of DMTF_PossibleStates */
    char name[512];
} PHGenericState;

/* Ascending by type, then by state. */
PH_EXPORT extern const PHGenericState ipmi_cim_Possible_States_Mapping[45];

/* A state of a sensor-specific sensor (event/reading type 6Fh). */
typedef struct {
    uint32_t sensorType; /* IPMI sensor type */
    uint32_t offset;
    char name[256];
} PHSensorSpecificState;

/* Ascending by sensor type, then by offset. */
PH_EXPORT extern const PHSensorSpecificState sensor_specific_possible_state_mapping[193];

/* ---- Health -------------------------------------------------------------------------------------------- */

/* What a sensor's CurrentState says of the health of the element it watches. */
typedef struct {
    char name[256];             /* CurrentState */
    uint32_t healthState;       /* DMTF HealthState */
    uint32_t operationalStatus; /* DMTF OperationalStatus */
} PHHealthState;

/* A CurrentState that has no row says nothing. */
PH_EXPORT extern const PHHealthState logdev_health_state_mapping[89];

/* ---- Events -------------------------------------------------------------------------------------------- */

/* A DMTF PerceivedSeverity and its name in alerts. */
typedef struct {
    uint32_t severity;
    const char* name;
} PHEventSeverity;

PH_EXPORT extern const PHEventSeverity EveSeverity[5];

/* What a log entry's RecordData holds, in the notation of the DMTF property RecordFormat: 0 system events, 1
 * OEM records with a timestamp (types C0h to DFh), 2 records of any other type. */
PH_EXPORT extern const char RecordFormat[3][1024];

#ifdef __cplusplus
}
#endif

#endif
