// CIM_Chassis: the system chassis and sub-chassis.
#include "inventory/physical_element.h"
#include "Utility/values/dmtf_values.h"
#include "Utility/values/record_fields.h"

#include <algorithm>
#include <iterator>

constexpr const char* const g_ChassisKeyList[2] = {ph::inventory::elementKeys[0],
                                                   ph::inventory::elementKeys[1]};

namespace ph::chassis {
namespace {

using inventory::Record;

constexpr std::uint16_t notKnown = 0, isSo = 1; // DMTF RackMountable and MultipleSystemSupport

// The CIM value of an SMBIOS system enclosure type (SMBIOS 3, 7.4.1). CIM does not have all types.
struct ChassisType {
    std::uint8_t smbios;
    std::uint16_t cim;
    const char* description; // for values that CIM calls other
    bool isRackMountable = false;
    bool holdsSystems = false; // several ones
};

constexpr ChassisType chassisTypes[] = {
    {0x01, ChassisPackageType::Other, ""},
    {0x17, ChassisPackageType::Other, "Rack Mount Chassis", true},
    {0x19, ChassisPackageType::Other, "Multi-system Chassis", false, true},
    {0x1C, ChassisPackageType::Other, "Blade"},
    {0x1D, ChassisPackageType::BladeEnclosure, "", false, true},
    {0x21, ChassisPackageType::Other, "IoT Gateway"},
    {0x22, ChassisPackageType::Other, "Embedded PC"},
    {0x23, ChassisPackageType::Other, "Mini PC"},
    {0x24, ChassisPackageType::Other, "Stick PC"},
};

// These numbers mean the same in SMBIOS and CIM.
constexpr bool isShared(std::uint8_t smbios) {
    return (smbios >= 0x03 && smbios <= 0x16) || smbios == 0x18 || smbios == 0x1A || smbios == 0x1B ||
           (smbios >= 0x1E && smbios <= 0x20);
}

ChassisType chassisType(std::uint8_t smbios) {
    smbios &= 0x7F; // bit 7: with a lock
    if (isShared(smbios))
        return {smbios, smbios, ""};
    const auto* const found = std::ranges::find(chassisTypes, smbios, &ChassisType::smbios);
    return found != std::end(chassisTypes) ? *found : ChassisType{smbios, ChassisPackageType::Unknown, ""};
}

bool isMultipleKnown(const Record& chassis) {
    return chassis.MultipleSystemSupport != notKnown;
}
bool isMountingKnown(const Record& chassis) {
    return chassis.RackMountable != notKnown;
}

constexpr Property chassisProperties[] = {
    PH_PROPERTY(Record, ChassisPackageType),
    PH_PROPERTY_IF(Record, ChassisTypeDescription, inventory::isGiven<&Record::ChassisTypeDescription>),
    PH_PROPERTY_IF(Record, MultipleSystemSupport, isMultipleKnown),
    PH_PROPERTY_IF(Record, RackMountable, isMountingKnown),
};
constexpr auto properties = joined(inventory::packageElementProperties, chassisProperties);

constexpr inventory::PhysicalClass<Record> physicalClass{
    "CIM_Chassis",
    [](const PackageRow& row, SMASH_DB_HANDLE, Record& element) { return PH_Fill_Chassis(&row, &element); }};

constexpr auto definition = inventory::define<physicalClass>(
    "CIM_PhysicalFrame", "table package (FRU inventory, SDR types 10h, 11h and 12h)", g_ChassisKeyList,
    properties);

} // namespace
} // namespace ph::chassis

int PH_Fill_Chassis(const PackageRow* row, PhysicalElementRecord* record) {
    ph::inventory::fillElement(*row, *record);
    ph::inventory::fillPackageType(*row, *record);
    const ph::chassis::ChassisType type = ph::chassis::chassisType(row->chassisType);
    record->ChassisPackageType = type.cim;
    ph::copyText(record->ChassisTypeDescription, type.description);
    record->MultipleSystemSupport = type.holdsSystems ? ph::chassis::isSo : ph::chassis::notKnown;
    record->RackMountable = type.isRackMountable ? ph::chassis::isSo : ph::chassis::notKnown;
    return 0;
}

PH_EXPORT_CLASS_FAMILY(Chassis, PhysicalElementRecord, ph::chassis::definition)
