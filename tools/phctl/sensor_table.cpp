#include "sensor_table.h"

#include "ipmi/sensor_types.h"
#include "names.h"

#include <cmath>
#include <map>
#include <nlohmann/json.hpp>
#include <ostream>

namespace phctl {
namespace {

using nlohmann::ordered_json;
using view::Severity;

// The thresholds in the order in which their values grow, with the names that JSON has.
constexpr struct {
    unsigned threshold;
    const char* title;
    const char* name;
} thresholdColumns[] = {{2, "LNR", "lowerNonRecoverable"}, {1, "LC", "lowerCritical"},
                        {0, "LNC", "lowerNonCritical"},    {3, "UNC", "upperNonCritical"},
                        {4, "UC", "upperCritical"},        {5, "UNR", "upperNonRecoverable"}};

Colour colourOf(Severity severity) {
    switch (severity) {
    case Severity::Warning:
        return Colour::Yellow;
    case Severity::Critical:
        return Colour::Red;
    case Severity::Unknown:
        return Colour::Grey;
    default:
        return Colour::None;
    }
}

std::string thresholdText(const view::SensorRow& sensor, unsigned threshold) {
    const auto& [mask, raw] = sensor.thresholds;
    return sensor.conversion && sensor.thresholds.has(threshold)
               ? view::readingText(sensor.conversion->value(raw[threshold]))
               : "-";
}

std::vector<std::string> cellsOf(const SensorLine& line) {
    const auto& [sensor, reading] = line;
    const std::string unit = sensor.conversion ? sensor.conversion->unit() : "";
    std::vector<std::string> cells = {sensor.name, reading.value ? view::readingText(*reading.value) : "-",
                                      unit.empty() ? "-" : unit, view::nameOf(reading.severity),
                                      !reading.problem.empty() ? reading.problem
                                      : reading.events.empty() ? "-"
                                                               : joined(reading.events)};
    for (const auto& column : thresholdColumns)
        cells.push_back(thresholdText(sensor, column.threshold));
    return cells;
}

// JSON has no infinity, which 1/x of a reading may be.
ordered_json jsonNumber(double value) {
    return std::isfinite(value) ? ordered_json(value) : ordered_json(nullptr);
}

std::string count(std::size_t sensors) {
    return sensors == 1 ? "1 sensor" : std::to_string(sensors) + " sensors";
}

} // namespace

void printSensors(std::ostream& out, const std::vector<SensorLine>& lines, const Layout& layout) {
    std::vector<std::string> head = {"Sensor", "Reading", "Unit", "State", "Event"};
    for (const auto& column : thresholdColumns)
        head.emplace_back(column.title);
    Table table(head, {"LNR", "UNR", "LNC", "UNC"}); // critical thresholds stay longest
    std::map<std::string, std::size_t> problems;
    std::size_t unreadable = 0;
    for (const SensorLine& line : lines) {
        table.add(cellsOf(line), colourOf(line.reading.severity));
        if (line.reading.problem.empty())
            continue;
        ++unreadable;
        ++problems[line.reading.problem];
    }
    table.print(out, layout);
    if (unreadable > 0) {
        out << count(unreadable) << " of " << lines.size() << " cannot be read:";
        for (bool isFirst = true; const auto& [problem, times] : problems) {
            out << (isFirst ? " " : ", ") << times << ' ' << problem;
            isFirst = false;
        }
        out << '\n';
    }
    constexpr std::string_view note =
        "States are computed from the threshold and state bits of each reading; "
        "CurrentState of CIM may say otherwise.";
    for (const std::string& line : wrap(note, layout.width > 0 ? layout.width : note.size()))
        out << line << '\n';
}

ordered_json computedJson(const view::SensorRow& sensor, const view::Reading& reading) {
    if (!reading.problem.empty())
        return {{"state", view::nameOf(reading.severity)}, {"problem", reading.problem}};
    ordered_json json = ordered_json::object();
    if (reading.value) {
        json["reading"] = jsonNumber(*reading.value);
        json["unit"] = sensor.conversion->unit();
    }
    json["state"] = view::nameOf(reading.severity);
    json["events"] = reading.events;
    return json;
}

ordered_json toJson(const std::vector<SensorLine>& lines) {
    auto list = ordered_json::array();
    for (const auto& [sensor, reading] : lines) {
        ordered_json json = {{"name", sensor.name},       {"number", sensor.number},
                             {"record", sensor.recordId}, {"type", ipmi::sensorTypeName(sensor.type)},
                             {"entity", sensor.entityId}, {"entityInstance", sensor.entityInstance}};
        json.update(computedJson(sensor, reading));
        if (reading.raw)
            json["raw"] = *reading.raw;
        auto thresholds = ordered_json::object();
        if (sensor.conversion)
            for (const auto& [threshold, title, name] : thresholdColumns)
                if (sensor.thresholds.has(threshold))
                    thresholds[name] = jsonNumber(sensor.conversion->value(sensor.thresholds.raw[threshold]));
        if (!thresholds.empty())
            json["thresholds"] = std::move(thresholds);
        list.push_back(std::move(json));
    }
    return list;
}

} // namespace phctl
