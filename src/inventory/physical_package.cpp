// CIM_PhysicalPackage: power supplies, fans, management modules and others.
#include "inventory/physical_element.h"
#include "Utility/values/dmtf_values.h"

constexpr const char* const g_PhysicalPackageKeyList[2] = {ph::inventory::elementKeys[0],
                                                           ph::inventory::elementKeys[1]};

namespace ph::physical_package {
namespace {

using inventory::Record;

bool isRemovalKnown(const Record& element) {
    return element.RemovalConditions != RemovalConditions::Unknown;
}

constexpr Property removalProperties[] = {
    PH_PROPERTY_IF(Record, RemovalConditions, isRemovalKnown),
};
constexpr auto properties = joined(inventory::packageElementProperties, removalProperties);

int fill(const PackageRow& row, SMASH_DB_HANDLE database, Record& element) {
    PowerSupplyInfoRow* supply = nullptr;
    if (db_get_power_supply_info(database, row.entityId, row.entityInstance, &supply) != 0)
        return -1;
    const HeapPtr<PowerSupplyInfoRow> owner(supply);
    return PH_Fill_PhysicalPackage(&row, supply, &element);
}

constexpr inventory::PhysicalClass<Record> physicalClass{"CIM_PhysicalPackage", fill};

constexpr auto definition = inventory::define<physicalClass>(
    "CIM_PhysicalElement", "tables package and power_supply_info (FRU inventory, SDR types 10h, 11h and 12h)",
    g_PhysicalPackageKeyList, properties);

} // namespace
} // namespace ph::physical_package

int PH_Fill_PhysicalPackage(const PackageRow* row, const PowerSupplyInfoRow* supply,
                            PhysicalElementRecord* record) {
    ph::inventory::fillElement(*row, *record);
    ph::inventory::fillPackageType(*row, *record);
    if (supply != nullptr)
        record->RemovalConditions = (supply->flags & SMASH_SUPPLY_HOT_SWAP) != 0
                                        ? ph::RemovalConditions::RemovableWhenOnOrOff
                                        : ph::RemovalConditions::RemovableWhenOff;
    return 0;
}

PH_EXPORT_CLASS_FAMILY(PhysicalPackage, PhysicalElementRecord, ph::physical_package::definition)
