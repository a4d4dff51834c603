/* Packet library of the command-line protocol (CLP) daemon: libsmclpdpkt.so, opened by libProviderHelper at
 * run time. A BMC without the daemon does without it: then there are no CLP jobs, and the daemon's sessions are
 * its client processes.
 *
 * The functions send a request to the daemon and take its answer; 0 for success. A CLP job's InstanceID
 * contains "clp-job". */
#ifndef PLATFORM_CLP_PACKETS_H
#define PLATFORM_CLP_PACKETS_H

#include <stdbool.h>
#include <stdint.h>

#include "platform/smash_db_jobs.h"

#ifdef __cplusplus
extern "C" {
#endif

/* Reads all jobs of the daemon into one heap block that the caller frees; NULL and 0 when there are none. */
int SMP_Frame_Jobs_Req(StoredJobRow** jobs, int* count);
/* Reads one job into `job`. */
int SMP_Frame_Job_Req(const char* instanceId, StoredJobRow* job);
int SMP_Frame_DeleteJob_Req(const char* instanceId);

/* How a session answers, by the names and values of CIM_CLPSettingData. Texts are UTF-8. */
typedef struct {
    char CurrentDefaultTarget[256]; /* user-friendly instance path: "/system1" */
    char OutputLanguage[8];         /* ISO 639-2: "eng" */
    char DisplayOption[64];         /* as after "-display" */
    uint32_t OutputCount;           /* results in an answer at most */
    uint16_t KeepTime;              /* seconds for which results of a job are kept */
    uint16_t OutputFormat;          /* 2 text, 3 clpcsv, 4 keyword, 5 clpxml */
    uint16_t OutputVerbosity;       /* 2 error, 3 terse, 4 verbose */
    uint16_t OutputPosition;        /* of the first result: 2 begin, 3 end */
    uint16_t OutputOrder;           /* 2 default, 3 reverse */
    bool WaitBehavior;              /* a command answers when it is done */
} CLPOptions;

typedef struct {
    uint32_t number; /* of the session, no other's while it lasts */
    CLPOptions options;
} CLPSessionRow;

/* Reads the daemon's sessions into one heap block that the caller frees; NULL and 0 when there are none. */
int SMP_Frame_Sessions_Req(CLPSessionRow** sessions, int* count);
/* What new sessions begin with. Writing changes all of it, or nothing where it fails. */
int SMP_Frame_Options_Req(CLPOptions* options);
int SMP_Frame_SetOptions_Req(const CLPOptions* options);

#ifdef __cplusplus
}
#endif

#endif
