// PossibleStates and CurrentState from the facts of an SDR and the bits of a reading.
#include "records.h"

#include <cstring>
#include <gmock/gmock.h>

namespace {

using Texts = std::vector<std::string>;

TEST(PossibleStates, OfDiscreteSensors) {
    const struct {
        SensorFacts facts;
        Texts states;
    } cases[] = {
        {{2, 0x01, 0x01, 0}, {"Good", "Bad", "Unknown"}},
        {{5, 0x6F, 0x04, 0x3, "1"}, {"Good", "Bad", "Unknown"}},
        {{1, 0x0B, 0x08, 0x03}, {"Fully Redundant", "Redundancy Lost", "Unknown", "No Events"}},
        {{1, 0x07, 0x07, 0x181}, {"transition to OK", "Monitor", "Informational", "Unknown", "No Events"}},
        {{1, 0x02, 0x07, 0}, {"Unknown", "No Events"}},
        {{1, 0x0C, 0x07, 0x7FF0}, {"Unknown", "No Events"}},
        {{1, 0x6F, 0x08, 0x2, "1"},
         {"Power Supply Failure detected Assert", "Power Supply Failure detected Deassert", "Unknown"}},
        {{1, 0x6F, 0x08, 0x2, "99"}, {"Unknown"}},
        {{1, 0x6F, 0x08, 0x2, ""}, {"Presence detected Assert", "Presence detected Deassert", "Unknown"}},
        {{1, 0x6F, 0x22, 0x7FFF, "13"}, {}}, // no such state, but higher ones
        {{1, 0x6F, 0x0A, 0x1, "0"}, {}},     // the type has none
        {{1, 0x6F, 0x2C, 0x1, "8"}, {}},
        {{1, 0x70, 0xC0, 0x1}, {"Unknown"}},
        {{1, 0x7F, 0xFF, 0x1}, {"Unknown"}},
        {{1, 0x70, 0x2D, 0x1}, {}},
        {{1, 0x6E, 0xC0, 0x1}, {}},
        {{1, 0x01, 0x0B, 0x3F}, {}},
        {{1, 0x0D, 0x07, 0x1}, {}},
        {{6, 0x00, 0x00, 0x1}, {}},
    };
    for (const auto& [facts, states] : cases) {
        const auto record = makeSensor(facts);
        for (char** old = record->PossibleStates; old + 1 != std::end(record->PossibleStates); ++old)
            *old = strdup("of another sensor");
        EXPECT_EQ(PH_Fill_PossibleStates_Sensor(record.get()), 0);
        EXPECT_EQ(statesOf(*record), states) << record->DeviceID;
    }
}

// The longest lists: all states of a type, 300 characters and more in all.
TEST(PossibleStates, NoneIsLostInLongLists) {
    const auto redundancy = makeSensor({1, 0x0B, 0x08, 0xFF});
    EXPECT_EQ(PH_Fill_PossibleStates_Sensor(redundancy.get()), 0);
    EXPECT_EQ(statesOf(*redundancy).size(), 10U);
    const auto availability = makeSensor({1, 0x0A, 0x08, 0x7FFF});
    EXPECT_EQ(PH_Fill_PossibleStates_Sensor(availability.get()), 0);
    EXPECT_EQ(statesOf(*availability).size(), 11U);
    EXPECT_EQ(statesOf(*availability).back(), "No Events");
}

TEST(PossibleStates, OfThresholdSensors) {
    const struct {
        unsigned bits;
        Texts states;
    } cases[] = {
        {0x00, {"Normal", "Unknown"}},
        {0x12, {"Lower Critical", "Upper Critical", "Normal", "Unknown"}},
        {0x3F,
         {"Lower Non-Critical", "Lower Critical", "Lower Fatal", "Upper Non-Critical", "Upper Critical",
          "Upper Fatal", "Normal", "Unknown"}},
        {0xFFC0, {"Normal", "Unknown"}},
    };
    for (const auto& [bits, states] : cases) {
        const auto record = makeRecord<NumericSensorRecord>();
        record->sensor.supportedStates = bits;
        EXPECT_EQ(PH_Fill_PossibleStates_NumericSensor(record.get()), 0);
        EXPECT_EQ(statesOf(record->sensor), states) << bits;
    }
}

TEST(CurrentState, OfDiscreteSensors) {
    const struct {
        SensorFacts facts;
        int low;
        int high;
        const char* state;
        int result;
    } cases[] = {
        // Generic: the type's first state bit decides, with its name for other sensors.
        {{1, 0x0B, 0x08, 0x3}, 0x01, 0x00, "Fully Redundant", 0},
        {{1, 0x0B, 0x08, 0x3}, 0x02, 0x00, "No Events", 0},
        {{1, 0x0B, 0x08, 0x3}, 0x00, 0x00, "No Events", 0},
        {{2, 0x05, 0x01, 0x3}, 0x01, 0x00, "Good", 0},
        {{2, 0x05, 0x01, 0x3}, 0x02, 0x00, "Unknown", 0},
        {{2, 0x09, 0x01, 0x3}, 0x01, 0x00, "Unknown", 0},
        // The high byte counts when the low one is 0, and then as if it were the low one.
        {{1, 0x0B, 0x08, 0x3}, 0x00, 0x01, "Fully Redundant", 0},
        {{1, 0x0B, 0x08, 0x3}, 0x02, 0x01, "No Events", 0},
        {{1, 0x6F, 0x08, 0x2, "1"}, 0x00, 0x02, "Power Supply Failure detected Assert", 0},
        {{1, 0x6F, 0x08, 0x2, "1"}, 0x01, 0x02, "Power Supply Failure detected Deassert", 0},
        // Sensor-specific: the bit at the offset, in eight bits.
        {{1, 0x6F, 0x08, 0x2, "1"}, 0x02, 0x00, "Power Supply Failure detected Assert", 0},
        {{1, 0x6F, 0x07, 0x400, "10"}, 0x00, 0x04, "Processor Automatically Throttled Deassert", 0},
        {{1, 0x6F, 0x07, 0x400, "99"}, 0x01, 0x00, "Unknown", -1},
        {{1, 0x6F, 0x0A, 0x1, "0"}, 0x01, 0x00, "Unknown", -1}, // a type without states
        {{2, 0x6F, 0x01, 0x1, "0"}, 0x01, 0x00, "Unknown", -1},
        {{1, 0x6F, 0x08, 0x2, "40"}, 0xFF, 0x00, "", -1}, // no PossibleStates: left as it was
        // What no table knows. Severity sensors are good unless their first state is supported.
        {{1, 0x01, 0x0B, 0x1}, 0x01, 0x00, "Unknown", -1},
        {{1, 0x70, 0xC0, 0x1}, 0x01, 0x00, "Unknown", -1},
        {{1, 0x03, 0x08, 0x1, "1"}, 0x01, 0x00, "Unknown", -1},
        {{2, 0x07, 0x01, 0x6, "1"}, 0x02, 0x00, "Good", -1},
        {{2, 0x07, 0x01, 0x7, "1"}, 0x02, 0x00, "Unknown", -1},
        {{1, 0x07, 0x08, 0x6, "1"}, 0x02, 0x00, "Unknown", -1},
    };
    for (const auto& [facts, low, high, state, result] : cases) {
        const auto record = makeSensor(facts);
        ASSERT_EQ(PH_Fill_PossibleStates_Sensor(record.get()), 0);
        SCOPED_TRACE(::testing::Message() << record->DeviceID << " bits " << low << ", " << high);
        EXPECT_EQ(
            PH_Get_Sensor_CurrentState(record.get(), static_cast<uint8_t>(low), static_cast<uint8_t>(high)),
            result);
        EXPECT_STREQ(record->CurrentState, state);
    }
}

TEST(CurrentState, BitOfAnImpossibleOffset) {
    for (const char* offset : {"8", "32", "999", "-1"}) {
        const auto record = makeSensor({1, 0x6F, 0x08, 0xFF, offset});
        record->PossibleStates[0] = strdup("set");
        record->PossibleStates[1] = strdup("clear");
        EXPECT_EQ(PH_Get_Sensor_CurrentState(record.get(), 0xFF, 0x7F), 0);
        EXPECT_STREQ(record->CurrentState, "clear") << offset;
    }
}

TEST(CurrentState, LongTextsAreCut) {
    const auto record = makeSensor({1, 0x6F, 0x08, 0xFF, "0"});
    record->PossibleStates[0] = strdup(std::string(200, 'x').c_str());
    record->PossibleStates[1] = strdup("clear");
    EXPECT_EQ(PH_Get_Sensor_CurrentState(record.get(), 1, 0), 0);
    EXPECT_EQ(record->CurrentState, std::string(127, 'x'));
}

TEST(CurrentState, OfThresholdSensors) {
    const struct {
        int bits;
        const char* state;
    } cases[] = {
        {0x00, "Normal"},
        {0x01, "Lower Non-Critical"},
        {0x03, "Lower Non-Critical"},
        {0x02, "Lower Critical"},
        {0x04, "Normal"},
        {0x08, "Normal"},
        {0x38, "Normal"},
    };
    for (const auto& [bits, state] : cases) {
        const auto record = makeRecord<NumericSensorRecord>();
        EXPECT_EQ(PH_Get_Analog_CurrentState(record.get(), static_cast<uint8_t>(bits)), 0);
        EXPECT_STREQ(record->sensor.CurrentState, state) << bits;
    }
}

} // namespace
