// CIM_TCPProtocolEndpoint: the TCP ports of the network services.
#include "provider_helper/services.h"
#include "services/service_record.h"
#include "Utility/engine/class_family.h"
#include "Utility/engine/hosted_element.h"
#include "Utility/values/dmtf_values.h"
#include "Utility/values/record_fields.h"

#include <cstdio>

constexpr const char* const g_TCPProtocolEndpointKeyList[4] = {"SystemCreationClassName", "CreationClassName",
                                                               "SystemName", "Name"};

namespace ph::tcp_protocol_endpoint {
namespace {

using Record = TCPProtocolEndpointRecord;

constexpr const char* className = "CIM_TCPProtocolEndpoint";

constexpr Property properties[] = {
    PH_KEY(Record, SystemCreationClassName),
    PH_KEY(Record, CreationClassName),
    PH_KEY(Record, SystemName),
    PH_KEY(Record, Name),
    PH_PROPERTY(Record, NameFormat),
    PH_PROPERTY(Record, ElementName),
    PH_PROPERTY(Record, PortNumber),
    PH_PROPERTY(Record, ProtocolIFType),
    PH_PROPERTY(Record, EnabledState),
    PH_PROPERTY(Record, RequestedState),
};

const char* kindOf(bool isEncrypted) {
    return isEncrypted ? "encrypted" : "clear";
}

int appendPorts(RecordArray<Record>& endpoints, const char* systemName, const Service& service,
                const CIM_ServiceConf& conf, Detail detail) {
    for (const bool isEncrypted : {false, true}) {
        if (portOf(conf, isEncrypted) == 0)
            continue;
        Record* endpoint = endpoints.append();
        if (endpoint == nullptr)
            return -1;
        setHostedKeys(*endpoint, processorClass, systemName, className);
        std::snprintf(endpoint->Name, sizeof(endpoint->Name), "TCPProtocolEndpoint-%s-%s", service.word,
                      kindOf(isEncrypted));
        if (detail == Detail::All)
            PH_Fill_TCPProtocolEndpoint(&conf, isEncrypted ? 1 : 0, endpoint);
    }
    return 0;
}

int enumerate(RecordArray<Record>& endpoints, Detail detail) {
    char systemName[256] = "";
    IpmiSession session;
    if (PH_GetSPSystemName(systemName) != 0 || !session.open())
        return -1;
    for (const Service& service : allServices()) {
        ServiceRecord record;
        if (service.ports == Ports::Both && // the others have their ports of one of these
            readServiceRecord(session.get(), service, record) &&
            appendPorts(endpoints, systemName, service, record.conf, detail) != 0)
            return -1;
    }
    return 0;
}

constexpr ClassDefinition<Record> definition{.name = className,
                                             .superclass = "CIM_ProtocolEndpoint",
                                             .source = "Get Service Configuration (OEM)",
                                             .keys = g_TCPProtocolEndpointKeyList,
                                             .properties = properties,
                                             .enumerate = enumerate};

} // namespace
} // namespace ph::tcp_protocol_endpoint

PH_EXPORT_CLASS_FAMILY(TCPProtocolEndpoint, TCPProtocolEndpointRecord, ph::tcp_protocol_endpoint::definition)

int PH_Fill_TCPProtocolEndpoint(const CIM_ServiceConf* conf, int encrypted,
                                TCPProtocolEndpointRecord* record) {
    ph::copyText(record->NameFormat, "ClassName-ServiceName-Encryption");
    std::snprintf(record->ElementName, sizeof(record->ElementName), "%.*s, %s", CIM_SERVICE_NAME_SIZE,
                  conf->name, ph::tcp_protocol_endpoint::kindOf(encrypted != 0));
    record->PortNumber = ph::portOf(*conf, encrypted != 0);
    record->ProtocolIFType = ph::ProtocolIFType::Tcp;
    record->EnabledState = conf->currentState != 0 ? ph::EnabledState::Enabled : ph::EnabledState::Disabled;
    record->RequestedState = ph::RequestedState::NotApplicable;
    return 0;
}
