#include "computed_readings.h"

#include "ipmi/commands.h"
#include "served_classes.h"

#include <algorithm>
#include <cstdio>
#include <map>
#include <mutex>

namespace phctl {
namespace {

// By sensor number, as exchanges are observed in the whole process.
struct Answers {
    std::mutex mutex;
    std::map<std::uint8_t, std::vector<std::uint8_t>> bySensor;
};

Answers& answers() {
    static Answers instance;
    return instance;
}

// "32.3.0.1.01.99:CPU1 Temp"
struct DeviceId {
    unsigned number = 0, type = 0, readingType = 0, offset = 0;
    std::string name;
};
constexpr unsigned wholeSensor = 99;

std::optional<DeviceId> deviceIdOf(const broker::Instance& instance) {
    const broker::Value* value = broker::find(instance.path.keys, "DeviceID");
    const auto* text = value != nullptr ? value->as<std::string>() : nullptr;
    DeviceId id;
    int end = 0;
    if (!isSensorClass(instance.path.className) || text == nullptr ||
        std::sscanf(text->c_str(), "%*u.%u.%*u.%u.%x.%u:%n", &id.number, &id.type, &id.readingType,
                    &id.offset, &end) != 4 ||
        end == 0)
        return {};
    id.name = text->substr(static_cast<std::size_t>(end));
    return id;
}

// The database cannot be read by everybody who asks the providers: readings are those of CIM then.
const std::vector<view::SensorRow>& sensorRows() {
    static const std::vector<view::SensorRow> rows = [] {
        try {
            return view::readSensorRows();
        } catch (const std::exception&) {
            return std::vector<view::SensorRow>();
        }
    }();
    return rows;
}

// An earlier record of the same number, but another name, may have the sensor's factors otherwise.
const view::SensorRow* rowOf(const DeviceId& id) {
    const view::SensorRow* found = nullptr;
    for (const view::SensorRow& row : sensorRows())
        if (row.number == id.number && row.type == id.type && row.readingType == id.readingType &&
            (found == nullptr || row.name == id.name))
            found = &row;
    return found;
}

// They have the order of the thresholds' bits.
constexpr const char* thresholdProperties[view::thresholdCount] = {
    "LowerThresholdNonCritical", "LowerThresholdCritical", "LowerThresholdFatal",
    "UpperThresholdNonCritical", "UpperThresholdCritical", "UpperThresholdFatal"};

std::string quantityText(double value, const view::Conversion& conversion) {
    const std::string unit = conversion.unit();
    return view::readingText(value) + (unit.empty() ? "" : ' ' + unit);
}

} // namespace

void keepReading(std::uint8_t netFn, std::uint8_t command, std::span<const std::uint8_t> request,
                 std::span<const std::uint8_t> answer) {
    if (ipmi::CommandCode{netFn, command} != ipmi::command::getSensorReading || request.empty())
        return;
    const std::lock_guard lock(answers().mutex);
    answers().bySensor[request[0]].assign(answer.begin(), answer.end());
}

std::optional<SensorLine> computedReading(const broker::Instance& instance) {
    const auto id = deviceIdOf(instance);
    const view::SensorRow* const row = id ? rowOf(*id) : nullptr;
    if (row == nullptr)
        return {};
    const std::lock_guard lock(answers().mutex);
    const auto answer = answers().bySensor.find(row->number);
    if (answer == answers().bySensor.end())
        return {};
    SensorLine line{*row, view::decodeReading(*row, answer->second)};
    if (id->offset != wholeSensor && line.reading.problem.empty()) {
        line.reading.states &= static_cast<std::uint16_t>(1U << (id->offset & 0x0F));
        view::judge(line.sensor, line.reading);
    }
    return line;
}

std::string computedText(const SensorLine& line, std::string_view property) {
    const auto& [sensor, reading] = line;
    if (broker::sameName(property, "CurrentReading") && reading.value)
        return quantityText(*reading.value, *sensor.conversion);
    for (unsigned each = 0; each < view::thresholdCount; ++each)
        if (broker::sameName(property, thresholdProperties[each]) && sensor.conversion &&
            sensor.thresholds.has(each))
            return quantityText(sensor.conversion->value(sensor.thresholds.raw[each]), *sensor.conversion);
    if (!broker::sameName(property, "CurrentState"))
        return {};
    std::string text = view::nameOf(reading.severity);
    if (!reading.problem.empty())
        return text + ": " + reading.problem;
    for (std::size_t i = 0; i < reading.events.size(); ++i)
        text += (i == 0 ? ": " : ", ") + reading.events[i];
    return text;
}

} // namespace phctl
