#include "event_text.h"

#include "ipmi/sensor_types.h"

#include <algorithm>
#include <array>
#include <cstdio>
#include <ctime>
#include <freeipmi/freeipmi.h>
#include <platform/sel_record.h>

namespace phctl {
namespace {

constexpr std::uint8_t sensorSpecific = 0x6F;
constexpr std::uint32_t firstDate = 0x20000000; // below it times count from the BMC's start (IPMI 2.0, 37)
constexpr std::uint32_t unspecifiedTime = 0xFFFFFFFF;

std::string hexadecimal(unsigned byte) {
    char text[8];
    std::snprintf(text, sizeof text, "%02X", byte & 0xFF);
    return text;
}

std::string timeText(std::uint32_t seconds) {
    char text[64];
    if (seconds == unspecifiedTime)
        return "-";
    if (seconds < firstDate) {
        std::snprintf(text, sizeof text, "start + %u:%02u:%02u", seconds / 3600, seconds / 60 % 60,
                      seconds % 60);
        return text;
    }
    const auto time = static_cast<std::time_t>(seconds);
    std::tm parts{};
    gmtime_r(&time, &parts);
    std::strftime(text, sizeof text, "%Y-%m-%d %H:%M:%S", &parts);
    return text;
}

struct SensorEvent {
    SensorKey sensor;
    std::optional<std::uint8_t> sensorType;
    std::uint8_t eventType;
    std::uint8_t offset;
    bool isDeassertion;
};

std::string nameOf(const SensorEvent& event, const SensorLabels& sensors) {
    if (const auto known = sensors.find(event.sensor); known != sensors.end())
        return known->second.name;
    const std::string number = hexadecimal(event.sensor.number) + 'h';
    return (event.sensorType ? std::string(ipmi::sensorTypeName(*event.sensorType)) + " sensor "
                             : "sensor ") +
           number;
}

// Says what it means that a sensor of this type comes into the state.
std::string stateName(const SensorEvent& event) {
    const std::uint8_t type = event.eventType;
    const unsigned offset = event.offset;
    char text[256] = "";
    int length = 0;
    if (type != sensorSpecific)
        length = ipmi_get_generic_event_message(type, offset, text, sizeof text);
    else if (event.sensorType)
        length = ipmi_get_sensor_type_message(*event.sensorType, offset, text, sizeof text);
    return length > 0 ? text : "event type " + hexadecimal(type) + "h, state " + std::to_string(offset);
}

EventText describe(const SensorEvent& event, const SensorLabels& sensors) {
    return {.time = "-",
            .sensor = nameOf(event, sensors),
            .event = stateName(event),
            .isAssertion = !event.isDeassertion};
}

// The sensor's type is not in RecordData, and comes from what is known of the sensor.
std::string recordDataText(const std::string& data, const SensorLabels& sensors) {
    std::array<unsigned, 5>
        bytes{}; // sensor number, channel and owner's LUN, owner, event type, event data 1
    if (std::sscanf(data.c_str(), "*%u.%u.%u*%*u %*u*%*u*%*u*%*u*%*u*%*u*%*[a-z]*%u*%u*", &bytes[0],
                    &bytes[1], &bytes[2], &bytes[3], &bytes[4]) != static_cast<int>(bytes.size()) ||
        std::ranges::any_of(bytes, [](unsigned byte) { return byte > 0xFF; }))
        return {};
    const auto byte = [&](std::size_t i) { return static_cast<std::uint8_t>(bytes[i]); };
    SensorEvent event{.sensor = {byte(2), static_cast<std::uint8_t>(byte(1) & 0x03), byte(0)},
                      .sensorType = {},
                      .eventType = static_cast<std::uint8_t>(byte(3) & ~SEL_DEASSERTION),
                      .offset = static_cast<std::uint8_t>(byte(4) & 0x0F),
                      .isDeassertion = (byte(3) & SEL_DEASSERTION) != 0};
    if (const auto known = sensors.find(event.sensor); known != sensors.end())
        event.sensorType = known->second.type;
    const EventText text = describe(event, sensors);
    return text.sensor + ": " + text.event + ", " + text.state();
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

EventText describeRecord(std::span<const std::uint8_t, 16> selRecord, const SensorLabels& sensors) {
    const std::uint8_t* const record = selRecord.data();
    const bool isEvent = PH_IsSelSystemEvent(record);
    const bool hasTime = isEvent || PH_IsSelOemTimed(record);
    const std::string time = hasTime ? timeText(PH_SelTime(record)) : "-";
    if (!isEvent) {
        EventText text{.time = time,
                       .sensor = "-",
                       .event = "OEM record " + hexadecimal(PH_SelRecordType(record)) + "h:",
                       .isAssertion = {}};
        for (const std::uint8_t byte :
             selRecord.subspan(SEL_TIME_OFFSET + (hasTime ? sizeof(std::uint32_t) : 0)))
            text.event += ' ' + hexadecimal(byte);
        return text;
    }
    EventText text =
        describe({.sensor = {PH_SelOwnerId(record), PH_SelOwnerLun(record), PH_SelSensorNumber(record)},
                  .sensorType = PH_SelSensorType(record),
                  .eventType = PH_SelEventType(record),
                  .offset = PH_SelEventOffset(record),
                  .isDeassertion = PH_IsSelDeassertion(record)},
                 sensors);
    text.time = time;
    return text;
}

std::string logEntryText(const broker::NamedValues& properties, std::string_view name,
                         const SensorLabels& sensors) {
    const broker::Value* value = broker::find(properties, name);
    if (value == nullptr)
        return {};
    if (const auto* data = value->as<std::string>(); data != nullptr && broker::sameName(name, "RecordData"))
        return recordDataText(*data, sensors);
    if (const auto* time = value->as<broker::DateTime>();
        time != nullptr && broker::sameName(name, "CreationTimeStamp"))
        return dateTimeText(*time);
    return {};
}

} // namespace phctl
