// Stand-in for the packet library of the command-line protocol daemon.
#include "clp_daemon.h"

#include <algorithm>
#include <cstdlib>
#include <cstring>
#include <platform/clp_packets.h>

#pragma GCC visibility push(default)

// The test program has it: weak, so that the linker does not look for it here.
extern "C" __attribute__((weak)) ClpDaemon clpDaemon;

static auto findJob(const char* instanceId) {
    return std::find_if(clpDaemon.jobs.begin(), clpDaemon.jobs.end(), [&](const StoredJobRow& row) {
        return std::strcmp(row.instanceId, instanceId) == 0;
    });
}

int SMP_Frame_Jobs_Req(StoredJobRow** jobs, int* count) {
    if (!clpDaemon.answers)
        return -1;
    *count = static_cast<int>(clpDaemon.jobs.size());
    *jobs = clpDaemon.jobs.empty()
                ? nullptr
                : static_cast<StoredJobRow*>(std::calloc(clpDaemon.jobs.size(), sizeof(StoredJobRow)));
    std::copy(clpDaemon.jobs.begin(), clpDaemon.jobs.end(), *jobs);
    return 0;
}

int SMP_Frame_Job_Req(const char* instanceId, StoredJobRow* job) {
    const auto found = findJob(instanceId);
    if (!clpDaemon.answers || found == clpDaemon.jobs.end())
        return -1;
    *job = *found;
    return 0;
}

int SMP_Frame_DeleteJob_Req(const char* instanceId) {
    const auto found = findJob(instanceId);
    if (!clpDaemon.answers || found == clpDaemon.jobs.end())
        return -1;
    clpDaemon.jobs.erase(found);
    return 0;
}
