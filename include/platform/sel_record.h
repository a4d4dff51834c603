/* The fields of a SEL record (IPMI 2.0, 32.1 to 32.3; their places are listed in cim_sel.h). */
#ifndef PLATFORM_SEL_RECORD_H
#define PLATFORM_SEL_RECORD_H

#include <stdbool.h>
#include <stdint.h>

#include "platform/cim_sel.h"

enum {
    SEL_SYSTEM_EVENT = 0x02,
    SEL_FIRST_OEM_TIMED = 0xC0,
    SEL_FIRST_OEM_UNTIMED = 0xE0, /* this type and those above it have data in the place of the time */
    SEL_TIME_OFFSET = 3,
    SEL_DEASSERTION = 0x80 /* of byte 12 */
};

static inline uint16_t PH_SelRecordId(const uint8_t* record) {
    return (uint16_t)(record[0] | record[1] << 8);
}

static inline uint8_t PH_SelRecordType(const uint8_t* record) {
    return record[2];
}

static inline bool PH_IsSelSystemEvent(const uint8_t* record) {
    return PH_SelRecordType(record) == SEL_SYSTEM_EVENT;
}

static inline bool PH_IsSelOem(const uint8_t* record) {
    return PH_SelRecordType(record) >= SEL_FIRST_OEM_TIMED;
}

static inline bool PH_IsSelOemTimed(const uint8_t* record) {
    return PH_IsSelOem(record) && PH_SelRecordType(record) < SEL_FIRST_OEM_UNTIMED;
}

/* Seconds, of system events and of timed OEM records. */
static inline uint32_t PH_SelTime(const uint8_t* record) {
    return record[3] | (uint32_t)record[4] << 8 | (uint32_t)record[5] << 16 | (uint32_t)record[6] << 24;
}

/* The IANA enterprise number of a timed OEM record. */
static inline uint32_t PH_SelManufacturer(const uint8_t* record) {
    return record[7] | (uint32_t)record[8] << 8 | (uint32_t)record[9] << 16;
}

/* What follows is of system events. */

/* The slave address or software ID of the sensor's owner. */
static inline uint8_t PH_SelOwnerId(const uint8_t* record) {
    return record[7];
}

static inline uint8_t PH_SelOwnerLun(const uint8_t* record) {
    return record[8] & 0x03;
}

static inline uint8_t PH_SelSensorType(const uint8_t* record) {
    return record[10];
}

static inline uint8_t PH_SelSensorNumber(const uint8_t* record) {
    return record[11];
}

static inline bool PH_IsSelDeassertion(const uint8_t* record) {
    return (record[12] & SEL_DEASSERTION) != 0;
}

/* The event/reading type code (table 42-1). */
static inline uint8_t PH_SelEventType(const uint8_t* record) {
    return record[12] & 0x7F;
}

/* The offset of the state that the event is about. */
static inline uint8_t PH_SelEventOffset(const uint8_t* record) {
    return record[13] & 0x0F;
}

#endif
