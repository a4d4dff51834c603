// CIM_Slot: expansion slots, sockets of processors and memory modules.
#include "inventory/connector.h"

constexpr const char* const g_SlotKeyList[2] = {ph::inventory::elementKeys[0], ph::inventory::elementKeys[1]};

namespace {

constexpr const char* className = "CIM_Slot";

constexpr ph::Property slotProperties[] = {
    PH_PROPERTY(ConnectorRecord, SupportsHotPlug),
    PH_PROPERTY_IF(ConnectorRecord, MaxDataWidth,
                   ph::inventory::isNumberKnown<&ConnectorRecord::MaxDataWidth>),
    PH_PROPERTY_IF(ConnectorRecord, MaxLinkWidth,
                   ph::inventory::isNumberKnown<&ConnectorRecord::MaxLinkWidth>),
    PH_PROPERTY_IF(ConnectorRecord, Number, ph::inventory::isNumberKnown<&ConnectorRecord::Number>),
};
constexpr auto properties = ph::joined(ph::inventory::connectorProperties, slotProperties);

constexpr ph::ClassDefinition<ConnectorRecord> definition{
    .name = className,
    .superclass = "CIM_PhysicalConnector",
    .source = "table connector (SMBIOS types 4, 9 and 17)",
    .keys = g_SlotKeyList,
    .properties = properties,
    .enumerate = [](ph::RecordArray<ConnectorRecord>& connectors, ph::Detail) {
        return ph::inventory::enumerateConnectors(connectors, true, className);
    }};

} // namespace

PH_EXPORT_CLASS_FAMILY(Slot, ConnectorRecord, definition)
