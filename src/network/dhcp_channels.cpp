// The channels for which the DHCP classes have protocol endpoints.
#include "network/lans.h"
#include "provider_helper/network.h"
#include "Utility/back-ends/back_ends.h"
#include "Utility/engine/guard.h"

#include <algorithm>
#include <netinet/in.h>

namespace {

using ph::Lan;

bool hasIpv4(IPMI20_SESSION_T* session, const Lan& lan) {
    CIM_IPv4NetworkCfg configuration{};
    return CIM_GetIPv4NetworkCfg(session, &configuration, lan.channel, ph::hookTimeout) == 0 &&
           std::ranges::any_of(configuration.address, [](std::uint8_t byte) { return byte != 0; });
}

bool hasIpv6(IPMI20_SESSION_T* session, const Lan& lan) {
    CIM_IPv6Addresses list{};
    if (CIM_GetAllIPv6Addresses(session, &list, lan.channel, ph::hookTimeout) != 0)
        return false;
    const std::size_t count = std::min<std::size_t>(list.count, CIM_MAX_IPV6_ADDRESSES);
    return std::any_of(list.addresses, list.addresses + count, [](const auto& entry) {
        in6_addr address;
        std::ranges::copy(entry.address, address.s6_addr);
        return !IN6_IS_ADDR_UNSPECIFIED(&address) && !IN6_IS_ADDR_LOOPBACK(&address);
    });
}

int createEndpoints(const CMPIBroker* broker, const CMPIContext* context) {
    ph::IpmiSession session;
    if (!session.open())
        return -1;
    int result = 0;
    const auto create = [&](const Lan& lan, int ipVersion) {
        if (PH_CreateDHCPProtocolEndpointInstance != nullptr &&
            PH_CreateDHCPProtocolEndpointInstance(broker, context, lan.interfaceName, lan.channel,
                                                  ipVersion) != 0)
            result = -1;
    };
    for (Lan& lan : ph::listLans(session.get())) {
        ph::readName(session.get(), lan);
        if (hasIpv4(session.get(), lan))
            create(lan, 4);
        if (hasIpv6(session.get(), lan))
            create(lan, 6);
    }
    return result;
}

} // namespace

int PH_Get_All_Lanchannels(const CMPIBroker* broker, const CMPIContext* context) {
    return ph::guarded(-1, [&] { return createEndpoints(broker, context); });
}
