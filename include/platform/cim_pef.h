/* CIM hooks: platform event filters. For the common rules see cim_hooks.h.
 *
 * The filters are PEF configuration parameters 5 and 6 (IPMI 2.0, 30.3 and 30.4; network function 04h,
 * commands 12h and 13h). Filters are numbered from 1. */
#ifndef PLATFORM_CIM_PEF_H
#define PLATFORM_CIM_PEF_H

#include <assert.h>
#include <stdint.h>

#include "platform/cim_session.h"

#ifdef __cplusplus
extern "C" {
#endif

/* Entry of the event filter table, byte for byte (IPMI 2.0, table 17-2), without the set selector. */
typedef struct {
    uint8_t filterConfiguration; /* bit 7: the filter is enabled */
    uint8_t eventFilterAction;   /* bit 0: alert */
    uint8_t alertPolicyNumber;   /* bits 3 to 0 */
    uint8_t eventSeverity;       /* bits: 0 monitor, 1 information, 2 OK, 3 non-critical, 4 critical, 5 not
                                    recoverable; none: unspecified */
    uint8_t generatorId[2];
    uint8_t sensorType;   /* FFh: any */
    uint8_t sensorNumber; /* FFh: any */
    uint8_t eventTrigger; /* event/reading type; FFh: any */
    uint8_t eventData1OffsetMask[2];
    uint8_t eventData1[3]; /* AND mask, compare 1, compare 2 */
    uint8_t eventData2[3];
    uint8_t eventData3[3];
} CIM_PEFEntry;
static_assert(sizeof(CIM_PEFEntry) == 20, "PEF configuration parameter 6 without its set selector");

/* Reads the table. `count` is the number of filters that the BMC has (parameter 5, 0 to 127); `table` holds
 * CIM_MAX_PEF_ENTRIES and gets the first so many. */
enum { CIM_MAX_PEF_ENTRIES = 30 };
int CIM_GetPEFTable(IPMI20_SESSION_T* session, CIM_PEFEntry* table, uint8_t* count, int timeout);
int CIM_GetPEFEntry(IPMI20_SESSION_T* session, uint8_t filterNumber, CIM_PEFEntry* entry, int timeout);
int CIM_SetPEFEntry(IPMI20_SESSION_T* session, uint8_t filterNumber, const CIM_PEFEntry* entry, int timeout);

#ifdef __cplusplus
}
#endif

#endif
