// Records of the event log, in words for people and for events; the first byte says whether there is a sensor.
#include "ipmi-view/event_text.h"
#include "input.h"
#include "target.h"

#include <platform/event_descriptions.h>

// The library of event texts is opened by name elsewhere, and has no header for that.
extern "C" {
int FindSensorType(const std::uint8_t* record, char* text);
int AlertSeverityLevel(const std::uint8_t* record, char* text);
int SELLog(const std::uint8_t* record, char* text);
}

int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    Input input(data, size);
    const bool hasSensor = input.byte() % 2 == 1;
    std::uint8_t record[16] = {};
    std::ranges::copy(input.bytes(sizeof record), record);
    view::SensorLabels sensors;
    if (hasSensor)
        sensors[{.ownerId = record[7],
                 .ownerLun = static_cast<std::uint8_t>(record[8] & 3),
                 .number = record[11]}] = {
            .name = "Sensor", .type = record[10], .quantity = [](std::uint8_t raw) {
                return view::Quantity{static_cast<double>(raw), "degrees C"};
            }};
    const view::EventText text = view::describeRecord(record, sensors);
    require(!text.time.empty() && !text.sensor.empty() && !text.whole().empty(), "each part says something");
    for (const auto describe : {FindSensorType, AlertSeverityLevel, SELLog}) {
        char words[EVENT_TEXT_SIZE];
        std::fill(std::begin(words), std::end(words), 'x');
        if (describe(record, words) == 0)
            require(std::find(std::begin(words), std::end(words), '\0') != std::end(words), "a text ends");
    }
    return 0;
}
