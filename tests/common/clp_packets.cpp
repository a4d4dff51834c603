// Stand-in for the packet library of the command-line protocol daemon.
#include "clp_daemon.h"

#include <algorithm>
#include <cstdlib>
#include <cstring>

#pragma GCC visibility push(default)

// The test program has it: weak, so that the linker does not look for it here.
extern "C" __attribute__((weak)) ClpDaemon clpDaemon;

template <class Row>
static int handOut(const std::vector<Row>& all, Row** rows, int* count) {
    if (!clpDaemon.answers)
        return -1;
    *count = static_cast<int>(all.size());
    *rows = all.empty() ? nullptr : static_cast<Row*>(std::calloc(all.size(), sizeof(Row)));
    std::copy(all.begin(), all.end(), *rows);
    return 0;
}

static auto findJob(const char* instanceId) {
    return std::find_if(clpDaemon.jobs.begin(), clpDaemon.jobs.end(), [&](const StoredJobRow& row) {
        return std::strcmp(row.instanceId, instanceId) == 0;
    });
}

int SMP_Frame_Jobs_Req(StoredJobRow** jobs, int* count) {
    return handOut(clpDaemon.jobs, jobs, count);
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

int SMP_Frame_Sessions_Req(CLPSessionRow** sessions, int* count) {
    return handOut(clpDaemon.sessions, sessions, count);
}

int SMP_Frame_Options_Req(CLPOptions* options) {
    *options = clpDaemon.options;
    return clpDaemon.answers && clpDaemon.tellsOptions ? 0 : -1;
}

int SMP_Frame_SetOptions_Req(const CLPOptions* options) {
    if (!clpDaemon.answers || !clpDaemon.takesOptions)
        return -1;
    clpDaemon.options = *options;
    return 0;
}
