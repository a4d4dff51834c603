// Other libraries read the tables and clients compare their texts, slips of spelling included: a digest of
// each tells when a row has changed.
#include "class_list.h"
#include "provider_helper/provider_helper.h"
#include "tables/sensor_names.h"

#include <gtest/gtest.h>
#include <iterator>
#include <sstream>
#include <string>
#include <vector>

namespace {

// FNV-1a, 64 bits.
std::uint64_t digestOf(const std::string& text) {
    std::uint64_t digest = 0xCBF29CE484222325;
    for (const unsigned char byte : text)
        digest = (digest ^ byte) * 0x100000001B3;
    return digest;
}

template <class... Fields>
std::string row(const Fields&... fields) {
    std::ostringstream text;
    ((text << fields << '|'), ...);
    return text.str();
}
std::string row(const PHGenericState& state) {
    return row(state.eventReadingType, state.stateMask, state.dmtfState, state.name);
}
std::string row(const PHSensorSpecificState& state) {
    return row(state.sensorType, state.offset, state.name);
}
std::string row(const PHHealthState& state) {
    return row(state.name, state.healthState, state.operationalStatus);
}
std::string row(const PHEventSeverity& severity) {
    return row(severity.severity, severity.name);
}
std::string row(const ph::SensorTypeName& type) {
    return row(type.type, type.name);
}
std::string row(const ph::EntityMapping& entity) {
    return row(entity.entityId, entity.logicalClass, entity.physicalClass, entity.name);
}
std::string row(const ph::ClassFamily* family) {
    std::string text = row(family->name);
    for (const char* key : family->keys)
        text += row(key);
    return text;
}

template <class Table>
std::string rowsOf(const Table& table) {
    std::string rows;
    for (const auto& each : table)
        rows += row(each) + '\n';
    return rows;
}

std::string packageTypes() {
    std::string rows;
    for (int entity = -1; entity <= 0x100; ++entity) {
        int type = -1;
        char name[64] = "left alone";
        EXPECT_EQ(PH_GetPackageTypeAndName(entity, &type, name), 0);
        if (type != 0 || name != std::string("left alone"))
            rows += row(entity, type, name) + '\n';
    }
    return rows;
}

TEST(Tables, stayAsTheyAre) {
    const std::tuple<const char*, std::string, std::uint64_t> tables[] = {
        {"sensor_type_names", rowsOf(ph::sensor_type_names), 0x039F4DBDC02A9A9E},
        {"entity_id_mapping", rowsOf(ph::entity_id_mapping), 0xAA7F5F274AFAF115},
        {"DMTF_PossibleStates", rowsOf(DMTF_PossibleStates), 0xB0DE1B0BFA92AAC5},
        {"DMTF_IPMI_Analog_Possible_States", rowsOf(DMTF_IPMI_Analog_Possible_States), 0x9A79C3CE953A1142},
        {"ipmi_cim_Possible_States_Mapping", rowsOf(ipmi_cim_Possible_States_Mapping), 0x2F2125094C894998},
        {"sensor_specific_possible_state_mapping", rowsOf(sensor_specific_possible_state_mapping),
         0x381F29962C87DB99},
        {"logdev_health_state_mapping", rowsOf(logdev_health_state_mapping), 0xC0A93EAB7109C1F2},
        {"EveSeverity", rowsOf(EveSeverity), 0x9C049036F29C940F},
        {"RecordFormat", rowsOf(RecordFormat), 0x31F46850EEA88361},
        {"PH_GetPackageTypeAndName", packageTypes(), 0x79E23CE646D24927},
        {"key lists", rowsOf(ph::allClasses()), 0xE899CFB5E0D2A88C},
    };
    for (const auto& [name, rows, digest] : tables)
        EXPECT_EQ(digestOf(rows), digest)
            << name << " has changed. Its rows are\n"
            << rows << "If they are meant so, its digest is 0x" << std::hex << digestOf(rows);
}

} // namespace
