// CIM_Card: system board, add-in cards and other boards.
#include "inventory/physical_element.h"

constexpr const char* const g_CardKeyList[2] = {ph::inventory::elementKeys[0], ph::inventory::elementKeys[1]};

namespace ph::card {
namespace {

using inventory::Record;

constexpr Property cardProperties[] = {
    PH_PROPERTY(Record, HostingBoard),
};
constexpr auto properties = joined(inventory::packageElementProperties, cardProperties);

constexpr inventory::PhysicalClass<Record> physicalClass{
    "CIM_Card",
    [](const PackageRow& row, SMASH_DB_HANDLE, Record& element) { return PH_Fill_Card(&row, &element); }};

constexpr auto definition = inventory::define<physicalClass>(
    "CIM_PhysicalPackage", "table package (FRU inventory, SDR types 10h, 11h and 12h)", g_CardKeyList,
    properties);

} // namespace
} // namespace ph::card

int PH_Fill_Card(const PackageRow* row, PhysicalElementRecord* record) {
    constexpr std::uint8_t systemBoard = 7; // IPMI entity ID
    ph::inventory::fillElement(*row, *record);
    ph::inventory::fillPackageType(*row, *record);
    record->HostingBoard = row->entityId == systemBoard;
    return 0;
}

PH_EXPORT_CLASS_FAMILY(Card, PhysicalElementRecord, ph::card::definition)
