#include "ipmi-view/metric_families.h"

#include <cmath>
#include <cstdint>
#include <cstdio>
#include <iterator>

namespace view {
namespace {

enum class Type : std::uint8_t { Gauge, Counter, Info };

struct Family {
    Metric metric;
    const char* name; // without the suffix of its type, "_total" or "_info"
    Type type;
    const char* unit; // the last word of the name; none for a name without
    const char* help;
};

#define STATE_HELP "State: 0 nominal, 1 warning, 2 critical, NaN not known"

constexpr Family families[] = {
    {Metric::Up, "ipmi_up", Type::Gauge, "", "Whether the BMC told what the collector asks for"},
    {Metric::ScrapeDuration, "ipmi_scrape_duration_seconds", Type::Gauge, "seconds",
     "How long the BMC was asked"},
    {Metric::ScrapeFailures, "ipmi_scrape_failures", Type::Counter, "",
     "How often the BMC did not tell what the collector asks for, since the start"},
    {Metric::SensorsUnreadable, "ipmi_sensors_unreadable", Type::Gauge, "",
     "How many sensors cannot be read"},
    {Metric::BmcInfo, "ipmi_bmc", Type::Info, "", "What the BMC is"},
    {Metric::ChassisPower, "ipmi_chassis_power_state", Type::Gauge, "", "Power of the host: 1 on, 0 off"},
    {Metric::ChassisDriveFault, "ipmi_chassis_drive_fault_state", Type::Gauge, "",
     "Drives of the chassis: 1 no fault, 0 fault"},
    {Metric::ChassisCoolingFault, "ipmi_chassis_cooling_fault_state", Type::Gauge, "",
     "Cooling of the chassis: 1 no fault, 0 fault"},
    {Metric::PowerConsumption, "ipmi_dcmi_power_consumption_watts", Type::Gauge, "watts",
     "Power that the machine takes"},
    {Metric::SelEntries, "ipmi_sel_logs_count", Type::Gauge, "", "Records in the event log"},
    {Metric::SelFreeSpace, "ipmi_sel_free_space_bytes", Type::Gauge, "bytes", "Room in the event log"},
    {Metric::Temperature, "ipmi_temperature_celsius", Type::Gauge, "celsius", "Temperature"},
    {Metric::TemperatureState, "ipmi_temperature_state", Type::Gauge, "", STATE_HELP},
    {Metric::FanSpeed, "ipmi_fan_speed_rpm", Type::Gauge, "rpm", "Revolutions of a fan in a minute"},
    {Metric::FanSpeedRatio, "ipmi_fan_speed_ratio", Type::Gauge, "ratio", "Share of a fan's full speed"},
    {Metric::FanSpeedState, "ipmi_fan_speed_state", Type::Gauge, "", STATE_HELP},
    {Metric::Voltage, "ipmi_voltage_volts", Type::Gauge, "volts", "Voltage"},
    {Metric::VoltageState, "ipmi_voltage_state", Type::Gauge, "", STATE_HELP},
    {Metric::Current, "ipmi_current_amperes", Type::Gauge, "amperes", "Current"},
    {Metric::CurrentState, "ipmi_current_state", Type::Gauge, "", STATE_HELP},
    {Metric::Power, "ipmi_power_watts", Type::Gauge, "watts", "Power by a sensor"},
    {Metric::PowerState, "ipmi_power_state", Type::Gauge, "", STATE_HELP},
    {Metric::SensorValue, "ipmi_sensor_value", Type::Gauge, "",
     "Reading of any other sensor, NaN for one without"},
    {Metric::SensorState, "ipmi_sensor_state", Type::Gauge, "", STATE_HELP},
};
#undef STATE_HELP

const char* suffixOf(Type type) {
    return type == Type::Counter ? "_total" : type == Type::Info ? "_info" : "";
}

// The older format knows no type for information, and counters by their whole name.
std::string headOf(const Family& family, MetricsFormat format) {
    const bool isOpenMetrics = format == MetricsFormat::OpenMetrics;
    const std::string name = family.name + std::string(isOpenMetrics ? "" : suffixOf(family.type));
    const char* type = family.type == Type::Counter                 ? "counter"
                       : family.type == Type::Info && isOpenMetrics ? "info"
                                                                    : "gauge";
    std::string head = "# TYPE " + name + ' ' + type + '\n';
    if (isOpenMetrics && *family.unit != '\0')
        head += "# UNIT " + name + ' ' + family.unit + '\n';
    return head + "# HELP " + name + ' ' + family.help + '\n';
}

// A label's value is UTF-8 here, as all texts of the database and of the message decoders are.
std::string escaped(const std::string& value) {
    std::string text;
    for (const char character : value) {
        if (character == '\n') {
            text += "\\n";
            continue;
        }
        if (character == '"' || character == '\\')
            text += '\\';
        text += character;
    }
    return text;
}

std::string numberOf(double value) {
    if (std::isnan(value))
        return "NaN";
    if (std::isinf(value))
        return value > 0 ? "+Inf" : "-Inf";
    char text[32];
    std::snprintf(text, sizeof text, "%.15g", value);
    return text;
}

std::string lineOf(const Family& family, const Sample& sample) {
    std::string labels;
    for (const auto& [name, value] : sample.labels)
        labels += (labels.empty() ? "{" : ",") + std::string(name) + "=\"" + escaped(value) + '"';
    return family.name + std::string(suffixOf(family.type)) + labels + (labels.empty() ? " " : "} ") +
           numberOf(sample.value) + '\n';
}

} // namespace

std::string metricsText(const Samples& samples, MetricsFormat format) {
    std::string text;
    for (const Family& family : families) {
        std::string lines;
        for (const Sample& sample : samples)
            if (sample.metric == family.metric)
                lines += lineOf(family, sample);
        if (!lines.empty())
            text += headOf(family, format) + lines;
    }
    return format == MetricsFormat::OpenMetrics ? text + "# EOF\n" : text;
}

} // namespace view
