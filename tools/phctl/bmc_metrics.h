// The metrics of the BMC that the database names.
#pragma once

#include "ipmi-view/metrics_collector.h"

namespace phctl {

// Whoever asks gets an answer within so many seconds. The session row is read anew for each collection.
std::unique_ptr<view::MetricsCollector> bmcMetrics(unsigned seconds);

} // namespace phctl
