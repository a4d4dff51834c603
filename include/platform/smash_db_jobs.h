/* SMASH database: jobs and their errors, in the temporary database. For the common rules see smash_db.h. */
#ifndef PLATFORM_SMASH_DB_JOBS_H
#define PLATFORM_SMASH_DB_JOBS_H

#include <stdint.h>

#include "platform/smash_db_handle.h"

#ifdef __cplusplus
extern "C" {
#endif

/* A job of a method that changes the BMC's state, published as CIM_ConcreteJob. */
typedef struct {
    char elementName[64];        /* "Host_RequestStateChange" */
    char kind[64];               /* "ConcreteJob" */
    int32_t jobState;            /* DMTF JobState: 4 running, 7 completed, 10 exception */
    char jobStatus[32];          /* "Running", "Completed", "Exception" */
    int32_t deleteOnCompletion;  /* 1: the row goes when its time is over */
    char minutesToKeep[64];      /* how long it stays after it has ended, as a decimal number */
    char operationalStatus[256]; /* decimal numbers separated by commas: "17,2" */
    int32_t percentComplete;
} ConcreteJobRow;

/* A job row with the identity that the database gave it. */
typedef struct {
    char instanceId[64];
    ConcreteJobRow job;
} StoredJobRow;

/* Adds a job to the temporary database and writes its InstanceID (64 characters), which no other job of that
 * database has had. */
int db_set_concretejob(SMASH_DB_HANDLE handle, const ConcreteJobRow* job, char* instanceId);
/* Changes a job. No such job is a failure. */
int db_modify_concretejob(SMASH_DB_HANDLE handle, const char* instanceId, const char* jobStatus,
                          const char* operationalStatus, int percentComplete, int jobState);
/* Reads all jobs in the order they were added; none is a success with NULL and 0. A job whose time is
 * over, measured since boot, is there for no function any more; nor is one that still runs after an hour
 * without a change, whose process has died. */
int db_get_all_concretejob(SMASH_DB_HANDLE handle, StoredJobRow** rows, int* count);
int db_get_concretejob(SMASH_DB_HANDLE handle, const char* instanceId, StoredJobRow** row);
/* Removes a job and its error; of one of the command-line protocol daemon, which keeps its jobs, the error.
 * No such job is a failure. */
int db_delete_concretejob(SMASH_DB_HANDLE handle, const char* instanceId);

/* Why a job failed, published as CIM_Error. */
typedef struct {
    int32_t errorType;         /* DMTF ErrorType: 0 unknown */
    int32_t perceivedSeverity; /* DMTF PerceivedSeverity: 3 degraded/warning */
    int32_t probableCause;     /* DMTF ProbableCause: 0 unknown */
    char errorSource[64];      /* InstanceID of the job */
    int32_t errorSourceFormat; /* DMTF ErrorSourceFormat: 0 unknown */
    int32_t cimStatusCode;     /* DMTF CIMStatusCode: 1 CIM_ERR_FAILED */
} JobErrorRow;

/* Stores a job's error, replacing the one it has. */
int db_set_error_info(SMASH_DB_HANDLE handle, const JobErrorRow* error);
/* Reads the error of a job. A job without one is a success with NULL. */
int db_get_error_info(SMASH_DB_HANDLE handle, const char* instanceId, JobErrorRow** error);
/* Does the same for a job of the command-line protocol daemon, which stores its errors in the same
 * database. */
int db_get_clp_error_info(SMASH_DB_HANDLE handle, const char* instanceId, JobErrorRow** error);

#ifdef __cplusplus
}
#endif

#endif
