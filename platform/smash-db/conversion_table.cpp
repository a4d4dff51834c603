#include "smash-db/conversion_table.h"

namespace smash {
namespace {

constexpr std::array conversionColumns = {
    SMASH_COLUMN(SensorConversionRow, source),
    SMASH_COLUMN(SensorConversionRow, units),
    SMASH_COLUMN(SensorConversionRow, baseUnit),
    SMASH_COLUMN(SensorConversionRow, modifierUnit),
    SMASH_COLUMN(SensorConversionRow, linearization),
    SMASH_COLUMN(SensorConversionRow, m),
    SMASH_COLUMN(SensorConversionRow, b),
    SMASH_COLUMN(SensorConversionRow, exponents),
};

} // namespace

constexpr TableOf<SensorConversionRow> sensorConversionTable{"sensor_conversion", conversionColumns, 1};

} // namespace smash
