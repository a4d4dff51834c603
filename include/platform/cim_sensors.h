/* CIM hooks: sensor readings. For the common rules see cim_hooks.h. */
#ifndef PLATFORM_CIM_SENSORS_H
#define PLATFORM_CIM_SENSORS_H

#include <stdint.h>

#include "platform/cim_session.h"

#ifdef __cplusplus
extern "C" {
#endif

/* Answer of Get Sensor Reading (IPMI 2.0, 35.14; network function 04h, command 2Dh). */
typedef struct {
    uint8_t completionCode; /* 00h success */
    uint8_t reading;        /* raw analog reading; 0 for a discrete sensor */
    uint8_t flags;      /* bit 5 reading/state unavailable, bit 6 scanning enabled, bit 7 events enabled */
    uint8_t statesLow;  /* threshold comparison status, or state bits 0 to 7 */
    uint8_t statesHigh; /* state bits 8 to 14; bit 7 is reserved and reads 1 */
} CIM_SensorReading;

/* Reads a sensor of the BMC (owner 20h, LUN 0). Returns 0 when the BMC answered, with a completion code other
 * than 0 too: the caller looks at it. State bytes that the BMC left out of its answer read 0. */
int CIM_GetSensorReading(IPMI20_SESSION_T* session, uint8_t sensorNumber, CIM_SensorReading* answer,
                         int timeout);

/* Announces the sensors, `count` of them, that CIM_GetSensorReading will be asked for next in this order, so that the
 * platform may have some answered while the caller works on those before. Whatever else the session is used for ends
 * it, and the caller may stop at any of them. `timeout` is that of each reading, in seconds. Returns 0, also when the
 * platform reads none of them ahead, or -1; each is then read when it is asked for, as by a platform without this
 * function. */
int CIM_ReadSensorsAhead(IPMI20_SESSION_T* session, const uint8_t* sensorNumbers, int count, int timeout)
    __attribute__((weak));

#ifdef __cplusplus
}
#endif

#endif
