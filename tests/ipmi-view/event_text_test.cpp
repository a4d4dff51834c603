// Records of the event log in words.
#include "ipmi-view/event_text.h"

#include <array>
#include <gtest/gtest.h>

namespace {

using Record = std::array<std::uint8_t, 16>;
using view::SensorLabels;

view::Quantity halfDegrees(std::uint8_t raw) {
    return {raw / 2.0, "degrees C"};
}

const SensorLabels sensors = {{{0x20, 0, 0x30}, {"CPU1 Temp", 0x01, halfDegrees}},
                              {{0x20, 1, 0x30}, {"Behind LUN 1", 0x01}},
                              {{0x20, 0, 0x41}, {"PSU1 Status", 0x08}}};

TEST(EventText, tellsTimeSensorAndEvent) {
    const std::tuple<Record, const char*, const char*, const char*, const char*> cases[] = {
        {{0, 0, 0x02, 0x70, 0x2A, 0x36, 0x66, 0x20, 0, 4, 0x01, 0x30, 0x01, 0x59, 125, 120},
         "2024-05-04 12:30:40",
         "CPU1 Temp",
         "Upper Critical - going high",
         "asserted"},
        {{0, 0, 0x02, 67, 0, 0, 0, 0x20, 0x71, 4, 0x01, 0x30, 0x81, 0x52, 5, 6},
         "Pre-Init +0:01:07",
         "Behind LUN 1",
         "Lower Critical - going low",
         "deasserted"},
        {{0, 0, 0x02, 0xFF, 0xFF, 0xFF, 0xFF, 0x20, 0, 4, 0x08, 0x41, 0x6F, 0x03, 0xFF, 0xFF},
         "-",
         "PSU1 Status",
         "Power Supply input lost (AC/DC)",
         "asserted"},
        // Unknown: the sensor's owner, a state of its type, an OEM event type.
        {{0, 0, 0x02, 0, 0, 0, 0x20, 0x22, 0, 4, 0x01, 0x30, 0x01, 0x0E, 0, 0},
         "1987-01-05 18:48:32",
         "Temperature sensor 30h",
         "event type 01h, state 14",
         "asserted"},
        {{0, 0, 0xDF, 0x70, 0x2A, 0x36, 0x66, 1, 2, 3, 4, 5, 6, 7, 8, 0xFF},
         "2024-05-04 12:30:40",
         "-",
         "OEM record DFh of manufacturer 030201h: 04 05 06 07 08 FF",
         "-"},
        {{0, 0, 0xE0, 0x70, 0x2A, 0x36, 0x66, 1, 2, 3, 4, 5, 6, 7, 8, 9},
         "-",
         "-",
         "OEM record E0h: 70 2A 36 66 01 02 03 04 05 06 07 08 09",
         "-"},
    };
    for (const auto& [record, time, sensor, event, state] : cases) {
        const auto text = view::describeRecord(record, sensors);
        EXPECT_EQ(text.time, time);
        EXPECT_EQ(text.sensor, sensor);
        EXPECT_EQ(text.event, event);
        EXPECT_EQ(text.state(), state);
    }
}

TEST(EventText, decodesEventData) {
    const struct {
        std::uint8_t sensorType, number, eventType;
        std::array<std::uint8_t, 3> data;
        const char* detail;
    } cases[] = {
        {0x01, 0x30, 0x01, {0x59, 125, 120}, "reading 62.5 > threshold 60 degrees C"},
        {0x01, 0x30, 0x81, {0x50, 12, 10}, "reading 6 > threshold 5 degrees C"},
        {0x01, 0x30, 0x01, {0x49, 125, 120}, "reading 62.5 degrees C"},
        {0x01, 0x30, 0x01, {0x19, 125, 120}, "threshold 60 degrees C"},
        {0x01, 0x30, 0x01, {0x09, 125, 120}, ""}, // the bytes are unspecified
        {0x01, 0x31, 0x01, {0x59, 125, 120}, ""}, // nobody knows how this sensor reads
        {0x08, 0x41, 0x6F, {0xC6, 0xFF, 0xFF}, ""},
        {0x23, 0x50, 0x6F, {0xC1, 0x03, 0xFF}, "Timer use at expiration = OS Load ; Interrupt type = none"},
    };
    for (const auto& each : cases) {
        const Record record = {0,
                               0,
                               0x02,
                               0,
                               0,
                               0,
                               0,
                               0x20,
                               0,
                               4,
                               each.sensorType,
                               each.number,
                               each.eventType,
                               each.data[0],
                               each.data[1],
                               each.data[2]};
        EXPECT_EQ(view::describeRecord(record, sensors).detail, each.detail)
            << int{each.number} << ' ' << int{each.data[0]};
    }
}

} // namespace
