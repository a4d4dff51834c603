#include "smash-db/sync/sdr_mapping.h"

#include "sdr_builder.h"
#include "smash-db/sync/entity_devices.h"

#include <gmock/gmock.h>

namespace {

using smash::SdrMapping;
using testing::ElementsAre;
using testing::HasSubstr;
using testing::IsEmpty;

constexpr std::uint8_t temperature = 0x01;
constexpr std::uint8_t powerSupply = 0x08;
constexpr std::uint8_t threshold = 0x01;
constexpr std::uint8_t severity = 0x07;
constexpr std::uint8_t sensorSpecific = 0x6F;

class Mapping : public testing::Test {
protected:
    void add(const SdrBuilder& sdr, std::uint16_t recordId = 1) {
        mapping.add(sdr.record(recordId), remarks);
    }

    std::vector<std::string> deviceIds() const {
        std::vector<std::string> ids;
        for (const auto& row : mapping.numericSensors)
            ids.emplace_back(row.common.deviceId);
        for (const auto& row : mapping.sensors)
            ids.emplace_back(row.deviceId);
        return ids;
    }
    std::string reasons() const {
        std::string text;
        for (const auto& remark : remarks)
            text += remark.source + ": " + remark.reason + "\n";
        return text;
    }

    SdrMapping mapping;
    std::vector<smash::SyncRemark> remarks;
};

TEST_F(Mapping, takesThresholdSensorsFieldByField) {
    add(SdrBuilder::full(temperature, threshold, "Inlet \"A\"")
            .set(8, {0x30, 0x0C, 0x02})        // number, entity
            .set(19, {0x1B, 0x3F})             // readable and settable thresholds
            .set(21, {0x98, 0x01, 0x00, 0x80}) // two's complement, per second, degrees C, linear
            .set(25, {0xFE, 0xC2, 0x38, 0x45}) // M -2, tolerance 2; B 138h, accuracy 5
            .set(29, {0x14, 0xF1})             // accuracy 45h in all, exponent 1; R -1, B 1
            .set(31, {7, 1, 2, 3, 4, 5, 6, 7, 8, 9, 10, 11, 12}),
        0x1234);
    ASSERT_EQ(mapping.numericSensors.size(), 1u) << reasons();
    EXPECT_THAT(mapping.sensors, IsEmpty());
    const FullSdr& row = mapping.numericSensors[0];
    EXPECT_STREQ(row.common.deviceId, "32.48.0.1.01.99:Inlet _A_");
    EXPECT_STREQ(row.common.name, "Inlet \"A\"");
    EXPECT_STREQ(row.common.source, "SDR record 0x1234");
    EXPECT_STREQ(row.common.otherSensorType, "");
    EXPECT_EQ(row.common.sensorType, 2);
    EXPECT_EQ(row.common.ownerId, 0x20);
    EXPECT_EQ(row.common.ownerLun, 0);
    EXPECT_EQ(row.common.sensorNumber, 0x30);
    EXPECT_EQ(row.common.entityId, 0x0C);
    EXPECT_EQ(row.common.entityInstance, 2);
    EXPECT_EQ(row.common.ipmiSensorType, temperature);
    EXPECT_EQ(row.common.eventReadingType, threshold);
    EXPECT_EQ(row.common.supportedStates, 0x1Bu);
    EXPECT_EQ(row.analogFormat, 2);
    EXPECT_EQ(row.rateUnits, 3);
    EXPECT_EQ(row.baseUnits, 1);
    EXPECT_EQ(row.m, -2);
    EXPECT_EQ(row.b, 0x138);
    EXPECT_EQ(row.exponents, 0xF1);
    EXPECT_EQ(row.isLinear, 1);
    EXPECT_EQ(row.resolution, 20u) << "0.2 units";
    EXPECT_EQ(row.tolerance, 20) << "two half steps";
    EXPECT_EQ(row.accuracy, 690);
    EXPECT_THAT(
        (std::vector<int>{row.nominalReading, row.normalMax, row.normalMin, row.maxReadable, row.minReadable,
                          row.upperNonRecoverable, row.upperCritical, row.upperNonCritical,
                          row.lowerNonRecoverable, row.lowerCritical, row.lowerNonCritical, row.hysteresis}),
        ElementsAre(1, 2, 3, 4, 5, 6, 7, 8, 9, 10, 11, 12));
}

TEST_F(Mapping, takesNominalAndNormalReadingsThatAreSpecified) {
    const std::pair<std::uint8_t, std::vector<int>> cases[] = {
        {0, {0, 0, 0}}, {1, {1, 0, 0}}, {2, {0, 2, 0}}, {0xFC, {0, 0, 3}}, {0xFF, {1, 2, 3}}};
    std::uint8_t number = 0;
    for (const auto& [flags, expected] : cases) {
        add(SdrBuilder::full(temperature, threshold, "T").number(++number).set(31, {flags, 1, 2, 3, 4}));
        const FullSdr& row = mapping.numericSensors.back();
        EXPECT_EQ((std::vector<int>{row.nominalReading, row.normalMax, row.normalMin}), expected);
        EXPECT_EQ(row.maxReadable, 4);
    }
}

TEST_F(Mapping, extendsTheSignsOfFactors) {
    const struct {
        std::uint8_t low, high;
        int value;
    } cases[] = {{0x00, 0x00, 0},    {0xFF, 0x00, 255},  {0x00, 0x40, 256}, {0xFF, 0x7F, 511},
                 {0x00, 0x80, -512}, {0xFF, 0xBF, -257}, {0xFF, 0xFF, -1}};
    std::uint8_t number = 0;
    for (const auto& item : cases) {
        add(SdrBuilder::full(temperature, threshold, "T")
                .number(++number)
                .set(25, {item.low, item.high, item.low, item.high}));
        ASSERT_EQ(mapping.numericSensors.size(), number) << reasons();
        EXPECT_EQ(mapping.numericSensors.back().m, item.value);
        EXPECT_EQ(mapping.numericSensors.back().b, item.value);
    }
}

TEST_F(Mapping, limitsWhatNoPublishedNumberHolds) {
    add(SdrBuilder::full(temperature, threshold, "T").set(24, {0x70, 0x00, 0xBF}).set(30, {0x70}));
    ASSERT_EQ(mapping.numericSensors.size(), 1u);
    const FullSdr& row = mapping.numericSensors[0];
    EXPECT_EQ(row.m, -512);
    EXPECT_EQ(row.isLinear, 0);
    EXPECT_EQ(row.resolution, UINT32_MAX) << "51200 times 10 to the power of 7";
    EXPECT_EQ(row.tolerance, INT32_MAX);
}

TEST_F(Mapping, namesSensorTypes) {
    const struct {
        std::uint8_t type;
        int cimType;
        const char* other;
    } cases[] = {{0x01, 2, ""},
                 {0x02, 3, ""},
                 {0x03, 4, ""},
                 {0x04, 5, ""},
                 {0x05, 1, "Physical Security"},
                 {0x2C, 1, "FRU State"},
                 {0x2D, 1, "Reserved"},
                 {0xC0, 1, "OEM"}};
    for (const auto& item : cases) {
        add(SdrBuilder::compact(item.type, severity, "S"));
        ASSERT_FALSE(mapping.sensors.empty());
        EXPECT_EQ(mapping.sensors.back().sensorType, item.cimType) << +item.type;
        EXPECT_STREQ(mapping.sensors.back().otherSensorType, item.other) << +item.type;
    }
}

TEST_F(Mapping, makesARowOfEachStateOfASensorSpecificSensor) {
    add(SdrBuilder::full(powerSupply, sensorSpecific, "PS1").number(0x60).states(0xC009));
    add(SdrBuilder::compact(powerSupply, sensorSpecific, "PS2").number(0x61).states(0x8000));
    EXPECT_THAT(deviceIds(), ElementsAre("32.96.0.8.6f.0:PS1", "32.96.0.8.6f.3:PS1", "32.96.0.8.6f.14:PS1",
                                         "32.97.0.8.6f.99:PS2"));
    EXPECT_EQ(mapping.sensors[0].supportedStates, 0x4009u) << "bit 15 is no state";
}

TEST_F(Mapping, makesOneRowOfAnyOtherDiscreteSensor) {
    for (const std::uint8_t readingType : std::initializer_list<std::uint8_t>{0x03, 0x0C, 0x00, 0x70, 0x7F})
        add(SdrBuilder::full(powerSupply, readingType, "G").states(0x0003));
    add(SdrBuilder::compact(temperature, threshold, "No factors").states(0x3F38));
    EXPECT_THAT(deviceIds(),
                ElementsAre("32.1.0.8.03.99:G", "32.1.0.8.0c.99:G", "32.1.0.8.00.99:G", "32.1.0.8.70.99:G",
                            "32.1.0.8.7f.99:G", "32.1.0.1.01.99:No factors"));
    EXPECT_EQ(mapping.sensors[0].supportedStates, 3u);
    EXPECT_EQ(mapping.sensors[5].supportedStates, 0x38u) << "thresholds that can be read";
}

TEST_F(Mapping, spreadsRecordsThatSensorsShare) {
    const auto shared = [](std::uint8_t number, std::uint8_t sharing, std::uint8_t instances) {
        return SdrBuilder::compact(powerSupply, severity, "Temp")
            .set(8, {number, 10, 5})
            .set(24, {sharing, instances});
    };
    add(shared(10, 0x03, 5));         // numeric, from 5, one entity instance
    add(shared(20, 0x12, 0x80 | 25)); // alphabetic, from Z, an entity instance each
    add(shared(30, 0x01, 7));         // alone
    add(shared(40, 0x00, 7));         // alone too
    EXPECT_THAT(deviceIds(),
                ElementsAre("32.10.0.8.07.99:Temp 5", "32.11.0.8.07.99:Temp 6", "32.12.0.8.07.99:Temp 7",
                            "32.20.0.8.07.99:Temp Z", "32.21.0.8.07.99:Temp AA", "32.30.0.8.07.99:Temp",
                            "32.40.0.8.07.99:Temp"));
    EXPECT_EQ(mapping.sensors[2].entityInstance, 5);
    EXPECT_EQ(mapping.sensors[4].entityInstance, 6);
    EXPECT_EQ(mapping.sensors[4].sensorNumber, 21);
}

TEST_F(Mapping, keepsTheNumbersOfSharedNamesWhole) {
    const std::string longest(30, 'n');
    add(SdrBuilder::compact(powerSupply, severity, longest).set(24, {2, 126}));
    ASSERT_EQ(mapping.sensors.size(), 2u) << reasons();
    EXPECT_EQ(mapping.sensors[0].name, std::string(27, 'n') + " 126");
    EXPECT_EQ(mapping.sensors[1].name, std::string(27, 'n') + " 127");
}

TEST_F(Mapping, namesSensorsWithoutAnIdStringByTheirNumber) {
    add(SdrBuilder::full(temperature, threshold, "").number(17));
    add(SdrBuilder::compact(powerSupply, severity, "").number(18).set(24, {2}));
    EXPECT_THAT(deviceIds(), ElementsAre("32.17.0.1.01.99:Sensor 17", "32.18.0.8.07.99:Sensor 18",
                                         "32.19.0.8.07.99:Sensor 19"));
}

TEST_F(Mapping, leavesOutWhatItCannotServe) {
    const std::tuple<SdrBuilder, const char*> cases[] = {
        {SdrBuilder::full(temperature, threshold, "T").set(6, {0x41}), "controller 41h, LUN 0"},
        {SdrBuilder::compact(temperature, severity, "T").set(7, {0x01}), "controller 20h, LUN 1"},
        {SdrBuilder::full(temperature, threshold, "T").set(3, {0x51, 0x03}), "only sends events"},
        {SdrBuilder::full(temperature, threshold, "T").number(0xFF), "beyond FEh"},
        {SdrBuilder::compact(temperature, severity, "T").number(0xF8).set(24, {8}), "beyond FEh"},
        {SdrBuilder::full(temperature, threshold, "T").resize(48), "ends before"},
        {SdrBuilder::full(temperature, threshold, "T").resize(30), "ends before"},
        {SdrBuilder::compact(temperature, severity, "T").resize(5), "ends before"},
        {SdrBuilder::compact(temperature, severity, "T").set(32, {0xDE}), "ends before"},
        {SdrBuilder::fruLocator(1, 7, 1).set(6, {0x24}), "FRU device"},
        {SdrBuilder::fruLocator(1, 7, 1).set(8, {0x00}), "FRU device"},
        {SdrBuilder::fruLocator(1, 7, 1).resize(12), "ends before"},
    };
    for (const auto& [sdr, reason] : cases) {
        remarks.clear();
        add(sdr, 0x0042);
        EXPECT_THAT(reasons(), HasSubstr("SDR record 0x0042: ")) << reason;
        EXPECT_THAT(reasons(), HasSubstr(reason));
        EXPECT_THAT(deviceIds(), IsEmpty()) << reason;
        EXPECT_TRUE(std::ranges::none_of(mapping.locators, [](const auto& each) {
            return each.fruDeviceId.has_value();
        })) << reason;
    }
}

TEST_F(Mapping, servesTheFirstOfTwoSensorsWithOneId) {
    add(SdrBuilder::full(temperature, threshold, "T'").set(9, {1}), 1);
    add(SdrBuilder::full(temperature, threshold, "T_").set(9, {2}), 2);
    add(SdrBuilder::full(temperature, threshold, "U").set(9, {3}), 3);
    EXPECT_THAT(deviceIds(), ElementsAre("32.1.0.1.01.99:T_", "32.1.0.1.01.99:U"));
    EXPECT_EQ(mapping.numericSensors[0].common.entityId, 1);
    EXPECT_THAT(reasons(), HasSubstr("SDR record 0x0002: "));
}

TEST_F(Mapping, findsEntitiesAndPassesOverOtherRecords) {
    add(SdrBuilder::fruLocator(3, 0x0A, 2));
    for (const std::uint8_t type : std::initializer_list<std::uint8_t>{0x10, 0x12, 0x13, 0x14, 0xC0})
        add(SdrBuilder::fruLocator(4, 0x0A, type).set(4, {type}));
    ASSERT_EQ(mapping.locators.size(), 3u);
    EXPECT_EQ(mapping.locators[0].fruDeviceId, 3);
    EXPECT_EQ(mapping.locators[0].entityId, 0x0A);
    EXPECT_EQ(mapping.locators[0].entityInstance, 2);
    EXPECT_EQ(mapping.locators[0].name, "FRU");
    for (std::size_t i : {1, 2}) {
        EXPECT_EQ(mapping.locators[i].fruDeviceId, std::nullopt);
        EXPECT_EQ(mapping.locators[i].entityInstance, i == 1 ? 0x10 : 0x12);
    }
    EXPECT_THAT(remarks, IsEmpty());
}

TEST_F(Mapping, takesEntityAssociations) {
    const struct {
        const char* name;
        std::uint8_t type;
        std::initializer_list<std::uint8_t> bytes;
        std::vector<std::string> parts;
        const char* remark;
    } cases[] = {
        {"a list with room left",
         0x08,
         {19, 1, 0x20, 10, 1, 10, 2, 0, 0, 20, 1},
         {"10.1", "10.2", "20.1"},
         ""},
        {"two ranges", 0x08, {30, 1, 0xA0, 29, 1, 29, 3, 29, 9, 29, 9}, {"29.1", "29.2", "29.3", "29.9"}, ""},
        {"one range, linked", 0x08, {30, 1, 0xC0, 29, 1, 29, 1, 0, 0, 0, 0}, {"29.1"}, ""},
        {"an entity twice", 0x08, {30, 1, 0x00, 29, 1, 29, 1, 0, 0, 0, 0}, {"29.1"}, ""},
        {"a range back", 0x08, {30, 1, 0x80, 29, 3, 29, 1, 0, 0, 0, 0}, {}, "ends before it begins"},
        {"a range over kinds", 0x08, {30, 1, 0x80, 29, 1, 30, 1, 0, 0, 0, 0}, {}, "ends before it begins"},
        {"cut short", 0x08, {30, 1, 0x00, 29, 1, 29, 2, 0, 0, 0}, {}, "ends before its last field"},
        {"of the BMC, and of another controller",
         0x09,
         {30, 0x60, 0x20, 0, 0x00, 0x20, 0, 29, 0x60, 0x24, 0, 29, 0x61, 0,
          0,  29,   2,    0, 0,    0,    0, 0,  0,    0,    0, 0,  0},
         {"29.96", "29.2"},
         ""},
        {"within another controller",
         0x09,
         {30, 0x60, 0x24, 0, 0x00, 0x20, 0, 29, 0x60, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0},
         {},
         "belongs to another controller"},
    };
    for (const auto& item : cases) {
        SCOPED_TRACE(item.name);
        mapping = {};
        remarks.clear();
        add(SdrBuilder::record(item.type, item.bytes));
        std::vector<std::string> parts;
        for (const EntityAssociationRow& row : mapping.associations) {
            EXPECT_EQ(row.containerId, *item.bytes.begin());
            EXPECT_EQ(row.containerInstance, *(item.bytes.begin() + 1));
            parts.push_back(std::to_string(row.entityId) + '.' + std::to_string(row.entityInstance));
        }
        EXPECT_EQ(parts, item.parts);
        EXPECT_EQ(reasons().empty(), *item.remark == '\0') << reasons();
        EXPECT_THAT(reasons(), HasSubstr(item.remark));
    }
}

// "entity: tachometer, presence sensor with its states, speed".
std::vector<std::string> devicesOf(const SdrMapping& mapping) {
    std::vector<std::string> texts;
    for (const EntityDeviceRow& row : smash::findEntityDevices(mapping)) {
        char text[64];
        std::snprintf(text, sizeof text, "%d.%d: %d, %d %x %x%s", row.entityId, row.entityInstance,
                      row.tachometer, row.presenceSensor, row.presentStates, row.absentStates,
                      row.hasVariableSpeed != 0 ? ", variable" : "");
        texts.emplace_back(text);
    }
    return texts;
}

TEST_F(Mapping, findsFansAndSuppliesByTheirSensors) {
    constexpr std::uint8_t fan = 0x04, entityPresence = 0x25, presence = 0x08, redundancy = 0x0B, rpm = 18;
    const auto discrete = [&](std::uint8_t number, std::uint8_t type, std::uint8_t readingType,
                              std::uint8_t entity, std::uint16_t states) {
        add(SdrBuilder::compact(type, readingType, "S").set(8, {number, entity, 1}).states(states));
    };
    const auto numeric = [&](std::uint8_t number, std::uint8_t entity, std::uint8_t instance,
                             std::uint8_t unit) {
        add(SdrBuilder::full(fan, threshold, "N").set(8, {number, entity, instance}).set(22, {unit}));
    };
    discrete(1, fan, redundancy, 30, 0x3F); // of several
    discrete(2, powerSupply, redundancy, 19, 0x3F);
    discrete(3, temperature, severity, 10, 1); // of a supply, but not what makes one
    EXPECT_THAT(devicesOf(mapping), IsEmpty());

    discrete(4, powerSupply, sensorSpecific, 10, 0x0E); // failures only
    EXPECT_THAT(devicesOf(mapping), ElementsAre("10.1: 255, 255 0 0"));
    discrete(5, fan, presence, 10, 0x03);
    EXPECT_THAT(devicesOf(mapping), ElementsAre("10.1: 255, 5 2 1"));
    discrete(6, entityPresence, sensorSpecific, 10, 0x03);
    EXPECT_THAT(devicesOf(mapping), ElementsAre("10.1: 255, 6 1 2"));

    mapping = {};
    discrete(1, powerSupply, sensorSpecific, 10, 0x03);
    discrete(2, fan, presence, 29, 0x02); // tells that the fan is there, not how it does
    EXPECT_THAT(devicesOf(mapping), ElementsAre("10.1: 255, 1 1 0", "29.1: 255, 2 2 0"));
    discrete(3, fan, severity, 29, 0x03);
    EXPECT_THAT(devicesOf(mapping)[1], "29.1: 3, 2 2 0");
    numeric(4, 29, 1, 0); // a duty cycle
    EXPECT_THAT(devicesOf(mapping)[0], "29.1: 4, 2 2 0, variable");
    numeric(5, 29, 1, rpm);
    EXPECT_THAT(devicesOf(mapping)[0], "29.1: 5, 2 2 0, variable");

    mapping = {};
    numeric(1, 29, 1, rpm);
    numeric(2, 29, 2, rpm);
    numeric(3, 30, 1, 0);
    add(SdrBuilder::record(0x08, {30, 1, 0, 29, 2, 0, 0, 0, 0, 0, 0}));
    EXPECT_THAT(devicesOf(mapping),
                ElementsAre("29.1: 1, 255 0 0", "29.2: 2, 255 0 0, variable", "30.1: 3, 255 0 0, variable"));
}

} // namespace
