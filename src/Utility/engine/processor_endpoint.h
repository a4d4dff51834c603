// Protocol endpoints of the service processor that DMTF has no ProtocolIFType of their own for.
#pragma once

#include "Utility/engine/class_family.h"
#include "Utility/engine/hosted_element.h"
#include "Utility/values/dmtf_values.h"

namespace ph {

// The properties that they begin with.
template <class Record>
consteval auto describeEndpoint() {
    return std::to_array<Property>({
        PH_KEY(Record, SystemCreationClassName),
        PH_KEY(Record, CreationClassName),
        PH_KEY(Record, SystemName),
        PH_KEY(Record, Name),
        PH_PROPERTY(Record, NameFormat),
        PH_PROPERTY(Record, ElementName),
        PH_PROPERTY(Record, ProtocolIFType),
        PH_PROPERTY(Record, OtherTypeDescription),
        PH_PROPERTY(Record, EnabledState),
        PH_PROPERTY(Record, RequestedState),
    });
}
template <class Record>
inline constexpr auto endpointProperties = describeEndpoint<Record>();

// Fills those that follow from the protocol.
template <class Record>
void fillEndpoint(Record& endpoint, const char* nameFormat, const char* protocol,
                  std::uint16_t enabledState = EnabledState::Enabled) {
    copyText(endpoint.NameFormat, nameFormat);
    endpoint.ProtocolIFType = ProtocolIFType::Other;
    copyText(endpoint.OtherTypeDescription, protocol);
    endpoint.EnabledState = enabledState;
    endpoint.RequestedState = RequestedState::NotApplicable;
}

} // namespace ph
