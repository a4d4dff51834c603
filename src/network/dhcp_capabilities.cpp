// CIM_DHCPCapabilities: what the DHCP clients of the BMC can do.
#include "network/dns_settings.h"
#include "network/network_clients.h"

constexpr const char* const g_DHCPCapabilitiesKeyList[1] = {"InstanceID"};

namespace ph::dhcp_capabilities {
namespace {

using Record = DHCPCapabilitiesRecord;

constexpr Property properties[] = {
    PH_KEY(Record, InstanceID),
    PH_PROPERTY(Record, ElementName),
    PH_PROPERTY(Record, ElementNameEditSupported),
    PH_PROPERTY(Record, RequestedStatesSupported),
    PH_PROPERTY(Record, OptionsSupported),
};

int enumerate(RecordArray<Record>& all, Detail detail) {
    Record* capabilities = all.append();
    if (capabilities == nullptr)
        return -1;
    copyText(capabilities->InstanceID, "DHCPCapabilities1");
    if (detail == Detail::Names)
        return 0;
    dns::Settings dns;
    return dns.read() ? PH_Fill_DHCPCapabilities(capabilities, dns.areThere()) : -1;
}

constexpr ClassDefinition<Record> definition{.name = "CIM_DHCPCapabilities",
                                             .superclass = "CIM_EnabledLogicalElementCapabilities",
                                             .source = "one fixed instance; DNS settings (OEM)",
                                             .keys = g_DHCPCapabilitiesKeyList,
                                             .properties = properties,
                                             .enumerate = enumerate};

} // namespace
} // namespace ph::dhcp_capabilities

PH_EXPORT_CLASS_FAMILY(DHCPCapabilities, DHCPCapabilitiesRecord, ph::dhcp_capabilities::definition)

int PH_Fill_DHCPCapabilities(DHCPCapabilitiesRecord* record, int hasDns) {
    using namespace ph::DhcpOption;
    ph::copyText(record->ElementName, "DHCP Client Capabilities");
    ph::setSlots(record->RequestedStatesSupported,
                 {ph::RequestedState::Enabled, ph::RequestedState::Disabled});
    if (hasDns != 0)
        ph::setSlots(record->OptionsSupported, {SubnetMask, Router, DomainNameServer, HostName, DomainName});
    else
        ph::setSlots(record->OptionsSupported, {SubnetMask, Router});
    return 0;
}
