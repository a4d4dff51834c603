// CIM_PhysicalAssetCapabilities: whether a physical element tells what it is.
#include "inventory/physical_element.h"
#include "Utility/values/record_fields.h"

#include <cstdio>

constexpr const char* const g_PhysicalAssetCapabilitiesKeyList[1] = {"InstanceID"};

namespace {

using Record = PhysicalAssetCapabilitiesRecord;
using ph::Property;

constexpr Property properties[] = {
    PH_KEY(Record, InstanceID),
    PH_PROPERTY(Record, ElementName),
    PH_PROPERTY(Record, FRUInfoSupported),
};

int enumerate(ph::RecordArray<Record>& all, ph::Detail detail) {
    ph::Rows<PackageRow> rows;
    if (!rows.read(db_get_all_packages))
        return -1;
    for (const PackageRow& row : rows.all()) {
        if (!ph::inventory::isServed(row))
            continue;
        Record* capabilities = all.append();
        if (capabilities == nullptr)
            return -1;
        std::snprintf(capabilities->InstanceID, sizeof capabilities->InstanceID,
                      "PhysicalAssetCapabilities:%s", row.tag);
        if (detail == ph::Detail::All && PH_Fill_PhysicalAssetCapabilities(&row, capabilities) != 0)
            return -1;
    }
    return 0;
}

constexpr ph::ClassDefinition<Record> definition{.name = "CIM_PhysicalAssetCapabilities",
                                                 .superclass = "CIM_Capabilities",
                                                 .source = "table package",
                                                 .keys = g_PhysicalAssetCapabilitiesKeyList,
                                                 .properties = properties,
                                                 .enumerate = enumerate};

} // namespace

int PH_Fill_PhysicalAssetCapabilities(const PackageRow* row, PhysicalAssetCapabilitiesRecord* record) {
    ph::copyText(record->ElementName, ph::inventory::nameOf(*row).text);
    record->FRUInfoSupported = row->hasFruData != 0;
    return 0;
}

PH_EXPORT_CLASS_FAMILY(PhysicalAssetCapabilities, Record, definition)
