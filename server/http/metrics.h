// Metrics for Prometheus, of whatever the server is in front of.
#pragma once

#include <chrono>
#include <functional>
#include <string>

namespace server {

enum class MetricsFormat { OpenMetrics, Prometheus };

// Returns the metrics as text, within `patience` if that is shorter than its own deadline. Several threads may call it
// at once.
using Metrics = std::function<std::string(MetricsFormat format, std::chrono::milliseconds patience)>;

} // namespace server
