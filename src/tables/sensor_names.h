// Names of what a sensor measures and where, for the texts of its instance.
#pragma once

#include <cstdint>
#include <iterator>

namespace ph {

struct SensorTypeName {
    std::uint32_t type;
    char name[136];
};
static_assert(sizeof(SensorTypeName) == 140);

// Row i is IPMI sensor type i. Types from 2Dh on have no name.
extern const SensorTypeName sensor_type_names[45];

struct EntityMapping {
    const char* entityId;      // in decimal
    const char* logicalClass;  // CIM class of its function, "TBD" where none is assigned
    const char* physicalClass; // CIM class of its body, likewise
    const char* name;
};

// Row i is IPMI entity ID i. IDs from 54 on have no name.
extern const EntityMapping entity_id_mapping[54];

// Returns the row of an entity ID; one without a name is "Other", of no class.
inline const EntityMapping& mappingOf(unsigned entityId) {
    static constexpr EntityMapping other{nullptr, "TBD", "TBD", "Other"};
    return entityId < std::size(entity_id_mapping) ? entity_id_mapping[entityId] : other;
}

} // namespace ph
