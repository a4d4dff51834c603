// What lookups and other libraries rely on in the tables.
#include "provider_helper/tables.h"
#include "tables/sensor_names.h"

#include <algorithm>
#include <bit>
#include <gmock/gmock.h>
#include <set>
#include <string>
#include <strings.h>

namespace {

using ::testing::EndsWith;
using ::testing::HasSubstr;
using ::testing::StartsWith;

bool hasHealth(const std::string& state) {
    return std::ranges::any_of(logdev_health_state_mapping, [&](const PHHealthState& row) {
        return strcasecmp(row.name, state.c_str()) == 0;
    });
}

// Types whose states say something of the element they watch: power supply, power unit, entity presence.
bool watchesElement(std::uint32_t sensorType) {
    return sensorType == 0x08 || sensorType == 0x09 || sensorType == 0x25;
}

constexpr const char* withoutHealth = "Power Supply input out-of-range - but present Deassert";

TEST(Tables, GenericStatesAreSortedSingleBits) {
    std::set<std::uint32_t> types;
    for (const PHGenericState& state : ipmi_cim_Possible_States_Mapping) {
        EXPECT_TRUE(std::has_single_bit(state.stateMask)) << state.name;
        EXPECT_LT(state.dmtfState, 3U) << state.name;
        types.insert(state.eventReadingType);
    }
    EXPECT_EQ(types.size(), 11U);
    EXPECT_EQ(*types.begin(), 0x02U);
    EXPECT_EQ(*types.rbegin(), 0x0CU);
    EXPECT_TRUE(std::ranges::is_sorted(
        ipmi_cim_Possible_States_Mapping, std::less_equal(),
        [](const auto& row) { return std::pair(row.eventReadingType, row.stateMask); }))
        << "ascending, no state twice";
}

TEST(Tables, SpecificStatesAreSorted) {
    EXPECT_TRUE(std::ranges::is_sorted(sensor_specific_possible_state_mapping, std::less_equal(),
                                       [](const auto& row) { return std::pair(row.sensorType, row.offset); }))
        << "ascending, no state twice";
    for (const PHSensorSpecificState& state : sensor_specific_possible_state_mapping)
        EXPECT_LT(state.offset, 15U) << state.name;
}

TEST(Tables, NamesStandAtTheirCodes) {
    std::uint32_t type = 0;
    for (const ph::SensorTypeName& row : ph::sensor_type_names)
        EXPECT_EQ(row.type, type++) << row.name;
    int entity = 0;
    for (const ph::EntityMapping& row : ph::entity_id_mapping)
        EXPECT_EQ(row.entityId, std::to_string(entity++)) << row.name;
}

TEST(Tables, HealthRowsAreUnique) {
    std::set<std::string> names;
    for (const PHHealthState& row : logdev_health_state_mapping)
        EXPECT_TRUE(names.insert(row.name).second) << row.name;
}

TEST(Tables, EveryStateOfAThresholdOrGenericSensorHasHealth) {
    for (const char* state : DMTF_PossibleStates)
        EXPECT_TRUE(hasHealth(state)) << state;
    for (const char* state : DMTF_IPMI_Analog_Possible_States)
        EXPECT_TRUE(hasHealth(state)) << state;
    for (const PHGenericState& state : ipmi_cim_Possible_States_Mapping)
        EXPECT_TRUE(hasHealth(state.name)) << state.name;
    EXPECT_TRUE(hasHealth("Normal"));
    EXPECT_FALSE(hasHealth("No Events"));
}

TEST(Tables, HealthOfSensorSpecificStates) {
    std::set<std::string> expected;
    for (const PHSensorSpecificState& state : sensor_specific_possible_state_mapping)
        for (const char* suffix : {" Assert", " Deassert"})
            if (watchesElement(state.sensorType))
                expected.insert(state.name + std::string(suffix));
    ASSERT_EQ(expected.erase(withoutHealth), 1U) << "its row is spelled with two blanks";
    expected.insert("Power Supply input out-of-range - but present  Deassert");

    std::set<std::string> rows;
    for (const PHHealthState& row : logdev_health_state_mapping)
        if (std::string_view(row.name).ends_with("ssert"))
            rows.insert(row.name);
    EXPECT_EQ(rows, expected);
    EXPECT_FALSE(hasHealth(withoutHealth));
}

TEST(Tables, HealthValuesAreDmtfValues) {
    const std::set<std::uint32_t> health = {0, 5, 10, 15, 20, 25, 30};
    const std::set<std::uint32_t> status = {0, 2, 3, 4, 5, 6, 7, 9, 12, 13, 15};
    for (const PHHealthState& row : logdev_health_state_mapping) {
        EXPECT_EQ(health.count(row.healthState), 1U) << row.name;
        EXPECT_EQ(status.count(row.operationalStatus), 1U) << row.name;
    }
}

// Spellings that a well-meant correction would change under those who compare texts.
TEST(Tables, OddSpellingsStay) {
    const auto specific = [](std::uint32_t type, std::uint32_t offset) -> std::string {
        const auto* row =
            std::ranges::find_if(sensor_specific_possible_state_mapping, [&](const auto& state) {
                return state.sensorType == type && state.offset == offset;
            });
        return row != std::end(sensor_specific_possible_state_mapping) ? row->name : "";
    };
    EXPECT_EQ(specific(0x06, 2), specific(0x06, 3));
    EXPECT_EQ(specific(0x22, 0), "S0/G0 'working");
    EXPECT_EQ(specific(0x22, 13), "");
    EXPECT_THAT(specific(0x24, 2), EndsWith(" specfication"));
    EXPECT_THAT(specific(0x2B, 3), EndsWith(" Entit"));
    EXPECT_STREQ(ph::sensor_type_names[0x19].name, "Chip Set");
    EXPECT_STREQ(EveSeverity[2].name, "warning");
    EXPECT_THAT(RecordFormat[0], HasSubstr("*boolen IPMI_AssertionEvent*"));
    EXPECT_THAT(RecordFormat[0], HasSubstr("*uint8 IPMIRecordType*"));
    EXPECT_THAT(RecordFormat[2], EndsWith("*uint8[13] IPMI_OEMDefinfedData*"));
}

// Fields stand between asterisks, "type name" each.
TEST(Tables, RecordFormatsDescribeWholeRecords) {
    constexpr int recordBytes = 16;
    for (const std::string text : RecordFormat) {
        EXPECT_THAT(text, StartsWith("*"));
        EXPECT_THAT(text, EndsWith("*"));
        int total = 0;
        for (std::size_t at = text.find("uint8"); at != std::string::npos; at = text.find("uint8", at + 1))
            total += text[at + 5] == '[' ? std::atoi(text.c_str() + at + 6) : 1;
        EXPECT_EQ(total, recordBytes) << text;
    }
}

} // namespace
