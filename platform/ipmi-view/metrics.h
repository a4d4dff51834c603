// What a BMC tells of itself, as metrics.
#pragma once

#include "ipmi-view/metric_families.h"
#include "ipmi/transport.h"

#include <functional>

namespace view {

struct Failure {
    const char* collector;
    std::string reason;
};

struct Collection {
    Samples samples;
    std::vector<Failure> failures;
};

// Opens a session with a BMC, and asks it all until the deadline, by collectors: each has a sample of ipmi_up, but one
// whose command the BMC does not have. Whatever fails is told in the result: a collector
// that does not get to its end has no sample but ipmi_up, and after an answer was lost nothing more is asked.
using OpenBmc = std::function<std::unique_ptr<ipmi::Transport>()>;
Collection collectMetrics(const OpenBmc& open, ipmi::Clock::time_point deadline);

// The result where nothing was collected, for this reason.
Collection collectionWithout(const std::string& reason);

} // namespace view
