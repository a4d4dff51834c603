/* Jobs of extrinsic methods, and why they failed. For the conventions see utility.h.
 *
 * Job rows live in the temporary database. Those whose InstanceID contains "clp-job" belong to the
 * command-line protocol daemon and are asked of it (platform/clp_packets.h). */
#ifndef PROVIDER_HELPER_JOBS_H
#define PROVIDER_HELPER_JOBS_H

#include "provider_helper/utility.h"

#ifdef __cplusplus
extern "C" {
#endif

/* Records a job. `state` is a DMTF JobState: 4 running, 7 completed, 10 exception; `operationalStatus` a list
 * of decimal numbers such as "2". The InstanceID (64 characters) is the database's. */
PH_EXPORT int PH_CreateJobInstance(const char* jobName, char* instanceId, int state,
                                   const char* operationalStatus);
/* Changes a job's state; a finished one ("17,2") or failed one ("17,6") has run to 100 per cent. */
PH_EXPORT int PH_ModifyConcreteJob(const char* instanceId, int state, const char* operationalStatus);
/* Attaches an error to a failed job. */
PH_EXPORT int PH_CreateErrorInstance(const char* instanceId);

/* CIM_ConcreteJob */
typedef struct {
    char InstanceID[256]; /* key */
    char ElementName[128];
    char Name[256];
    uint16_t JobState;
    char JobStatus[256];
    uint16_t PercentComplete;
    bool DeleteOnCompletion;
    char TimeBeforeRemoval[26]; /* DMTF interval: how long the job stays after its end */
    int OperationalStatus[4];
} ConcreteJobRecord;

PH_DECLARE_CLASS_FAMILY(ConcreteJob, ConcreteJobRecord);
PH_EXPORT int PH_Fill_ConcreteJob(const StoredJobRow* row, ConcreteJobRecord* record);
PH_EXPORT extern const char* const g_ConcreteJobKeyList[1];

/* Appends only the daemon's jobs, as PH_Enum_All_ConcreteJob does. Without a daemon there are none. */
PH_EXPORT int PH_Enum_All_CLP_Jobs(ConcreteJobRecord** records, int* count, int namesOnly);
PH_EXPORT int PH_Delete_CLPJob(const char* instanceId);

/* Method GetErrors of the job that `ref` names: its errors go to the out-argument "Errors", an array of
 * instances, empty for a job without one; the method's value is 0. */
PH_EXPORT int PH_GetErrors(const CMPIBroker* broker, const CMPIContext* context, const CMPIResult* result,
                           const CMPIObjectPath* ref, CMPIArgs* out, CMPIStatus* status);

/* CIM_Error, an embedded instance without keys: GetErrors hands it out, nothing enumerates it. Its OwningEntity, MessageID
 * and Message follow from ErrorType. */
typedef struct {
    char ErrorSource[256]; /* InstanceID of the job */
    uint16_t ErrorType;
    uint16_t PerceivedSeverity;
    uint16_t ProbableCause;
    uint16_t ErrorSourceFormat;
    uint32_t CIMStatusCode;
} ErrorRecord;

PH_DECLARE_EMBEDDED_CLASS_FAMILY(Error, ErrorRecord);
PH_EXPORT int PH_Fill_Error_Data(const JobErrorRow* row, ErrorRecord* record);

#ifdef __cplusplus
}
#endif

#endif
