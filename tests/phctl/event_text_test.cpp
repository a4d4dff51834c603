// Records of the event log in words.
#include "event_text.h"

#include <gtest/gtest.h>

namespace {

using Record = std::array<std::uint8_t, 16>;
using phctl::SensorLabels;

const SensorLabels sensors = {{{0x20, 0, 0x30}, {"CPU1 Temp", 0x01}},
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
         "start + 0:01:07",
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
         "OEM record DFh: 01 02 03 04 05 06 07 08 FF",
         "-"},
        {{0, 0, 0xE0, 0x70, 0x2A, 0x36, 0x66, 1, 2, 3, 4, 5, 6, 7, 8, 9},
         "-",
         "-",
         "OEM record E0h: 70 2A 36 66 01 02 03 04 05 06 07 08 09",
         "-"},
    };
    for (const auto& [record, time, sensor, event, state] : cases) {
        const auto text = phctl::describeRecord(record, sensors);
        EXPECT_EQ(text.time, time);
        EXPECT_EQ(text.sensor, sensor);
        EXPECT_EQ(text.event, event);
        EXPECT_EQ(text.state(), state);
    }
}

std::string meaning(const char* property, broker::Value value, const char* asked = nullptr) {
    return phctl::logEntryText({{property, std::move(value)}}, asked != nullptr ? asked : property, sensors);
}

std::string ofData(const char* data) {
    return meaning("RecordData", {CMPI_string, std::string(data)});
}

TEST(EventText, readsRecordData) {
    EXPECT_EQ(ofData("*48.0.32*4660 2*305419896*3232*4*2*48*false*129*5*255*255*"),
              "CPU1 Temp: Lower Non-recoverable - going high, deasserted");
    EXPECT_EQ(ofData("*65.0.32*1 2*0*3232*4*2*65*true*111*3*255*255*"),
              "PSU1 Status: Power Supply input lost (AC/DC), asserted");
    // Nobody says what type this sensor is of.
    EXPECT_EQ(ofData("*66.0.32*1 2*0*3232*4*2*66*true*111*3*255*255*"),
              "sensor 42h: event type 6Fh, state 3, asserted");
    for (const char* other :
         {"", "*", "*48.0.32*4660 2*", "48.0.32", "*300.0.32*1 2*0*3232*4*2*48*true*1*5*0*0*"})
        EXPECT_EQ(ofData(other), "") << other;
    EXPECT_EQ(meaning("RecordData", {CMPI_string, std::monostate{}}), "");
    EXPECT_EQ(meaning("RecordData", {CMPI_string, std::string("x")}, "Missing"), "");
}

TEST(EventText, readsCreationTimes) {
    const auto at = [](const char* text) {
        return meaning("creationtimestamp", {CMPI_dateTime, *broker::DateTime::parse(text)});
    };
    EXPECT_EQ(at("20240504123040.000000+330"), "2024-05-04 12:30:40 +05:30");
    EXPECT_EQ(at("20240504123040.000000-300"), "2024-05-04 12:30:40 -05:00");
    EXPECT_EQ(at("00000001020304.000000:000"), ""); // an interval
}

} // namespace
