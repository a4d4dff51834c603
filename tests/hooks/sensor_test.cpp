#include "scripted_bmc.h"

namespace {

TEST_F(HookTest, sensorReadingIsDecodedAtEveryLengthABmcMayAnswer) {
    const struct {
        const char* name;
        Bytes answer;
        int result;
        CIM_SensorReading expected;
    } cases[] = {
        {"threshold sensor", {0x00, 0x60, 0xC0, 0x08}, 0, {0x00, 0x60, 0xC0, 0x08, 0x00}},
        {"discrete sensor", {0x00, 0x00, 0xC0, 0x01, 0x80}, 0, {0x00, 0x00, 0xC0, 0x01, 0x80}},
        {"no state bytes", {0x00, 0x60, 0xC0}, 0, {0x00, 0x60, 0xC0, 0x00, 0x00}},
        {"unavailable", {0x00, 0x00, 0xE0, 0xC0}, 0, {0x00, 0x00, 0xE0, 0xC0, 0x00}},
        {"more than the standard has", {0x00, 1, 2, 3, 4, 5, 6}, 0, {0x00, 1, 2, 3, 4}},
        {"no such sensor", {0xCB}, 0, {0xCB, 0, 0, 0, 0}},
        {"data after a completion code", {0xCB, 1, 2, 3, 4}, 0, {0xCB, 0, 0, 0, 0}},
        {"only the completion code", {0x00}, -1, {}},
        {"no flags", {0x00, 0x60}, -1, {}},
    };
    for (const auto& reading : cases) {
        SCOPED_TRACE(reading.name);
        bmc.answers[{0x04, 0x2D, 0xA7}] = reading.answer;
        CIM_SensorReading answer{0xEE, 0xEE, 0xEE, 0xEE, 0xEE};
        ASSERT_EQ(CIM_GetSensorReading(&session, 0xA7, &answer, 30), reading.result);
        if (reading.result == 0) {
            EXPECT_EQ(answer.completionCode, reading.expected.completionCode);
            EXPECT_EQ(answer.reading, reading.expected.reading);
            EXPECT_EQ(answer.flags, reading.expected.flags);
            EXPECT_EQ(answer.statesLow, reading.expected.statesLow);
            EXPECT_EQ(answer.statesHigh, reading.expected.statesHigh);
        }
    }
    EXPECT_THAT(bmc.debugLog, testing::HasSubstr("CIM_GetSensorReading"));
}

} // namespace
