// CIM_DHCPProtocolEndpoint: the DHCP clients of the BMC, and the method that switches one.
#include "network/network_clients.h"
#include "provider_helper/network.h"
#include "Utility/requests/request_texts.h"

#include <algorithm>

constexpr const char* const g_DHCPProtocolEndpointKeyList[4] = {"SystemCreationClassName",
                                                                "CreationClassName", "SystemName", "Name"};

namespace ph::dhcp_protocol_endpoint {
namespace {

using Record = DHCPProtocolEndpointRecord;

constexpr const char* className = "CIM_DHCPProtocolEndpoint";
constexpr std::size_t nameKey = 3;

constexpr Property ownProperties[] = {
    PH_PROPERTY(Record, ClientState),
    PH_PROPERTY(Record, OptionsReceived),
};
constexpr auto properties = joined(endpointProperties<Record>, ownProperties);

int enumerate(RecordArray<Record>& endpoints, Detail detail) {
    IpmiSession session;
    if (!session.open())
        return -1;
    return appendClients(
        endpoints, className, session.get(), detail, [&](Record& endpoint, const AddressedLan& each) {
            return PH_Fill_DHCPProtocolEndpoint(session.get(), &endpoint, each.lan.interfaceName,
                                                each.lan.channel, each.ipVersion);
        });
}

void setEnabled(Record& endpoint, std::uint8_t source) {
    endpoint.EnabledState =
        source == CIM_ADDRESS_SOURCE_DYNAMIC ? EnabledState::Enabled : EnabledState::Disabled;
}

bool isSet(const std::uint8_t (&address)[4]) {
    return std::ranges::any_of(address, [](std::uint8_t byte) { return byte != 0; });
}

// While the source is DHCP, address, mask and gateway are those of the lease.
void fillIpv4(IPMI20_SESSION_T* session, Record& endpoint, std::uint8_t channel) {
    CIM_IPv4NetworkCfg configuration{};
    if (CIM_GetIPv4NetworkCfg(session, &configuration, channel, hookTimeout) != 0)
        return;
    setEnabled(endpoint, configuration.source);
    if (endpoint.EnabledState != EnabledState::Enabled || !isSet(configuration.address))
        return;
    endpoint.ClientState = ClientState::Bound;
    std::uint16_t* received = endpoint.OptionsReceived;
    if (isSet(configuration.netmask))
        *received++ = DhcpOption::SubnetMask;
    if (isSet(configuration.gateway))
        *received++ = DhcpOption::Router;
}

constexpr std::uint8_t ofDhcpV6 = 2; // origin of an address

// A LAN has addresses of a DHCPv6 server when one says so, or its client has noted the server.
void fillIpv6(IPMI20_SESSION_T* session, Record& endpoint, const char* interfaceName, std::uint8_t channel) {
    CIM_IPv6NetworkCfg configuration{};
    if (CIM_GetIPv6NetworkCfg(session, &configuration, channel, hookTimeout) != 0)
        return;
    setEnabled(endpoint, configuration.source);
    if (endpoint.EnabledState != EnabledState::Enabled)
        return;
    CIM_IPv6Addresses list{};
    if (CIM_GetAllIPv6Addresses(session, &list, channel, hookTimeout) != 0)
        list.count = 0;
    const bool isLeased = std::any_of(
        list.addresses, list.addresses + std::min<std::size_t>(list.count, CIM_MAX_IPV6_ADDRESSES),
        [](const auto& entry) { return entry.origin == ofDhcpV6; });
    if (isLeased || PH_IsDHCPServerAddressFilePresent(interfaceName) != 0)
        endpoint.ClientState = ClientState::Bound;
}

// ---- RequestStateChange

bool setSource(const char* name, std::uint16_t state) {
    const auto channel = channelOf(name);
    const std::uint8_t source =
        state == RequestedState::Enabled ? CIM_ADDRESS_SOURCE_DYNAMIC : CIM_ADDRESS_SOURCE_STATIC;
    const auto set = ipVersionOf(name) == '4' ? CIM_SetIPv4Source : CIM_SetIPv6Source;
    IpmiSession session;
    return channel && session.open() && set(session.get(), source, *channel, hookTimeout) == 0;
}

MethodAnswer changeState(MethodCall& call) {
    using namespace RequestedState;
    std::uint16_t state = 0;
    if (!call.readRequestedState(state))
        return std::nullopt;
    if (state != Enabled && state != Disabled)
        return call.refuse(CMPI_RC_ERR_INVALID_PARAMETER, "A DHCP client can be enabled (2) or disabled (3)");
    const char* name = call.key(nameKey);
    if (name == nullptr)
        return call.refuse(noSuchInstance);
    char job[128];
    std::snprintf(job, sizeof(job), "DHCPProtocolEndpoint_RequestStateChange_%s",
                  interfaceAndVersionOf(name));
    return call.report(job, [&] { return setSource(name, state); });
}

constexpr Method methods[] = {{.name = requestStateChange,
                               .parameters = requestStateChangeParameters,
                               .carryOut = changeState,
                               .job = JobReport{}}};

constexpr ClassDefinition<Record> definition{
    .name = className,
    .superclass = "CIM_ProtocolEndpoint",
    .source = "LAN configuration parameters 3, 4, 6, 12, 51, 56, 59 and 64",
    .keys = g_DHCPProtocolEndpointKeyList,
    .properties = properties,
    .enumerate = enumerate,
    .methods = methods,
    .invocation = {.isLookedUp = true, .missing = noSuchInstance}};

} // namespace
} // namespace ph::dhcp_protocol_endpoint

PH_EXPORT_CLASS_FAMILY(DHCPProtocolEndpoint, DHCPProtocolEndpointRecord,
                       ph::dhcp_protocol_endpoint::definition)

int PH_Fill_DHCPProtocolEndpoint(IPMI20_SESSION_T* session, DHCPProtocolEndpointRecord* record,
                                 const char* interfaceName, uint8_t channel, int ipVersion) {
    ph::fillClientEndpoint(*record, "DHCP", interfaceName, ipVersion, ph::EnabledState::Unknown);
    record->ClientState = ph::ClientState::Unknown;
    ph::setSlots(record->OptionsReceived, {});
    if (ipVersion == 4)
        ph::dhcp_protocol_endpoint::fillIpv4(session, *record, channel);
    else
        ph::dhcp_protocol_endpoint::fillIpv6(session, *record, interfaceName, channel);
    return 0;
}
