/* Packet library of the command-line protocol (CLP) daemon: libsmclpdpkt.so, opened by libProviderHelper at
 * run time. A BMC without the daemon does without it: then there are no CLP jobs.
 *
 * The functions send a request to the daemon and take its answer; 0 for success. A CLP job's InstanceID
 * contains "clp-job". */
#ifndef PLATFORM_CLP_PACKETS_H
#define PLATFORM_CLP_PACKETS_H

#include "platform/smash_db_jobs.h"

#ifdef __cplusplus
extern "C" {
#endif

/* Reads all jobs of the daemon into one heap block that the caller frees; NULL and 0 when there are none. */
int SMP_Frame_Jobs_Req(StoredJobRow** jobs, int* count);
/* Reads one job into `job`. */
int SMP_Frame_Job_Req(const char* instanceId, StoredJobRow* job);
int SMP_Frame_DeleteJob_Req(const char* instanceId);

#ifdef __cplusplus
}
#endif

#endif
