#include "scripted_bmc.h"

#include <numeric>

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

// A BMC whose sensors read their own number.
class ReadingAhead : public HookTest {
protected:
    static constexpr std::size_t sensorCount = 50;

    // At the sensor `silent` the BMC stops answering; at `unknown` it has a completion code.
    void announce(int silent = -1, int unknown = -1) {
        std::iota(std::begin(numbers), std::end(numbers), std::uint8_t{10});
        bmc.respond = [=](const Bytes& request) {
            if (request[1] != 0x2D || request[2] == unknown)
                return Bytes{0xCB};
            if (request[2] == silent)
                throw ipmi::TransportError("no answer");
            return Bytes{0x00, request[2], 0xC0};
        };
        EXPECT_EQ(CIM_ReadSensorsAhead(&session, numbers, sensorCount, 30), 0);
    }

    // The reading; -1 for one that failed, 256 and the completion code where there is one.
    int read(std::size_t index) {
        CIM_SensorReading answer{};
        if (CIM_GetSensorReading(&session, numbers[index], &answer, 30) != 0)
            return -1;
        return answer.completionCode == 0 ? answer.reading : 256 + answer.completionCode;
    }

    void readAll(std::size_t begin, std::size_t end) {
        for (std::size_t i = begin; i < end; ++i)
            EXPECT_EQ(read(i), numbers[i]);
    }

    std::uint8_t numbers[sensorCount];
};

TEST_F(ReadingAhead, asksForEachOnce) {
    announce();
    readAll(0, sensorCount);
    EXPECT_EQ(bmc.requests.size(), sensorCount);
    readAll(0, 1); // once more, as nothing is left
    EXPECT_EQ(bmc.requests.size(), sensorCount + 1);
}

TEST_F(ReadingAhead, endsWithWhateverElseIsAsked) {
    announce();
    readAll(0, 3);
    std::uint8_t users = 0;
    EXPECT_NE(CIM_GetMaxNumUsers(&session, &users, 30), 0);
    const std::size_t asked = bmc.requests.size();
    EXPECT_LT(asked, sensorCount) << "it does not run too far ahead";
    readAll(3, sensorCount);
    EXPECT_EQ(bmc.requests.size(), asked + sensorCount - 3);
}

TEST_F(ReadingAhead, hasNoAnswerForAnotherSensor) {
    announce();
    readAll(7, 8);
    readAll(0, sensorCount);
}

TEST_F(ReadingAhead, failuresAreThoseOfTheirSensors) {
    announce(50, 30);
    readAll(0, 20);
    EXPECT_EQ(read(20), 256 + 0xCB);
    readAll(21, 40);
    for (std::size_t i = 40; i < sensorCount; ++i)
        EXPECT_EQ(read(i), -1);
    EXPECT_EQ(bmc.requests.size(), 41) << "nothing is asked after a lost answer";
}

TEST_F(ReadingAhead, endsWithTheSession) {
    announce();
    readAll(0, 1);
}

} // namespace
