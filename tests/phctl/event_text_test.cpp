// Log entries in words.
#include "event_text.h"

#include <gtest/gtest.h>

namespace {

using phctl::SensorLabels;

const SensorLabels sensors = {{{0x20, 0, 0x30}, {"CPU1 Temp", 0x01}},
                              {{0x20, 0, 0x41}, {"PSU1 Status", 0x08}}};

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
