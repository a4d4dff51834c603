// The metrics of a BMC, as families of samples, and their text for Prometheus. Names and labels are those of the
// IPMI exporter that most dashboards were made for.
#pragma once

#include <string>
#include <vector>

namespace view {

enum class Metric {
    Up,
    ScrapeDuration,
    ScrapeFailures,
    SensorsUnreadable,
    BmcInfo,
    ChassisPower,
    ChassisDriveFault,
    ChassisCoolingFault,
    PowerConsumption,
    SelEntries,
    SelFreeSpace,
    Temperature,
    TemperatureState,
    FanSpeed,
    FanSpeedRatio,
    FanSpeedState,
    Voltage,
    VoltageState,
    Current,
    CurrentState,
    Power,
    PowerState,
    SensorValue,
    SensorState,
};

struct Label {
    const char* name;
    std::string value;
};

struct Sample {
    Metric metric;
    std::vector<Label> labels;
    double value;
};
using Samples = std::vector<Sample>;

enum class MetricsFormat {
    OpenMetrics, // 1.0
    Prometheus   // the text format 0.0.4, for what does not know the other
};

// Writes the samples by family, in the order of the metrics.
std::string metricsText(const Samples& samples, MetricsFormat format);

} // namespace view
