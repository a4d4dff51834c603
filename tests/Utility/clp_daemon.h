// What the command-line protocol daemon of the jobs test has to say.
#pragma once

#include <platform/smash_db_jobs.h>

#include <vector>

struct ClpDaemon {
    bool answers = true;
    std::vector<StoredJobRow> jobs;
};
// The test program's; its packet library is opened by it and finds it there.
extern "C" __attribute__((visibility("default"))) ClpDaemon clpDaemon;
