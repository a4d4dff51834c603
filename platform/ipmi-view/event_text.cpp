#include "ipmi-view/event_text.h"

#include "ipmi-view/conversion.h"
#include "ipmi-view/sensor_state.h"
#include "ipmi/sensor_types.h"

#include <array>
#include <cstdio>
#include <ctime>
#include <freeipmi/freeipmi.h>
#include <platform/sel_record.h>

namespace view {
namespace {

constexpr std::uint32_t unspecifiedTime = CIM_SEL_TIME_NONE;

std::string hexadecimal(unsigned byte) {
    char text[8];
    std::snprintf(text, sizeof text, "%02X", byte & 0xFF);
    return text;
}

std::string hexadecimal(std::span<const std::uint8_t> bytes) {
    std::string text;
    for (const std::uint8_t byte : bytes)
        text += (text.empty() ? "" : " ") + hexadecimal(byte);
    return text;
}

unsigned offsetOf(const SensorEvent& event) {
    return event.data[0] & 0x0F;
}

std::string nameOf(const SensorEvent& event, const SensorLabel* label) {
    if (label != nullptr)
        return label->name;
    const std::string number = hexadecimal(event.sensor.number) + 'h';
    return (event.sensorType ? std::string(ipmi::sensorTypeName(*event.sensorType)) + " sensor "
                             : "sensor ") +
           number;
}

// Says what it means that a sensor of this type comes into the state.
std::string stateName(const SensorEvent& event) {
    const std::uint8_t type = event.eventType;
    const unsigned offset = offsetOf(event);
    char text[256] = "";
    int length = 0;
    if (type != ipmi::sensorSpecific)
        length = ipmi_get_generic_event_message(type, offset, text, sizeof text);
    else if (event.sensorType)
        length = ipmi_get_sensor_type_message(*event.sensorType, offset, text, sizeof text);
    return length > 0 ? text : "event type " + hexadecimal(type) + "h, state " + std::to_string(offset);
}

// What bytes 2 and 3 of the event data hold is in bits 7 to 6 and 5 to 4 of the first (IPMI 2.0 29.7).
enum Contents : unsigned { Unspecified = 0, Trigger = 1, Oem = 2, Extension = 3 };
Contents secondByte(const SensorEvent& event) {
    return static_cast<Contents>(event.data[0] >> 6);
}
Contents thirdByte(const SensorEvent& event) {
    return static_cast<Contents>(event.data[0] >> 4 & 0x03);
}

std::string quantityText(const char* name, const Quantity& quantity, bool withUnit) {
    std::string text = std::string(name) + ' ' + readingText(quantity.value);
    if (withUnit && !quantity.unit.empty())
        text += ' ' + quantity.unit;
    return text;
}

void addQuantities(EventText& text, const SensorEvent& event, const SensorLabel& label) {
    if (secondByte(event) == Trigger)
        text.reading = label.quantity(event.data[1]);
    if (thirdByte(event) == Trigger)
        text.threshold = label.quantity(event.data[2]);
    if (text.reading)
        text.detail = quantityText("reading", *text.reading, !text.threshold);
    if (text.threshold) {
        // An event that ends tells of a reading that came back over its threshold.
        const bool isAbove = (offsetOf(event) % 2 == 1) != event.isDeassertion;
        if (text.reading)
            text.detail += isAbove ? " > " : " < ";
        text.detail += quantityText("threshold", *text.threshold, true);
    }
}

// What FreeIPMI calls the event data of a sensor type, if it knows the byte.
void addExtension(EventText& text, const SensorEvent& event) {
    const std::uint8_t type = *event.sensorType;
    const unsigned offset = offsetOf(event);
    char message[256];
    if (secondByte(event) == Extension &&
        ipmi_get_event_data2_message(type, offset, event.data[1], message, sizeof message) > 0)
        text.detail = message;
    if (thirdByte(event) == Extension &&
        ipmi_get_event_data3_message(type, offset, event.data[1], event.data[2], message, sizeof message) > 0)
        text.detail += (text.detail.empty() ? "" : ", ") + std::string(message);
}

} // namespace

std::string logTimeText(std::uint32_t seconds) {
    char text[64];
    if (seconds == unspecifiedTime)
        return "-";
    if (seconds < CIM_SEL_TIME_FIRST_SET) {
        std::snprintf(text, sizeof text, "Pre-Init +%u:%02u:%02u", seconds / 3600, seconds / 60 % 60,
                      seconds % 60);
        return text;
    }
    const auto time = static_cast<std::time_t>(seconds);
    std::tm parts{};
    gmtime_r(&time, &parts);
    std::strftime(text, sizeof text, "%Y-%m-%d %H:%M:%S", &parts);
    return text;
}

EventText describeEvent(const SensorEvent& given, const SensorLabels& sensors) {
    const auto known = sensors.find(given.sensor);
    const SensorLabel* const label = known != sensors.end() ? &known->second : nullptr;
    SensorEvent event = given;
    if (!event.sensorType && label != nullptr)
        event.sensorType = label->type;
    EventText text{.time = "-",
                   .sensor = nameOf(event, label),
                   .sensorType = event.sensorType ? ipmi::sensorTypeName(*event.sensorType) : "-",
                   .event = stateName(event),
                   .detail = {},
                   .isAssertion = !event.isDeassertion,
                   .reading = {},
                   .threshold = {}};
    if (event.eventType == thresholdReadingType && label != nullptr && label->quantity)
        addQuantities(text, event, *label);
    else if (event.eventType == ipmi::sensorSpecific && event.sensorType)
        addExtension(text, event);
    return text;
}

EventText describeRecord(std::span<const std::uint8_t, 16> selRecord, const SensorLabels& sensors) {
    const std::uint8_t* const record = selRecord.data();
    if (PH_IsSelSystemEvent(record)) {
        EventText text = describeEvent(
            {.sensor = {PH_SelOwnerId(record), PH_SelOwnerLun(record), PH_SelSensorNumber(record)},
             .sensorType = PH_SelSensorType(record),
             .eventType = PH_SelEventType(record),
             .data = {record[13], record[14], record[15]},
             .isDeassertion = PH_IsSelDeassertion(record)},
            sensors);
        text.time = logTimeText(PH_SelTime(record));
        return text;
    }
    EventText text{.time = "-",
                   .sensor = "-",
                   .sensorType = "-",
                   .event = "OEM record " + hexadecimal(PH_SelRecordType(record)) + 'h',
                   .detail = {},
                   .isAssertion = {},
                   .reading = {},
                   .threshold = {}};
    std::size_t data = SEL_TIME_OFFSET;
    if (PH_IsSelOemTimed(record)) {
        constexpr std::size_t behindManufacturer = 10;
        char manufacturer[32];
        std::snprintf(manufacturer, sizeof manufacturer, " of manufacturer %06Xh",
                      PH_SelManufacturer(record));
        text.time = logTimeText(PH_SelTime(record));
        text.event += manufacturer;
        data = behindManufacturer;
    }
    text.event += ": " + hexadecimal(selRecord.subspan(data));
    return text;
}

} // namespace view
