#include "ipmi-view/sensor_rows.h"

#include "smash-db/conversion_table.h"
#include "smash-db/database.h"
#include "smash-db/inventory_tables.h"
#include "smash-db/rows.h"

#include <algorithm>
#include <cstdio>
#include <map>
#include <set>

namespace view {
namespace {

using Conversions = std::map<std::string, Conversion>; // by record

constexpr std::int8_t signedNibble(int value) {
    return static_cast<std::int8_t>((value & 0x0F) - ((value & 0x08) << 1));
}

template <class Row>
std::span<const Row> rowsOf(const smash::Rows<Row>& rows) {
    return {rows.records.get(), rows.count};
}

ipmi::ReadingFactors factorsOf(int format, int linearization, int m, int b, int exponents) {
    return {.format = static_cast<ipmi::AnalogFormat>(format & 0x03),
            .linearization = static_cast<std::uint8_t>(linearization),
            .m = static_cast<std::int16_t>(m),
            .b = static_cast<std::int16_t>(b),
            .bExponent = signedNibble(exponents),
            .resultExponent = signedNibble(exponents >> 4)};
}

Conversions readConversions(const SQLite::Database& database) {
    Conversions conversions;
    const auto rows =
        smash::read(smash::select(database, smash::sensorConversionTable), smash::sensorConversionTable);
    for (const auto& row : rowsOf(rows))
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
void add(std::vector<SensorRow>& sensors, const SQLite::Database& database, const smash::TableOf<Row>& table,
         const Conversions& conversions) {
    const auto rows = smash::read(smash::select(database, table, "ORDER BY rowid"), table);
    for (const Row& row : rowsOf(rows))
        sensors.push_back(sensorOf(row, conversions));
}

} // namespace

std::vector<SensorRow> readSensorRows() {
    const auto database = smash::open(smash::smashSchema, smash::OpenMode::Existing);
    const Conversions conversions = readConversions(database);
    std::vector<SensorRow> all, sensors;
    add(all, database, smash::fullSdrTable, conversions);
    add(all, database, smash::compactSdrTable, conversions);
    std::set<std::pair<std::uint16_t, std::uint8_t>> known; // record and number
    for (SensorRow& sensor : all)
        if (known.insert({sensor.recordId, sensor.number}).second)
            sensors.push_back(std::move(sensor));
    std::ranges::stable_sort(sensors, {}, &SensorRow::recordId);
    return sensors;
}

} // namespace view
