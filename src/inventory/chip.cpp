// CIM_Chip: processors.
#include "inventory/physical_element.h"

constexpr const char* const g_ChipKeyList[2] = {ph::inventory::elementKeys[0], ph::inventory::elementKeys[1]};

namespace {

using ph::inventory::Record;

constexpr ph::inventory::PhysicalClass physicalClass{
    "CIM_Chip",
    [](const PackageRow& row, SMASH_DB_HANDLE, Record& element) { return PH_Fill_Chip(&row, &element); }};

constexpr ph::ClassDefinition<Record> definition{
    .name = physicalClass.name,
    .superclass = "CIM_PhysicalComponent",
    .source = "table package (FRU inventory, SDR types 10h, 11h and 12h)",
    .keys = g_ChipKeyList,
    .properties = ph::inventory::elementProperties,
    .enumerate = ph::inventory::enumerate<physicalClass>,
    .get = ph::inventory::get<physicalClass>};

} // namespace

int PH_Fill_Chip(const PackageRow* row, PhysicalElementRecord* record) {
    ph::inventory::fillElement(*row, *record);
    return 0;
}

PH_EXPORT_CLASS_FAMILY(Chip, Record, definition)
