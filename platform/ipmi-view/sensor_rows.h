// The sensors of the BMC, of both kinds, as the SMASH database has them.
#pragma once

#include "ipmi-view/conversion.h"
#include "ipmi-view/sensor_state.h"
#include "smash-db/conversion_table.h"

#include <array>
#include <optional>
#include <platform/smash_db_inventory.h>
#include <span>
#include <string>
#include <vector>

namespace view {

// Raw values by threshold; those without a bit in the mask do not exist or cannot be read.
struct Thresholds {
    std::uint8_t mask = 0;
    std::array<std::uint8_t, thresholdCount> raw{};

    bool has(unsigned threshold) const { return (mask >> threshold & 1) != 0; }
};

struct SensorRow {
    std::string name;
    std::uint16_t recordId = 0; // of its sensor data record
    std::uint8_t number = 0;
    std::uint8_t type = 0;        // IPMI 2.0 table 42-3
    std::uint8_t readingType = 0; // IPMI 2.0 table 42-1
    std::uint8_t entityId = 0;
    std::uint8_t entityInstance = 0;
    std::optional<Conversion> conversion = {}; // of a sensor that reads as a number
    Thresholds thresholds = {};                // as the record has them

    bool isThreshold() const { return readingType == thresholdReadingType; }
};

// Makes the sensors of rows, in the order of their records. A sensor-specific one, of which there is a row for each
// state, is one sensor here.
std::vector<SensorRow> sensorRowsOf(std::span<const FullSdr> numericSensors,
                                    std::span<const CompactSdr> sensors,
                                    std::span<const smash::SensorConversionRow> conversions);
// Makes those of the database. Throws std::runtime_error.
std::vector<SensorRow> readSensorRows();

} // namespace view
