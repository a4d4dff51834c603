// CIM_PhysicalAssetCapabilities: whether a physical element tells what it is.
#include "inventory/physical_element.h"
#include "Utility/values/record_fields.h"

#include <cstdio>

constexpr const char* const g_PhysicalAssetCapabilitiesKeyList[1] = {"InstanceID"};

namespace ph::physical_asset_capabilities {
namespace {

using Record = PhysicalAssetCapabilitiesRecord;

constexpr Property properties[] = {
    PH_KEY(Record, InstanceID),
    PH_PROPERTY(Record, ElementName),
    PH_PROPERTY(Record, FRUInfoSupported),
};

Record* append(RecordArray<Record>& all, const char* tag) {
    Record* capabilities = all.append();
    if (capabilities != nullptr)
        std::snprintf(capabilities->InstanceID, sizeof capabilities->InstanceID,
                      "PhysicalAssetCapabilities:%s", tag);
    return capabilities;
}

int enumerate(RecordArray<Record>& all, Detail detail) {
    Database database;
    Rows<PackageRow> rows;
    Rows<ConnectorRow> connectors;
    if (!database.open() || !rows.read(database.get(), db_get_all_packages) ||
        !connectors.read(database.get(), db_get_all_connectors))
        return -1;
    for (const PackageRow& row : rows.all()) {
        if (!inventory::isServed(row))
            continue;
        Record* capabilities = append(all, row.tag);
        if (capabilities == nullptr)
            return -1;
        if (detail == Detail::All && PH_Fill_PhysicalAssetCapabilities(&row, capabilities) != 0)
            return -1;
    }
    for (const ConnectorRow& row : connectors.all()) { // none has a FRU device
        Record* capabilities = append(all, row.tag);
        if (capabilities == nullptr)
            return -1;
        copyText(capabilities->ElementName, row.name);
    }
    return 0;
}

constexpr ClassDefinition<Record> definition{.name = "CIM_PhysicalAssetCapabilities",
                                             .superclass = "CIM_Capabilities",
                                             .source = "tables package and connector",
                                             .keys = g_PhysicalAssetCapabilitiesKeyList,
                                             .properties = properties,
                                             .enumerate = enumerate};

} // namespace
} // namespace ph::physical_asset_capabilities

int PH_Fill_PhysicalAssetCapabilities(const PackageRow* row, PhysicalAssetCapabilitiesRecord* record) {
    ph::copyText(record->ElementName, ph::inventory::nameOf(*row).text);
    record->FRUInfoSupported = row->hasFruData != 0;
    return 0;
}

PH_EXPORT_CLASS_FAMILY(PhysicalAssetCapabilities, PhysicalAssetCapabilitiesRecord,
                       ph::physical_asset_capabilities::definition)
