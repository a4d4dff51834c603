/* CIM hooks: the system event log (SEL). For the common rules see cim_hooks.h.
 *
 * A SEL record has 16 bytes (IPMI 2.0, 32.1); numbers in it are little-endian:
 *   0  2  record ID; 0000h and FFFFh are no IDs, they ask for the first and the last record
 *   2  1  record type: 02h system event, C0h to DFh OEM with a time, E0h to FFh OEM without
 *   3  4  time in seconds
 *   7  2  generator ID: owner's address or software ID; channel and LUN
 *   9  1  format revision of the event message
 *  10  1  sensor type
 *  11  1  sensor number
 *  12  1  bit 7: 1 deassertion; bits 0 to 6: event type
 *  13  3  event data
 * IDs identify records, they are not positions: each answer names the ID of the record that follows. */
#ifndef PLATFORM_CIM_SEL_H
#define PLATFORM_CIM_SEL_H

#include <stdint.h>

#include "platform/cim_session.h"

#ifdef __cplusplus
extern "C" {
#endif

#define CIM_SEL_RECORD_SIZE 16

/* A record as a whole log is read: 18 bytes, those of a Get SEL Entry answer behind its completion code. */
typedef struct {
    uint8_t nextRecordId[2]; /* little-endian; FFFFh for the last record */
    uint8_t record[CIM_SEL_RECORD_SIZE];
} CIM_SELEntry;

/* Request of Get SEL Entry (IPMI 2.0, 31.5; network function 0Ah, command 43h); 6 bytes. */
typedef struct {
    uint8_t reservationId[2]; /* 0 for a whole record */
    uint8_t recordId[2];
    uint8_t offset; /* 0 */
    uint8_t size;   /* FFh, the whole record */
} CIM_SELEntryRequest;

/* Its answer; 19 bytes. */
typedef struct {
    uint8_t completionCode; /* 00h success */
    CIM_SELEntry entry;
} CIM_SELEntryAnswer;

/* Reads the number of records that the log has room for: from Get SEL Allocation Info (31.3; 0Ah, 41h), or
 * from the free bytes of Get SEL Info where a BMC does not have it. */
int CIM_GetMaxPossibleSELEntries(IPMI20_SESSION_T* session, uint16_t* count, int timeout);

/* What Get SEL Info tells; 12 bytes. Times are the BMC's, in seconds; FFFFFFFFh for none. */
typedef struct {
    uint16_t entries;
    uint16_t freeBytes; /* FFFFh: that many or more */
    uint32_t lastAddition;
    uint32_t lastErasure; /* of one record or of all */
} CIM_SELInfo;

/* Get SEL Info (31.2; 0Ah, 40h). The follower of the log asks for it at every turn; where a platform does
 * not have this function, it reads the last record instead. */
int CIM_GetSELInfo(IPMI20_SESSION_T* session, CIM_SELInfo* info, int timeout) __attribute__((weak));

/* Reads the number of records in the log: Get SEL Info (31.2; 0Ah, 40h). */
int CIM_GetNumOfSELEntries(IPMI20_SESSION_T* session, uint16_t* count, int timeout);

/* Reads the whole log, oldest record first. `count` tells how many entries the buffer has room for, and then
 * how many it holds. The list is consistent: records that were in the log when reading began, in their order,
 * possibly followed by some that came while it was read. When records are deleted meanwhile the log is read
 * again; when that goes on, or the BMC's chain of records has no end, the call fails. `timeout` bounds the
 * reading of each record here, because a log of 65,534 records takes as long as it takes. */
int CIM_GetSELRecords(IPMI20_SESSION_T* session, CIM_SELEntry* entries, uint16_t* count, int timeout);

/* Reads the whole of one record, in parts from a BMC that cannot send it at once. Fails when there is no such
 * record, too; a completion code that tells why is in the answer then. */
int CIM_GetSELEntry(IPMI20_SESSION_T* session, const CIM_SELEntryRequest* request, CIM_SELEntryAnswer* answer,
                    int timeout);

/* What a full log does: 1 it drops the oldest record, 0 it drops new events. IPMI has no command for it, the
 * reference platform an OEM one (30h, 60h; docs/oem-commands.md). On a BMC without that it fails. */
int CIM_GetSELPolicy(IPMI20_SESSION_T* session, uint8_t* policy, int timeout);

/* Erases all records: Reserve SEL and Clear SEL (31.4, 31.9; 0Ah, 42h and 47h). Returns when the BMC says
 * that the erasure has ended; `timeout` bounds the wait. */
int CIM_ClearSEL(IPMI20_SESSION_T* session, int timeout);

/* ---- The log's clock ----------------------------------------------------------------------------------- */

/* Seconds since 1970-01-01 00:00 by the clock that records are stamped with, which runs in local time
 * (IPMI 2.0, 37). Up to 20000000h they count from when the BMC was started, because nobody has set its clock;
 * FFFFFFFFh stands for no time. */
#define CIM_SEL_TIME_FIRST_SET 0x20000000U
#define CIM_SEL_TIME_NONE 0xFFFFFFFFU

/* Get and Set SEL Time (31.10, 31.11; 0Ah, 48h and 49h). */
int CIM_GetSELTime(IPMI20_SESSION_T* session, uint32_t* seconds, int timeout);
int CIM_SetSELTime(IPMI20_SESSION_T* session, uint32_t seconds, int timeout);

/* Minutes that the clock's local time is ahead of UTC, -1440 to 1440. */
#define CIM_SEL_UTC_OFFSET_MOST 1440
#define CIM_SEL_UTC_OFFSET_NONE 0x07FF /* it was not set, or the BMC knows none */

/* Get and Set SEL Time UTC Offset (31.11a, 31.11b; 0Ah, 5Ch and 5Dh). Of a BMC that has not got the commands
 * there is no offset, and setting one fails. */
int CIM_GetSELTimeUTCOffset(IPMI20_SESSION_T* session, int16_t* minutes, int timeout);
int CIM_SetSELTimeUTCOffset(IPMI20_SESSION_T* session, int16_t minutes, int timeout);

#ifdef __cplusplus
}
#endif

#endif
