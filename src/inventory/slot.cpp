// CIM_Slot: expansion slots, sockets of processors and memory modules.
#include "inventory/connector.h"

constexpr const char* const g_SlotKeyList[2] = {ph::inventory::elementKeys[0], ph::inventory::elementKeys[1]};

namespace ph::slot {
namespace {

constexpr const char* className = "CIM_Slot";

constexpr Property slotProperties[] = {
    PH_PROPERTY(ConnectorRecord, SupportsHotPlug),
    PH_PROPERTY_IF(ConnectorRecord, MaxDataWidth, inventory::isNumberKnown<&ConnectorRecord::MaxDataWidth>),
    PH_PROPERTY_IF(ConnectorRecord, MaxLinkWidth, inventory::isNumberKnown<&ConnectorRecord::MaxLinkWidth>),
    PH_PROPERTY_IF(ConnectorRecord, Number, inventory::isNumberKnown<&ConnectorRecord::Number>),
};
constexpr auto properties = joined(inventory::connectorProperties, slotProperties);

constexpr ClassDefinition<ConnectorRecord> definition{
    .name = className,
    .superclass = "CIM_PhysicalConnector",
    .source = "table connector (SMBIOS types 4, 9 and 17)",
    .keys = g_SlotKeyList,
    .properties = properties,
    .enumerate = [](RecordArray<ConnectorRecord>& connectors, Detail) {
        return inventory::enumerateConnectors(connectors, true, className);
    }};

} // namespace
} // namespace ph::slot

PH_EXPORT_CLASS_FAMILY(Slot, ConnectorRecord, ph::slot::definition)
