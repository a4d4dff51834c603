// What becomes of an SDR and a reading in a sensor's record: states, numbers, texts.
#include "provider_helper/sensors.h"

#include <cmath>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <gmock/gmock.h>
#include <memory>

namespace {

using Texts = std::vector<std::string>;

struct CleanSensor {
    void operator()(SensorRecord* record) const { PH_Clean_Sensor(&record, 1); }
    void operator()(NumericSensorRecord* record) const { PH_Clean_NumericSensor(&record, 1); }
};
template <class Record>
using RecordPtr = std::unique_ptr<Record, CleanSensor>;

template <class Record>
RecordPtr<Record> makeRecord() {
    return RecordPtr<Record>(static_cast<Record*>(std::calloc(1, sizeof(Record))));
}

// The facts of an SDR that states depend on.
struct SensorFacts {
    int sensorType;       // CIM
    int eventReadingType; // IPMI
    int ipmiSensorType;
    unsigned states; // supported
    const char* offset = "99";
};

RecordPtr<SensorRecord> makeSensor(const SensorFacts& facts) {
    auto record = makeRecord<SensorRecord>();
    std::snprintf(record->DeviceID, sizeof(record->DeviceID), "32.7.0.%d.%02x.%s:A name",
                  facts.ipmiSensorType, facts.eventReadingType, facts.offset);
    record->SensorType = static_cast<uint16_t>(facts.sensorType);
    record->eventReadingType = static_cast<uint16_t>(facts.eventReadingType);
    record->ipmiSensorType = static_cast<uint16_t>(facts.ipmiSensorType);
    record->supportedStates = facts.states;
    return record;
}

Texts statesOf(const SensorRecord& record) {
    Texts states;
    for (char* const* state = record.PossibleStates; *state != nullptr; ++state)
        states.emplace_back(*state);
    return states;
}

TEST(PossibleStates, OfDiscreteSensors) {
    const std::tuple<SensorFacts, Texts> cases[] = {
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
    for (const auto& [type, states, count] : {std::tuple{0x0B, 0xFFU, 10U}, {0x0A, 0x7FFFU, 11U}}) {
        const auto record = makeSensor({1, type, 0x08, states});
        EXPECT_EQ(PH_Fill_PossibleStates_Sensor(record.get()), 0);
        EXPECT_EQ(statesOf(*record).size(), count);
        EXPECT_EQ(statesOf(*record).back(), "No Events");
    }
}

TEST(PossibleStates, OfThresholdSensors) {
    const std::tuple<unsigned, Texts> cases[] = {
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
    const std::tuple<SensorFacts, int, int, const char*, int> cases[] = {
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
    const std::tuple<int, const char*> cases[] = {
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

TEST(Conversion, OfRawReadings) {
    const struct {
        int format;
        int m;
        int b;
        int exponents; // K2, K1
        int raw;
        float value;
        int result = 0;
    } cases[] = {
        {0, 1, 0, 0x00, 200, 200.0F},
        {0, 1, 0, 0x00, 0, 0.0F},
        {1, 1, 0, 0x00, 0xFF, 0.0F},
        {1, 1, 0, 0x00, 0xFE, -1.0F},
        {1, 1, 0, 0x00, 0x80, -127.0F},
        {1, 1, 0, 0x00, 0x7F, 127.0F},
        {2, 1, 0, 0x00, 0xFF, -1.0F},
        {2, 1, 0, 0x00, 0x80, -128.0F},
        {2, 1, 0, 0x00, 0x7F, 127.0F},
        {0, 2, 3, 0xF1, 10, 5.0F},
        {0, 1, -5, 0x0F, 10, 9.5F},
        {0, 0, 1, 0x07, 255, 1e7F},
        {0, 0, 1, 0x08, 255, 1.0F / 1e8F},
        {0, 3, 0, 0x70, 1, 3e7F},
        {0, 100, 0, 0xE0, 37, 3700.0F * (1.0F / 100.0F)},
        {2, -512, 511, 0x22, 0x80, 11663600.0F},
        {3, 2, 3, 0xF1, 10, 10.0F, -1},
        {-1, 2, 3, 0xF1, 0xFF, 255.0F, -1},
    };
    for (const auto& [format, m, b, exponents, raw, value, result] : cases) {
        PHConversionFactors factors;
        std::snprintf(factors.analogFormat, sizeof(factors.analogFormat), "%d", format);
        std::snprintf(factors.m, sizeof(factors.m), "%d", m);
        std::snprintf(factors.b, sizeof(factors.b), "%d", b);
        std::snprintf(factors.exponents, sizeof(factors.exponents), "%d", exponents);
        float converted = NAN;
        EXPECT_EQ(PH_ConvertReading(&factors, std::to_string(raw).c_str(), &converted), result);
        EXPECT_EQ(converted, value) << "raw " << raw << " format " << format;

        const auto record = makeRecord<NumericSensorRecord>();
        record->analogFormat = format;
        record->m = m;
        record->b = b;
        record->exponents = exponents;
        EXPECT_EQ(PH_ConvertRawReading(raw, record.get()), value) << "raw " << raw << " format " << format;
    }
}

TEST(Conversion, OfTextsThatAreNoNumbers) {
    float converted = NAN;
    const PHConversionFactors factors{"", "0x10", "7 apples", "-0"};
    EXPECT_EQ(PH_ConvertReading(&factors, "99999999999", &converted), 0);
    EXPECT_EQ(converted, 7.0F);
}

TEST(Thresholds, ListedByBit) {
    const std::tuple<unsigned, std::vector<int>> cases[] = {
        {0x3F, {0, 2, 4, 1, 3, 5, -1}},
        {0x09, {0, 1, -1, -1, -1, -1, -1}},
        {0x40, {-1, -1, -1, -1, -1, -1, -1}},
    };
    for (const auto& [bits, list] : cases) {
        const auto record = makeRecord<NumericSensorRecord>();
        record->sensor.supportedStates = bits;
        EXPECT_EQ(PH_Fill_Settable_SupportedThresholds_NumericSensor(record.get()), 0);
        EXPECT_THAT(record->SupportedThresholds, testing::ElementsAreArray(list));
        EXPECT_THAT(record->SettableThresholds, testing::ElementsAreArray(list));
    }
}

TEST(DeviceId, IsTakenApart) {
    const std::tuple<const char*, Texts> cases[] = {
        {"32.17.0.1.01.99:Temp", {"32", "17", "0", "1", "01", "99", "Temp"}},
        {"32.17.0.1.6f.3:CPU 1.Temp", {"32", "17", "0", "1", "6f", "3", "CPU"}},
        {"32.17.0.1.6f.3: Temp", {"32", "17", "0", "1", "6f", "3", "Temp"}},
        {"1234.99999.0.1.6f6.1000:x", {"123", "999", "0", "1", "6f6", "100", "x"}},
        {"32.17.0.1.01.99", {"32", "17", "0", "1", "01", "99", ""}},
        {"32.17.0.1.01.9.9:Temp", {"32", "17", "0", "1", "01", "9", ""}},
        {"32.17.0.1.01.:Temp", {"32", "17", "0", "1", "01", "", ""}},
        {"32..0.1.01.99:Temp", {"32", "", "", "", "", "", ""}},
        {"a:b", {"a:b", "", "", "", "", "", ""}},
        {"", {"", "", "", "", "", "", ""}},
        {"1.2.3.4.5.6:0123456789012345678901234567890123456789",
         {"1", "2", "3", "4", "5", "6", "0123456789012345678901234567890"}},
    };
    for (const auto& [text, parts] : cases) {
        PHSensorDeviceId id;
        EXPECT_EQ(PH_Parse_Sensor_DeviceID(text, &id), 0);
        const Texts found = {id.ownerId,          id.sensorNumber, id.ownerLun, id.sensorType,
                             id.eventReadingType, id.offset,       id.name};
        EXPECT_EQ(found, parts) << text;
    }
}

TEST(Texts, OfSensors) {
    const struct {
        int sensorType;
        int eventReadingType;
        int entityId;
        const char* description; // behind the identity
        const char* caption;     // before it
    } cases[] = {
        {0x01, 0x01, 3, "Temperature for Processor 96", "Temperature"},
        {0x19, 0x6F, 53, "Chip Set for Real Time Clock(RTC) 96", "Chip Set"},
        {0x2C, 0x0C, 54, "FRUState for Other 96", "FRUState"},
        {0x00, 0x02, 0, "Reserved for Unspecified 96", "Reserved"},
        {0xC0, 0x6F, 255, "OEM RESERVED for Other 96", "OEM Reserved"},
        {0x01, 0x70, 7, "Temperature for System Board 96", "OEM Reserved"},
        {0x01, 0x0D, 7, "Temperature for System Board 96", "OEM Reserved"},
        {0x01, 0x00, 7, "Temperature for System Board 96", "OEM Reserved"},
        {0x50, 0x70, 7, "OEM RESERVED for System Board 96", "OEM Reserved"},
        {0x2D, 0x01, 7, "OEM RESERVED for System Board 96", nullptr},
        {0x50, 0x01, 7, "OEM RESERVED for System Board 96", nullptr},
        {0xBF, 0x6F, 7, "OEM RESERVED for System Board 96", nullptr},
    };
    for (const auto& [sensorType, eventReadingType, entityId, description, caption] : cases) {
        FullSdr sdr{};
        std::strcpy(sdr.common.name, "CPU 1 Temp");
        sdr.common.sensorNumber = 254;
        sdr.common.ownerId = 32;
        sdr.common.ownerLun = 3;
        sdr.common.ipmiSensorType = static_cast<uint8_t>(sensorType);
        sdr.common.eventReadingType = static_cast<uint8_t>(eventReadingType);
        sdr.common.entityId = static_cast<uint8_t>(entityId);
        sdr.common.entityInstance = 96;
        const auto numeric = makeRecord<NumericSensorRecord>();
        const auto discrete = makeRecord<SensorRecord>();
        EXPECT_EQ(PH_Fill_Caption_Description_ElementName_Sensor(&sdr.common, discrete.get()), 0);
        EXPECT_EQ(PH_Fill_Caption_Description_ElementName_NumericSensor(&sdr, numeric.get()), 0);
        for (const SensorRecord* record : {discrete.get(), &numeric->sensor}) {
            EXPECT_STREQ(record->ElementName, "CPU 1 Temp(254.32.3)");
            EXPECT_EQ(record->Description, std::string("CPU 1 Temp(254.32.3):") + description);
            EXPECT_EQ(record->Caption, caption != nullptr ? std::string(caption) + "(254.32.3)" : "");
        }
    }
}

} // namespace
