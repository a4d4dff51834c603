// CIM_DNSProtocolEndpoint: the DNS clients of the BMC, with what they use.
#include "network/dns_settings.h"
#include "network/dns_values.h"

constexpr const char* const g_DNSProtocolEndpointKeyList[4] = {"SystemCreationClassName", "CreationClassName",
                                                               "SystemName", "Name"};

namespace ph::dns_protocol_endpoint {
namespace {

using Record = DNSProtocolEndpointRecord;

constexpr const char* className = "CIM_DNSProtocolEndpoint";

bool isTold(const Record& endpoint) {
    return endpoint.isTold;
}
bool hasHostname(const Record& endpoint) {
    return endpoint.Hostname[0] != '\0';
}
bool hasDomain(const Record& endpoint) {
    return endpoint.DomainName[0] != '\0';
}

constexpr Property ownProperties[] = {
    PH_PROPERTY_IF(Record, Hostname, hasHostname),
    PH_PROPERTY_IF(Record, DomainName, hasDomain),
    PH_PROPERTY(Record, DHCPOptionsToUse),
    PH_PROPERTY_IF(Record, RegisterThisConnectionsAddress, isTold),
    PH_PROPERTY_IF(Record, UseSuffixWhenRegistering, isTold),
    PH_PROPERTY(Record, AppendPrimarySuffixes),
    PH_PROPERTY(Record, AppendParentSuffixes),
    PH_PROPERTY(Record, DNSSuffixesToAppend),
};
constexpr auto properties = joined(endpointProperties<Record>, ownProperties);

int enumerate(RecordArray<Record>& endpoints, Detail detail) {
    return dns::appendWhereThere([&](dns::Settings& dns) {
        const auto fill = [&](Record* endpoint, const char* interfaceName, int ipVersion,
                              const CIM_DNSConfig* inUse) {
            return PH_Fill_DNSProtocolEndpoint(endpoint, interfaceName, ipVersion, inUse, &dns.search());
        };
        return dns::appendConfigured(endpoints, className, dns.session(), detail, true, fill);
    });
}

constexpr ClassDefinition<Record> definition{
    .name = className,
    .superclass = "CIM_ProtocolEndpoint",
    .source = "DNS settings (OEM); LAN configuration parameters 3, 51, 56 and 59",
    .keys = g_DNSProtocolEndpointKeyList,
    .properties = properties,
    .enumerate = enumerate};

} // namespace
} // namespace ph::dns_protocol_endpoint

PH_EXPORT_CLASS_FAMILY(DNSProtocolEndpoint, DNSProtocolEndpointRecord, ph::dns_protocol_endpoint::definition)

int PH_Fill_DNSProtocolEndpoint(DNSProtocolEndpointRecord* record, const char* interfaceName, int ipVersion,
                                const CIM_DNSConfig* inUse, const CIM_DNSSearch* search) {
    ph::fillClientEndpoint(*record, "DNS", interfaceName, ipVersion, ph::EnabledState::Enabled);
    ph::setSlots(record->DHCPOptionsToUse, {});
    record->isTold = inUse != nullptr;
    if (inUse != nullptr) {
        ph::copyText(record->Hostname, inUse->hostName);
        ph::copyText(record->DomainName, inUse->domainName);
        ph::dns::appendOptions(record->DHCPOptionsToUse, inUse->fromDhcp);
        record->RegisterThisConnectionsAddress = inUse->registersAddress != 0;
        record->UseSuffixWhenRegistering = inUse->registersWithDomain != 0;
    }
    record->AppendPrimarySuffixes = search->appendsPrimarySuffix != 0;
    record->AppendParentSuffixes = search->appendsParentSuffixes != 0;
    return ph::dns::splitNames(record->DNSSuffixesToAppend, search->suffixes) ? 0 : -1;
}
