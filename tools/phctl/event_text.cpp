#include "event_text.h"

#include <algorithm>
#include <array>
#include <cstdio>
#include <platform/sel_record.h>

namespace phctl {
namespace {

// The sensor's type is not in RecordData, and comes from what is known of the sensor.
std::string recordDataText(const std::string& data, const SensorLabels& sensors) {
    // Sensor number, channel and owner's LUN, owner, event type, event data.
    std::array<unsigned, 7> bytes{};
    if (std::sscanf(data.c_str(), "*%u.%u.%u*%*u %*u*%*u*%*u*%*u*%*u*%*u*%*[a-z]*%u*%u*%u*%u*", &bytes[0],
                    &bytes[1], &bytes[2], &bytes[3], &bytes[4], &bytes[5],
                    &bytes[6]) != static_cast<int>(bytes.size()) ||
        std::ranges::any_of(bytes, [](unsigned byte) { return byte > 0xFF; }))
        return {};
    const auto byte = [&](std::size_t i) { return static_cast<std::uint8_t>(bytes[i]); };
    const view::EventText text =
        view::describeEvent({.sensor = {byte(2), static_cast<std::uint8_t>(byte(1) & 0x03), byte(0)},
                             .sensorType = {},
                             .eventType = static_cast<std::uint8_t>(byte(3) & ~SEL_DEASSERTION),
                             .data = {byte(4), byte(5), byte(6)},
                             .isDeassertion = (byte(3) & SEL_DEASSERTION) != 0},
                            sensors);
    return text.sensor + ": " + text.whole() + ", " + text.state();
}

// Reads "20240504123040.000000+120".
std::string dateTimeText(const broker::DateTime& time) {
    if (time.interval)
        return {};
    const std::string digits = time.text();
    char offset[16];
    const unsigned minutes = static_cast<unsigned>(std::abs(time.utcOffset));
    std::snprintf(offset, sizeof offset, " %c%02u:%02u", time.utcOffset < 0 ? '-' : '+', minutes / 60,
                  minutes % 60);
    return digits.substr(0, 4) + '-' + digits.substr(4, 2) + '-' + digits.substr(6, 2) + ' ' +
           digits.substr(8, 2) + ':' + digits.substr(10, 2) + ':' + digits.substr(12, 2) + offset;
}

} // namespace

std::string logEntryText(const broker::NamedValues& properties, std::string_view name,
                         const SensorLabels& sensors) {
    const bool isData = broker::sameName(name, "RecordData");
    if (!isData && !broker::sameName(name, "CreationTimeStamp"))
        return {};
    const broker::Value* value = broker::find(properties, name);
    if (value == nullptr)
        return {};
    if (const auto* data = value->as<std::string>(); data != nullptr && isData)
        return recordDataText(*data, sensors);
    const auto* time = value->as<broker::DateTime>();
    return time != nullptr && !isData ? dateTimeText(*time) : std::string();
}

} // namespace phctl
