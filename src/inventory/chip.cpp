// CIM_Chip: processors.
#include "inventory/physical_element.h"

constexpr const char* const g_ChipKeyList[2] = {ph::inventory::elementKeys[0], ph::inventory::elementKeys[1]};

namespace ph::chip {
namespace {

using inventory::Record;

constexpr inventory::PhysicalClass<Record> physicalClass{
    "CIM_Chip",
    [](const PackageRow& row, SMASH_DB_HANDLE, Record& element) { return PH_Fill_Chip(&row, &element); }};

constexpr auto definition = inventory::define<physicalClass>(
    "CIM_PhysicalComponent", "table package (FRU inventory, SDR types 10h, 11h and 12h)", g_ChipKeyList,
    inventory::elementProperties);

} // namespace
} // namespace ph::chip

int PH_Fill_Chip(const PackageRow* row, PhysicalElementRecord* record) {
    ph::inventory::fillElement(*row, *record);
    return 0;
}

PH_EXPORT_CLASS_FAMILY(Chip, PhysicalElementRecord, ph::chip::definition)
