// What each SDR becomes: rows of CIM_NumericSensor and CIM_Sensor with the conversion of their readings, entities with the FRU devices to read, and entity
// associations. The mapping is described in docs/sdr-mapping.md.
#pragma once

#include "smash-db/conversion_table.h"
#include "smash-db/sync/sdr_repository.h"

#include <platform/smash_db.h>

#include <cstdint>
#include <optional>
#include <set>
#include <stdexcept>
#include <string>
#include <vector>

namespace smash {

inline constexpr std::uint8_t bmcAddress = 0x20; // slave address (IPMB)

// A record that locates something of an entity: a FRU device, a management controller, or another device.
struct EntityLocator {
    std::uint8_t entityId = 0;
    std::uint8_t entityInstance = 0;
    std::string name;
    std::optional<std::uint8_t> fruDeviceId = {}; // that the BMC answers for
};

// Thrown for a record that is not served, with the reason.
struct Unusable : std::runtime_error {
    using std::runtime_error::runtime_error;
};

// Thrown for one that contradicts IPMI.
struct MalformedSdr : Unusable {
    using Unusable::Unusable;
};

class SdrMapping {
public:
    // Adds what a record stands for. A record, or a row of it, that cannot be served is left out and
    // remarked.
    void add(const SdrRecord& record, std::vector<SyncRemark>& remarks);

    std::vector<FullSdr> numericSensors;
    std::vector<CompactSdr> sensors;
    std::vector<SensorConversionRow> conversions; // of the full records that are served
    std::vector<EntityLocator> locators;
    std::vector<EntityAssociationRow> associations;

private:
    template <class Row>
    void publish(std::vector<Row>& rows, const Row& row, std::vector<SyncRemark>& remarks);

    std::set<std::string> deviceIds_;
};

} // namespace smash
