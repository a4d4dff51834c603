// CIM_PhysicalConnector: ports.
#include "inventory/connector.h"

constexpr const char* const g_PhysicalConnectorKeyList[2] = {ph::inventory::elementKeys[0],
                                                             ph::inventory::elementKeys[1]};

namespace ph::physical_connector {
namespace {

constexpr const char* className = "CIM_PhysicalConnector";

constexpr ClassDefinition<ConnectorRecord> definition{
    .name = className,
    .superclass = "CIM_PhysicalElement",
    .source = "table connector (SMBIOS type 8)",
    .keys = g_PhysicalConnectorKeyList,
    .properties = inventory::connectorProperties,
    .enumerate = [](RecordArray<ConnectorRecord>& connectors, Detail) {
        return inventory::enumerateConnectors(connectors, false, className);
    }};

} // namespace
} // namespace ph::physical_connector

PH_EXPORT_CLASS_FAMILY(PhysicalConnector, ConnectorRecord, ph::physical_connector::definition)
