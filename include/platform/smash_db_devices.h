/* SMASH database: fans and power supplies of the host, and which IPMI entity contains which. For the common rules
 * see smash_db.h. */
#ifndef PLATFORM_SMASH_DB_DEVICES_H
#define PLATFORM_SMASH_DB_DEVICES_H

#include <stdint.h>

#include "platform/smash_db_handle.h"

#ifdef __cplusplus
extern "C" {
#endif

enum { SMASH_NO_SENSOR = 0xFF }; /* a sensor number that IPMI reserves */

/* Describes a device that sensors of the BMC watch: a fan (IPMI entity ID 29), a cooling unit (30) or a power supply (10).
 * Entity ID and instance identify the row. The states are bits 0 to 7 of the presence sensor, 0 where it has none
 * of the kind: while the device is installed, one of the first is set and none of the others. */
typedef struct {
    uint8_t entityId; /* IPMI 2.0 table 43-13 */
    uint8_t entityInstance;
    uint8_t tachometer;     /* number of a fan's own sensor (type 04h), or SMASH_NO_SENSOR */
    uint8_t presenceSensor; /* number of the sensor that tells whether the device is installed, or
                               SMASH_NO_SENSOR */
    uint8_t presentStates;
    uint8_t absentStates;
    uint8_t hasVariableSpeed; /* 1: the speed of the fan is controlled */
} EntityDeviceRow;

/* Reads all devices; none is a success with NULL and 0. */
int db_get_all_entity_devices(SMASH_DB_HANDLE handle, EntityDeviceRow** rows, int* count);

/* Says that an entity is part of another, as entity association records do (IPMI 2.0 tables 43-4 and 43-5). */
typedef struct {
    uint8_t containerId; /* entity ID */
    uint8_t containerInstance;
    uint8_t entityId;
    uint8_t entityInstance;
} EntityAssociationRow;

/* Reads all of them, each once; none is a success with NULL and 0. */
int db_get_all_entity_associations(SMASH_DB_HANDLE handle, EntityAssociationRow** rows, int* count);

#ifdef __cplusplus
}
#endif

#endif
