#include "bmc_metrics.h"

#include "database.h"
#include "errors.h"
#include "session_hints.h"

#include <algorithm>

namespace phctl {

std::unique_ptr<view::MetricsCollector> bmcMetrics(unsigned seconds) {
    const auto open = [](view::MetricsCollector::Duration longest) {
        try {
            ipmi::SessionSettings settings = knownBmc();
            settings.timeout = std::max(1, static_cast<int>(longest.count() / 1000));
            return ipmi::openTransport(settings);
        } catch (const std::exception& error) {
            throw Failure(explain(error));
        }
    };
    return std::make_unique<view::MetricsCollector>(open, std::chrono::seconds(seconds));
}

} // namespace phctl
