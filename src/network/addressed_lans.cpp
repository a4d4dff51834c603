#include "network/addressed_lans.h"

#include "Utility/back-ends/back_ends.h"

#include <algorithm>
#include <netinet/in.h>

namespace ph {
namespace {

bool hasIpv4(IPMI20_SESSION_T* session, const Lan& lan) {
    CIM_IPv4NetworkCfg configuration{};
    return CIM_GetIPv4NetworkCfg(session, &configuration, lan.channel, hookTimeout) == 0 &&
           std::ranges::any_of(configuration.address, [](std::uint8_t byte) { return byte != 0; });
}

bool hasIpv6(IPMI20_SESSION_T* session, const Lan& lan) {
    CIM_IPv6Addresses list{};
    if (CIM_GetAllIPv6Addresses(session, &list, lan.channel, hookTimeout) != 0)
        return false;
    const std::size_t count = std::min<std::size_t>(list.count, CIM_MAX_IPV6_ADDRESSES);
    return std::any_of(list.addresses, list.addresses + count, [](const auto& entry) {
        in6_addr address;
        std::ranges::copy(entry.address, address.s6_addr);
        return !IN6_IS_ADDR_UNSPECIFIED(&address) && !IN6_IS_ADDR_LOOPBACK(&address);
    });
}

} // namespace

std::vector<AddressedLan> addressedLans(IPMI20_SESSION_T* session) {
    std::vector<AddressedLan> addressed;
    for (Lan& lan : listLans(session)) {
        readName(session, lan);
        if (hasIpv4(session, lan))
            addressed.push_back({lan, 4});
        if (hasIpv6(session, lan))
            addressed.push_back({lan, 6});
    }
    return addressed;
}

} // namespace ph
