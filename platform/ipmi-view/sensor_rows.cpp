#include "ipmi-view/sensor_rows.h"

#include "smash-db/connection.h"
#include "smash-db/inventory_tables.h"
#include "smash-db/rows.h"

#include <algorithm>
#include <cstdio>
#include <map>
#include <set>

namespace view {
namespace {

using Conversions = std::map<std::string, Conversion>; // by record

template <class Row>
std::span<const Row> rowsOf(const smash::Rows<Row>& rows) {
    return {rows.records.get(), rows.count};
}

ipmi::ReadingFactors factorsOf(int format, int linearization, int m, int b, unsigned exponents) {
    ipmi::ReadingFactors factors{.format = static_cast<ipmi::AnalogFormat>(format & 0x03),
                                 .linearization = static_cast<std::uint8_t>(linearization),
                                 .m = static_cast<std::int16_t>(m),
                                 .b = static_cast<std::int16_t>(b)};
    factors.setExponents(exponents);
    return factors;
}

Conversions conversionsOf(std::span<const smash::SensorConversionRow> rows) {
    Conversions conversions;
    for (const auto& row : rows)
        conversions[row.source] = {
            .factors = factorsOf(row.units >> 6, row.linearization, row.m, row.b, row.exponents),
            .units = row.units,
            .baseUnit = row.baseUnit,
            .modifierUnit = row.modifierUnit};
    return conversions;
}

SensorRow sensorOf(const CompactSdr& row, const Conversions& conversions) {
    SensorRow sensor{.name = row.name,
                     .number = row.sensorNumber,
                     .type = row.ipmiSensorType,
                     .readingType = row.eventReadingType,
                     .entityId = row.entityId,
                     .entityInstance = row.entityInstance};
    unsigned id = 0;
    if (std::sscanf(row.source, "SDR record 0x%x", &id) == 1)
        sensor.recordId = static_cast<std::uint16_t>(id);
    if (const auto known = conversions.find(row.source);
        known != conversions.end() && known->second.hasNumbers())
        sensor.conversion = known->second;
    return sensor;
}

// A database that was filled before it had conversions says less.
Conversion conversionOf(const FullSdr& row) {
    return {.factors = factorsOf(row.analogFormat, 0, row.m, row.b, row.exponents),
            .units = static_cast<std::uint8_t>(row.analogFormat << 6 | row.rateUnits << 3),
            .baseUnit = static_cast<std::uint8_t>(row.baseUnits)};
}

SensorRow sensorOf(const FullSdr& row, const Conversions& conversions) {
    SensorRow sensor = sensorOf(row.common, conversions);
    if (!conversions.contains(row.common.source) && conversionOf(row).hasNumbers())
        sensor.conversion = conversionOf(row);
    sensor.thresholds = {.mask = static_cast<std::uint8_t>(row.common.supportedStates),
                         .raw = {row.lowerNonCritical, row.lowerCritical, row.lowerNonRecoverable,
                                 row.upperNonCritical, row.upperCritical, row.upperNonRecoverable}};
    return sensor;
}

template <class Row>
smash::Rows<Row> readAll(const SQLite::Database& database, const smash::TableOf<Row>& table) {
    return smash::read(smash::select(database, table, "ORDER BY rowid"), table);
}

} // namespace

std::vector<SensorRow> sensorRowsOf(std::span<const FullSdr> numericSensors,
                                    std::span<const CompactSdr> sensors,
                                    std::span<const smash::SensorConversionRow> conversionRows) {
    const Conversions conversions = conversionsOf(conversionRows);
    std::vector<SensorRow> rows;
    std::set<std::pair<std::uint16_t, std::uint8_t>> known; // record and number
    const auto add = [&](SensorRow row) {
        if (known.insert({row.recordId, row.number}).second)
            rows.push_back(std::move(row));
    };
    for (const FullSdr& row : numericSensors)
        add(sensorOf(row, conversions));
    for (const CompactSdr& row : sensors)
        add(sensorOf(row, conversions));
    std::ranges::stable_sort(rows, {}, &SensorRow::recordId);
    return rows;
}

std::vector<SensorRow> readSensorRows() {
    const auto database = smash::connect(smash::smashSchema);
    const auto numericSensors = readAll(*database, smash::fullSdrTable);
    const auto sensors = readAll(*database, smash::compactSdrTable);
    const auto conversions = readAll(*database, smash::sensorConversionTable);
    return sensorRowsOf(rowsOf(numericSensors), rowsOf(sensors), rowsOf(conversions));
}

} // namespace view
