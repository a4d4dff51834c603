#include "services/service_capabilities.h"

#include "services/service_record.h"
#include "Utility/values/dmtf_values.h"
#include "Utility/values/record_fields.h"

#include <cstdio>
#include <optional>
#include <string_view>

namespace ph {
namespace {

constexpr const char* classOf(const Service& service) {
    switch (service.protocol) {
    case Protocol::Ssh:
        return "CIM_SSHCapabilities";
    case Protocol::Telnet:
        return "CIM_TelnetCapabilities";
    case Protocol::SmClp:
        return "CIM_CLPCapabilities";
    default:
        return "CIM_ProtocolServiceCapabilities";
    }
}

// Clients add no ports: a service has those of its record.
std::uint16_t countPorts(const Service& service, const CIM_ServiceConf& conf) {
    const bool hasClear = portOf(conf, false) != 0 && service.ports != Ports::Encrypted;
    const bool hasEncrypted = portOf(conf, true) != 0 && service.ports != Ports::Clear;
    return static_cast<std::uint16_t>(hasClear + hasEncrypted);
}

} // namespace

int enumerateServiceCapabilities(const char* className, RecordArray<ProtocolServiceCapabilitiesRecord>& all,
                                 Detail detail) {
    std::optional<IpmiSession> session;
    for (const Service& service : allServices()) {
        if (std::string_view(classOf(service)) != className)
            continue;
        ServiceRecord record;
        if (!service.isClp()) {
            if (!session && !session.emplace().open())
                return -1;
            if (!readServiceRecord(session->get(), service, record))
                continue;
        }
        ProtocolServiceCapabilitiesRecord* capabilities = all.append();
        if (capabilities == nullptr)
            return -1;
        std::snprintf(capabilities->InstanceID, sizeof(capabilities->InstanceID), "%s:%s",
                      className + std::string_view("CIM_").size(), service.name);
        if (detail == Detail::All)
            PH_Fill_ProtocolServiceCapabilities(service.name, service.isClp() ? nullptr : &record.conf,
                                                capabilities);
    }
    return 0;
}

} // namespace ph

int PH_Fill_ProtocolServiceCapabilities(const char* serviceName, const CIM_ServiceConf* conf,
                                        ProtocolServiceCapabilitiesRecord* record) {
    using namespace ph::RequestedState;
    const ph::Service* service = ph::findService(serviceName);
    if (service == nullptr)
        return -1;
    std::snprintf(record->ElementName, sizeof(record->ElementName), "%s Capabilities", service->elementName);
    ph::setList(record->RequestedStatesSupported, {Enabled, Disabled, Reset});
    record->MaxConnections = conf != nullptr ? conf->maxSessions : std::uint16_t{1};
    record->MaxListeningPorts = conf != nullptr ? ph::countPorts(*service, *conf) : std::uint16_t{0};
    return 0;
}
