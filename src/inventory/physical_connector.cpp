// CIM_PhysicalConnector: ports.
#include "inventory/connector.h"

constexpr const char* const g_PhysicalConnectorKeyList[2] = {ph::inventory::elementKeys[0],
                                                             ph::inventory::elementKeys[1]};

namespace {

constexpr const char* className = "CIM_PhysicalConnector";

constexpr ph::ClassDefinition<ConnectorRecord> definition{
    .name = className,
    .superclass = "CIM_PhysicalElement",
    .source = "table connector (SMBIOS type 8)",
    .keys = g_PhysicalConnectorKeyList,
    .properties = ph::inventory::connectorProperties,
    .enumerate = [](ph::RecordArray<ConnectorRecord>& connectors, ph::Detail) {
        return ph::inventory::enumerateConnectors(connectors, false, className);
    }};

} // namespace

PH_EXPORT_CLASS_FAMILY(PhysicalConnector, ConnectorRecord, definition)
