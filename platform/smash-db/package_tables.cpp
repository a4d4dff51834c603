#include "smash-db/package_tables.h"

namespace smash {
namespace {

constexpr std::array packageColumns = {
    SMASH_COLUMN(PackageRow, tag),
    SMASH_COLUMN(PackageRow, entityId),
    SMASH_COLUMN(PackageRow, entityInstance),
    SMASH_COLUMN(PackageRow, fruDeviceId),
    SMASH_COLUMN(PackageRow, hasFruData),
    SMASH_COLUMN(PackageRow, name),
    SMASH_COLUMN(PackageRow, manufacturer),
    SMASH_COLUMN(PackageRow, model),
    SMASH_COLUMN(PackageRow, serialNumber),
    SMASH_COLUMN(PackageRow, partNumber),
    SMASH_COLUMN(PackageRow, version),
    SMASH_COLUMN(PackageRow, assetTag),
    SMASH_COLUMN(PackageRow, manufactured),
    SMASH_COLUMN(PackageRow, chassisType),
};

constexpr std::array powerSupplyInfoColumns = {
    SMASH_COLUMN(PowerSupplyInfoRow, entityId),
    SMASH_COLUMN(PowerSupplyInfoRow, entityInstance),
    SMASH_COLUMN(PowerSupplyInfoRow, capacity),
    SMASH_COLUMN(PowerSupplyInfoRow, peakVoltAmperes),
    SMASH_COLUMN(PowerSupplyInfoRow, inrushCurrent),
    SMASH_COLUMN(PowerSupplyInfoRow, inrushInterval),
    SMASH_COLUMN(PowerSupplyInfoRow, lowVoltage1),
    SMASH_COLUMN(PowerSupplyInfoRow, highVoltage1),
    SMASH_COLUMN(PowerSupplyInfoRow, lowVoltage2),
    SMASH_COLUMN(PowerSupplyInfoRow, highVoltage2),
    SMASH_COLUMN(PowerSupplyInfoRow, lowFrequency),
    SMASH_COLUMN(PowerSupplyInfoRow, highFrequency),
    SMASH_COLUMN(PowerSupplyInfoRow, dropoutTolerance),
    SMASH_COLUMN(PowerSupplyInfoRow, flags),
    SMASH_COLUMN(PowerSupplyInfoRow, peakCapacity),
    SMASH_COLUMN(PowerSupplyInfoRow, holdUpTime),
    SMASH_COLUMN(PowerSupplyInfoRow, combinedVoltages),
    SMASH_COLUMN(PowerSupplyInfoRow, combinedCapacity),
    SMASH_COLUMN(PowerSupplyInfoRow, tachometerThreshold),
};

} // namespace

constexpr TableOf<PackageRow> packageTable{"package", packageColumns, 1};
constexpr TableOf<PowerSupplyInfoRow> powerSupplyInfoTable{"power_supply_info", powerSupplyInfoColumns, 2};

} // namespace smash
