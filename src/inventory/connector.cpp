#include "inventory/connector.h"

#include "Utility/values/record_fields.h"

namespace ph::inventory {

int enumerateConnectors(RecordArray<ConnectorRecord>& connectors, bool areSlots, const char* className) {
    Rows<ConnectorRow> rows;
    if (!rows.read(db_get_all_connectors))
        return -1;
    for (const ConnectorRow& row : rows.all()) {
        if ((row.isSlot != 0) != areSlots)
            continue;
        ConnectorRecord* connector = connectors.append();
        if (connector == nullptr || PH_Fill_PhysicalConnector(&row, connector) != 0)
            return -1;
        copyText(connector->Tag, row.tag);
        copyText(connector->CreationClassName, className);
    }
    return 0;
}

} // namespace ph::inventory

int PH_Fill_PhysicalConnector(const ConnectorRow* row, ConnectorRecord* record) {
    ph::copyText(record->ElementName, row->name);
    ph::copyText(record->Description, row->description);
    record->ConnectorLayout = row->layout;
    record->ConnectorGender = row->gender;
    ph::copyText(record->ConnectorDescription, row->connector);
    record->SupportsHotPlug = row->isHotPluggable != 0;
    record->MaxDataWidth = row->dataWidth;
    record->MaxLinkWidth = row->linkWidth;
    record->Number = row->number;
    return 0;
}
