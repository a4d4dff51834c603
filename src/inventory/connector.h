// What slots and ports share: their properties, and how records come from the connectors of the database.
#pragma once

#include "inventory/physical_element.h"

namespace ph::inventory {

template <auto text>
bool isTextGiven(const ConnectorRecord& connector) {
    return (connector.*text)[0] != '\0';
}
template <auto number>
bool isNumberKnown(const ConnectorRecord& connector) {
    return connector.*number != 0;
}

inline constexpr Property connectorProperties[] = {
    PH_KEY(ConnectorRecord, Tag),
    PH_KEY(ConnectorRecord, CreationClassName),
    PH_PROPERTY(ConnectorRecord, ElementName),
    PH_PROPERTY(ConnectorRecord, Description),
    PH_PROPERTY(ConnectorRecord, ConnectorLayout),
    PH_PROPERTY_IF(ConnectorRecord, ConnectorGender, isNumberKnown<&ConnectorRecord::ConnectorGender>),
    PH_PROPERTY_IF(ConnectorRecord, ConnectorDescription,
                   isTextGiven<&ConnectorRecord::ConnectorDescription>),
};

// Appends the slots, or the ports, as instances of the class.
int enumerateConnectors(RecordArray<ConnectorRecord>& connectors, bool areSlots, const char* className);

} // namespace ph::inventory
