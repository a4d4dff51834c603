// Health of devices and fans by their sensors.
#include "class_fixture.h"

namespace {

using ::testing::IsEmpty;

constexpr int powerSupply = 10; // IPMI entity

class DeviceHealth : public SensorClasses {
protected:
    void add(const char* name, int sensorType, int eventReadingType, int offset, int states,
             int entityInstance) {
        const int number = static_cast<int>(sensors.size()) + 1;
        CompactSdr sdr = makeCompactSdr(name, number, sensorType, eventReadingType, offset);
        sdr.entityId = powerSupply;
        sdr.entityInstance = static_cast<uint8_t>(entityInstance);
        sensors.push_back(sdr);
        readings[number] = makeReading(0, states);
    }
    int rollUp(int entityInstance) {
        const broker::Scope scope(broker);
        return PH_DeviceInstance(broker.handle(), nullptr, powerSupply, static_cast<uint16_t>(entityInstance),
                                 &healthState, &operationalStatus);
    }
    uint16_t healthState = 5;
    int operationalStatus = 2;
};

TEST_F(DeviceHealth, WorstSensorWins) {
    add("Presence", 0x08, 0x6F, 0, 0x01, 1);    // 5, 2
    add("Failure", 0x08, 0x6F, 1, 0x02, 1);     // 20, 6
    add("Prediction", 0x08, 0x6F, 2, 0x04, 1);  // 10, 5
    add("Redundancy", 0x08, 0x0B, 99, 0x01, 1); // 5, 2
    EXPECT_EQ(rollUp(1), 0);
    EXPECT_EQ(healthState, 20);
    EXPECT_EQ(operationalStatus, 6);
    healthState = 30;
    operationalStatus = 12;
    EXPECT_EQ(rollUp(1), 0);
    EXPECT_EQ(healthState, 30) << "as the device itself had it";
    EXPECT_EQ(operationalStatus, 12);
}

TEST_F(DeviceHealth, OnlyItsOwnSensorsSpeak) {
    add("Failure", 0x08, 0x6F, 1, 0x02, 1);
    add("Presence", 0x08, 0x6F, 0, 0x01, 2);
    EXPECT_EQ(rollUp(2), 0);
    EXPECT_EQ(healthState, 5);
    EXPECT_EQ(operationalStatus, 2);
}

TEST_F(DeviceHealth, StatesAreFoundInAnyCase) {
    add("Setup", 0x07, 0x6F, 5, 0x20, 1); // "Configuration Error Assert"
    EXPECT_EQ(rollUp(1), 0);
    EXPECT_EQ(healthState, 15);
    EXPECT_EQ(operationalStatus, 6);
}

TEST_F(DeviceHealth, NothingToSay) {
    EXPECT_EQ(rollUp(1), -1) << "no sensors";
    add("Failure", 0x08, 0x6F, 1, 0x02, 2);
    EXPECT_EQ(rollUp(1), -1) << "none of its own";
    EXPECT_THAT(readNumbers(), IsEmpty()) << "then none is read";
    add("Generic", 0x08, 0x0B, 99, 0x02, 1); // "No Events" has no health
    EXPECT_EQ(rollUp(1), -1);
    add("Unreadable", 0x08, 0x6F, 1, 0x02, 1);
    readings.erase(3);
    EXPECT_EQ(rollUp(1), -1);
    EXPECT_EQ(healthState, 5);
    EXPECT_EQ(operationalStatus, 2);
}

TEST_F(DeviceHealth, FailuresAreNoHealth) {
    add("Failure", 0x08, 0x6F, 1, 0x02, 1);
    for (const char* function : {"db_get_all_compact_sdrs", "CIM_Create_IPMI20_Session"}) {
        platformCalls.broken = {function};
        EXPECT_EQ(rollUp(1), -1) << function;
    }
    platformCalls.broken = {};
    for (const char* call : {"newObjectPath", "newArray"}) {
        broker.failCall(call, 1);
        EXPECT_EQ(rollUp(1), -1) << call;
    }
}

TEST_F(DeviceHealth, OfFans) {
    const std::tuple<bool, CIM_SensorReading, int, int, int> cases[] = {
        {false, {}, -1, 0, 0},
        {true, {0xCB, 0, 0xC0, 0, 0x80}, -1, 0, 0},
        {true, makeReading(9, 0, 0xE0), 0, 0, 11},
        {true, makeReading(9, 0), 0, 5, 2},
    };
    for (const auto& [answers, answer, result, health, status] : cases) {
        readings.clear();
        if (answers)
            readings[200] = answer;
        IPMI20_SESSION_T session{};
        EXPECT_EQ(PH_Fill_HealthState(&session, 200, &healthState, &operationalStatus), result);
        EXPECT_EQ(healthState, health);
        EXPECT_EQ(operationalStatus, status);
    }
}

} // namespace
