// What each network service allows. SSH, Telnet and CLP have classes of their own for that.
#pragma once

#include "provider_helper/service_sessions.h"
#include "Utility/engine/class_family.h"

namespace ph {

inline constexpr Property serviceCapabilitiesProperties[] = {
    PH_KEY(ProtocolServiceCapabilitiesRecord, InstanceID),
    PH_PROPERTY(ProtocolServiceCapabilitiesRecord, ElementName),
    PH_PROPERTY(ProtocolServiceCapabilitiesRecord, ElementNameEditSupported),
    PH_PROPERTY(ProtocolServiceCapabilitiesRecord, RequestedStatesSupported),
    PH_PROPERTY(ProtocolServiceCapabilitiesRecord, MaxConnections),
    stored("MaxListeningPorts", Kind::Uint16, offsetof(ProtocolServiceCapabilitiesRecord, MaxListeningPorts),
           [](const void* record) {
               return static_cast<const ProtocolServiceCapabilitiesRecord*>(record)->MaxListeningPorts != 0;
           }),
    PH_PROPERTY(ProtocolServiceCapabilitiesRecord, ListeningPortManagementSupported),
};

// The value of a list in which nobody tells what there is: 0 unknown.
inline const int* unknownList(const ProtocolServiceCapabilitiesRecord&) {
    static constexpr int list[] = {0, -1};
    return list;
}

// Appends the capabilities of the services of which the class with this name is.
int enumerateServiceCapabilities(const char* className, RecordArray<ProtocolServiceCapabilitiesRecord>& all,
                                 Detail detail);

// Makes the definition of such a class.
template <const auto& name>
constexpr ClassDefinition<ProtocolServiceCapabilitiesRecord>
defineServiceCapabilities(const char* superclass, const char* source, std::span<const char* const> keys,
                          std::span<const Property> properties) {
    return {.name = name,
            .superclass = superclass,
            .source = source,
            .keys = keys,
            .properties = properties,
            .enumerate = [](RecordArray<ProtocolServiceCapabilitiesRecord>& all, Detail detail) {
                return enumerateServiceCapabilities(name, all, detail);
            }};
}

} // namespace ph
