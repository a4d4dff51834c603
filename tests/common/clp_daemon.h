// What the command-line protocol daemon of a test has to say.
#pragma once

#include <platform/clp_packets.h>

#include <vector>

struct ClpDaemon {
    bool answers = true;
    std::vector<StoredJobRow> jobs;
    std::vector<CLPSessionRow> sessions;
    CLPOptions options{}; // of new sessions
    bool tellsOptions = true, takesOptions = true;
};
// The test program's; its packet library is opened by it and finds it there.
extern "C" __attribute__((visibility("default"))) ClpDaemon clpDaemon;
