// CIM_DHCPProtocolEndpoint: the DHCP clients of the BMC, and the method that switches one.
#include "network/network_clients.h"
#include "provider_helper/network.h"
#include "Utility/requests/request_texts.h"

#include <algorithm>

constexpr const char* const g_DHCPProtocolEndpointKeyList[4] = {"SystemCreationClassName",
                                                                "CreationClassName", "SystemName", "Name"};

namespace {

using Record = DHCPProtocolEndpointRecord;
using ph::MethodAnswer;
using ph::MethodCall;

constexpr const char* className = "CIM_DHCPProtocolEndpoint";
constexpr std::size_t nameKey = 3;

constexpr ph::Property ownProperties[] = {
    PH_PROPERTY(Record, ClientState),
    PH_PROPERTY(Record, OptionsReceived),
};
constexpr auto properties = ph::joined(ph::endpointProperties<Record>, ownProperties);

int enumerate(ph::RecordArray<Record>& endpoints, ph::Detail detail) {
    ph::IpmiSession session;
    if (!session.open())
        return -1;
    return ph::appendClients(
        endpoints, className, session.get(), detail, [&](Record& endpoint, const ph::AddressedLan& each) {
            return PH_Fill_DHCPProtocolEndpoint(session.get(), &endpoint, each.lan.interfaceName,
                                                each.lan.channel, each.ipVersion);
        });
}

void setEnabled(Record& endpoint, std::uint8_t source) {
    endpoint.EnabledState =
        source == CIM_ADDRESS_SOURCE_DYNAMIC ? ph::EnabledState::Enabled : ph::EnabledState::Disabled;
}

bool isSet(const std::uint8_t (&address)[4]) {
    return std::ranges::any_of(address, [](std::uint8_t byte) { return byte != 0; });
}

// While the source is DHCP, address, mask and gateway are those of the lease.
void fillIpv4(IPMI20_SESSION_T* session, Record& endpoint, std::uint8_t channel) {
    CIM_IPv4NetworkCfg configuration{};
    if (CIM_GetIPv4NetworkCfg(session, &configuration, channel, ph::hookTimeout) != 0)
        return;
    setEnabled(endpoint, configuration.source);
    if (endpoint.EnabledState != ph::EnabledState::Enabled || !isSet(configuration.address))
        return;
    endpoint.ClientState = ph::ClientState::Bound;
    std::uint16_t* received = endpoint.OptionsReceived;
    if (isSet(configuration.netmask))
        *received++ = ph::DhcpOption::SubnetMask;
    if (isSet(configuration.gateway))
        *received++ = ph::DhcpOption::Router;
}

constexpr std::uint8_t ofDhcpV6 = 2; // origin of an address

// A LAN has addresses of a DHCPv6 server when one says so, or its client has noted the server.
void fillIpv6(IPMI20_SESSION_T* session, Record& endpoint, const char* interfaceName, std::uint8_t channel) {
    CIM_IPv6NetworkCfg configuration{};
    if (CIM_GetIPv6NetworkCfg(session, &configuration, channel, ph::hookTimeout) != 0)
        return;
    setEnabled(endpoint, configuration.source);
    if (endpoint.EnabledState != ph::EnabledState::Enabled)
        return;
    CIM_IPv6Addresses list{};
    if (CIM_GetAllIPv6Addresses(session, &list, channel, ph::hookTimeout) != 0)
        list.count = 0;
    const bool isLeased = std::any_of(
        list.addresses, list.addresses + std::min<std::size_t>(list.count, CIM_MAX_IPV6_ADDRESSES),
        [](const auto& entry) { return entry.origin == ofDhcpV6; });
    if (isLeased || PH_IsDHCPServerAddressFilePresent(interfaceName) != 0)
        endpoint.ClientState = ph::ClientState::Bound;
}

// ---- RequestStateChange

bool setSource(const char* name, std::uint16_t state) {
    const auto channel = ph::channelOf(name);
    const std::uint8_t source =
        state == ph::RequestedState::Enabled ? CIM_ADDRESS_SOURCE_DYNAMIC : CIM_ADDRESS_SOURCE_STATIC;
    const auto set = ph::ipVersionOf(name) == '4' ? CIM_SetIPv4Source : CIM_SetIPv6Source;
    ph::IpmiSession session;
    return channel && session.open() && set(session.get(), source, *channel, ph::hookTimeout) == 0;
}

MethodAnswer changeState(MethodCall& call) {
    using namespace ph::RequestedState;
    std::uint16_t state = 0;
    if (!call.readRequestedState(state))
        return std::nullopt;
    if (state != Enabled && state != Disabled)
        return call.refuse(CMPI_RC_ERR_INVALID_PARAMETER, "A DHCP client can be enabled (2) or disabled (3)");
    const char* name = call.key(nameKey);
    if (name == nullptr)
        return call.refuse(ph::noSuchInstance);
    char job[128];
    std::snprintf(job, sizeof(job), "DHCPProtocolEndpoint_RequestStateChange_%s",
                  ph::interfaceAndVersionOf(name));
    return call.report(job, [&] { return setSource(name, state); });
}

constexpr ph::Method methods[] = {{.name = ph::requestStateChange,
                                   .parameters = ph::requestStateChangeParameters,
                                   .carryOut = changeState,
                                   .job = ph::JobReport{}}};

constexpr ph::ClassDefinition<Record> definition{
    .name = className,
    .superclass = "CIM_ProtocolEndpoint",
    .source = "LAN configuration parameters 3, 4, 6, 12, 51, 56, 59 and 64",
    .keys = g_DHCPProtocolEndpointKeyList,
    .properties = properties,
    .enumerate = enumerate,
    .methods = methods,
    .invocation = {.isLookedUp = true, .missing = ph::noSuchInstance}};

} // namespace

PH_EXPORT_CLASS_FAMILY(DHCPProtocolEndpoint, Record, definition)

int PH_Fill_DHCPProtocolEndpoint(IPMI20_SESSION_T* session, Record* record, const char* interfaceName,
                                 uint8_t channel, int ipVersion) {
    ph::fillClientEndpoint(*record, "DHCP", interfaceName, ipVersion, ph::EnabledState::Unknown);
    record->ClientState = ph::ClientState::Unknown;
    ph::setSlots(record->OptionsReceived, {});
    if (ipVersion == 4)
        fillIpv4(session, *record, channel);
    else
        fillIpv6(session, *record, interfaceName, channel);
    return 0;
}
