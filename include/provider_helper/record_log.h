/* The event log: the BMC's system event log (SEL) as CIM_RecordLog, one CIM_LogEntry for each of its records,
 * and CIM_RecordLogCapabilities. What a SEL record consists of is in platform/cim_sel.h. */
#ifndef PROVIDER_HELPER_RECORD_LOG_H
#define PROVIDER_HELPER_RECORD_LOG_H

#include "provider_helper/utility.h"

#ifdef __cplusplus
extern "C" {
#endif

/* ---- CIM_RecordLog ------------------------------------------------------------------------------------- */

typedef struct {
    char InstanceID[320]; /* key; "IPMI:<system name of the service processor> SEL Log" */
    uint64_t MaxNumberOfRecords;
    uint64_t CurrentNumberOfRecords;
    uint16_t HealthState;     /* 5 OK */
    uint16_t RequestedState;  /* 12 not applicable */
    uint16_t EnabledState;    /* 2 enabled, 6 full and taking no more; 0 where the policy cannot be read */
    uint16_t LogState;        /* 2 normal, 4 not applicable: stops when full; 0 as above */
    uint16_t OverwritePolicy; /* 2 wraps when full, 7 never overwrites; 0 as above */
    char ElementName[256];
    int OperationalStatus[4]; /* 2 OK; ends with a negative number */
} RecordLogRecord;

PH_DECLARE_CLASS_FAMILY(RecordLog, RecordLogRecord);
/* Fills a record, its key included, from the BMC, in one IPMI session. When the number of records or the room
 * for them cannot be read it stays as it was. */
PH_EXPORT int PH_Fill_RecordLog(RecordLogRecord* record);
PH_EXPORT extern const char* const g_RecordLogKeyList[1];

/* Method ClearLog: erases the log that `ref` names. The out-argument "Job" is the CIM_ConcreteJob that tells
 * how it went; the method's value is 0, or 2 when the BMC failed. -1 with a `status`, and nothing erased,
 * when `ref` is not this log or there is no job. */
PH_EXPORT int PH_ClearLog(const CMPIBroker* broker, const CMPIContext* context, const CMPIResult* result,
                          const CMPIObjectPath* ref, CMPIArgs* out, CMPIStatus* status);

/* ---- CIM_LogEntry -------------------------------------------------------------------------------------- */

typedef struct {
    char InstanceID[8];         /* key; SEL record ID in decimal */
    char LogInstanceID[320];    /* InstanceID of the CIM_RecordLog */
    char LogName[16];           /* "IPMI SEL" */
    char RecordID[8];           /* as InstanceID */
    char CreationTimeStamp[26]; /* DMTF datetime */
    const char* RecordFormat;   /* a row of the table of that name (tables.h) */
    char RecordData[128];       /* as the format says; empty for OEM records */
    char ElementName[32];
} LogEntryRecord;

/* RecordFormat and RecordData are published while SELCount is at most 1000: large logs are kept light.
 * PH_EI_LogEntry and PH_EIN_LogEntry make and return one entry after the other; PH_Enum_All_LogEntry holds
 * the records of all at once. */
PH_DECLARE_CLASS_FAMILY(LogEntry, LogEntryRecord);
/* `selRecord` has 16 bytes. `logInstanceId` is the log's InstanceID. */
PH_EXPORT int PH_Fill_LogEntry(const uint8_t* selRecord, LogEntryRecord* record, const char* logInstanceId);
PH_EXPORT extern const char* const g_LogEntryKeyList[1];

/* Returns the number of SEL records that the last enumeration of log entries found. */
PH_EXPORT extern uint16_t SELCount;

/* Reads all records of the SEL, oldest first, into a heap array that the caller frees. An empty SEL gives
 * a count of 0 and no array. */
PH_EXPORT int GetSELEntries(IPMI20_SESSION_T* session, uint16_t* count, CIM_SELEntry** records);
/* Reads the record with this ID into a heap block of 16 bytes that the caller frees. */
PH_EXPORT int GetLogEntryData(IPMI20_SESSION_T* session, uint16_t recordId, uint8_t** record);

/* Writes a SEL time as DMTF datetime "yyyymmddHHMMSS.000000+mmm". A SEL counts the seconds of the local
 * clock: they are taken back by the present offset from UTC, less an hour while daylight saving is in
 * force. `text` holds 26 characters. Returns -1 for no text. */
PH_EXPORT int PH_ConvertUnixTimetoDMTFDateTimeFormat(uint32_t seconds, char* text);

/* ---- CIM_RecordLogCapabilities ------------------------------------------------------------------------- */

typedef struct {
    char InstanceID[64]; /* key; "RecordLogCapabilities1" */
    char ElementName[64];
    bool ElementNameEditSupported;   /* false */
    uint16_t MaxElementNameLen;      /* 0: the name cannot be changed */
    int RequestedStatesSupported[4]; /* none: a SEL is not switched; ends with a negative number */
    int SupportedRecordTypes[4];     /* 2 record data: in RecordData, as RecordFormat tells */
} RecordLogCapabilitiesRecord;

PH_DECLARE_CLASS_FAMILY(RecordLogCapabilities, RecordLogCapabilitiesRecord);
PH_EXPORT int PH_Fill_RecordLogCapabilities(RecordLogCapabilitiesRecord* record);
PH_EXPORT extern const char* const g_RecordLogCapabilitiesKeyList[1];

#ifdef __cplusplus
}
#endif

#endif
