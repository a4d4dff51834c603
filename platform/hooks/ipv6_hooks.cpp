// IPv6 configuration of LAN channels (IPMI 2.0 revision 1.1, LAN configuration parameters 51 to 65).
#include "hooks/lan_parameters.h"
#include "hooks/session.h"

#include <optional>
#include <stdexcept>

static_assert(sizeof(CIM_IPv6NetworkCfg) == 34 &&
                  sizeof(CIM_IPv6Addresses) == 1 + CIM_MAX_IPV6_ADDRESSES * 18 &&
                  sizeof(CIM_IPv6Routers) == 1 + CIM_MAX_IPV6_ROUTERS * 16,
              "layouts shared with the library");

namespace {

using hooks::LanParameters;
namespace lan = ipmi::lan;
namespace parameter = ipmi::lan::parameter;

using Ipv6Address = std::array<std::uint8_t, 16>;
constexpr std::uint8_t longestPrefix = 128;
constexpr const char* noStaticAddress = "the BMC has no static IPv6 address";

// An element of the static or the dynamic addresses.
struct AddressSet {
    std::uint8_t selector = 0;
    std::uint8_t source = 0; // with lan::addressEnabled
    Ipv6Address address = {};
    std::uint8_t prefixLength = 0;
    std::uint8_t status = 0;

    // BMCs have anything there before an address is set.
    std::uint8_t publishedPrefix() const { return std::min(prefixLength, longestPrefix); }
    bool isEnabled() const { return (source & lan::addressEnabled) != 0; }
    bool isActive() const { return status == lan::statusActive && address != decltype(address){}; }
};
constexpr std::size_t addressSetSize = 20;

std::optional<AddressSet> readAddress(const LanParameters& bmc, std::uint8_t number, std::uint8_t selector) {
    std::array<std::uint8_t, addressSetSize> bytes;
    if (!bmc.readSetIfPresent(number, selector, bytes))
        return std::nullopt;
    ipmi::Reader reader(bytes);
    AddressSet set;
    set.selector = reader.u8();
    set.source = reader.u8();
    std::ranges::copy(reader.bytes(set.address.size()), set.address.begin());
    set.prefixLength = reader.u8();
    set.status = reader.u8();
    return set;
}

AddressSet readStaticAddress(const LanParameters& bmc) {
    const auto set = readAddress(bmc, parameter::ipv6StaticAddresses, 0);
    if (!set)
        throw std::runtime_error(noStaticAddress);
    return *set;
}

void writeStaticAddress(const LanParameters& bmc, const AddressSet& set) {
    std::array<std::uint8_t, addressSetSize> bytes;
    ipmi::Writer writer(bytes);
    writer.u8(set.selector).u8(set.source).bytes(set.address).u8(set.prefixLength).u8(0); // status: read-only
    bmc.write(parameter::ipv6StaticAddresses, writer.written());
}

// Reads static address 0, lets `change` edit it and writes it back.
template <class Change>
int changeStaticAddress(const char* hook, const IPMI20_SESSION_T* session, int timeout, std::uint8_t channel,
                        Change change) {
    return hooks::guarded(hook, [&] {
        const LanParameters bmc(hooks::sessionOf(session, timeout), channel);
        AddressSet set = readStaticAddress(bmc);
        change(set);
        writeStaticAddress(bmc, set);
    });
}

void append(CIM_IPv6Addresses& list, const AddressSet& set) {
    auto& entry = list.addresses[list.count++];
    std::ranges::copy(set.address, entry.address);
    entry.prefixLength = set.publishedPrefix();
    constexpr std::uint8_t lastOrigin = 2; // what is reserved beyond is dynamic, too
    entry.origin = std::min<std::uint8_t>(set.source & lan::sourceMask, lastOrigin);
}

void appendActive(CIM_IPv6Addresses& list, const LanParameters& bmc, std::uint8_t number,
                  std::uint8_t count) {
    // A BMC may claim a count that is too high, which must not cost a message for each.
    count = std::min<std::uint8_t>(count, CIM_MAX_IPV6_ADDRESSES);
    for (std::uint8_t selector = 0; selector < count && list.count < CIM_MAX_IPV6_ADDRESSES; ++selector) {
        const auto set = readAddress(bmc, number, selector);
        const bool isUsed = set && (number == parameter::ipv6DynamicAddresses || set->isEnabled());
        if (isUsed && set->isActive())
            append(list, *set);
    }
}

void append(CIM_IPv6Routers& list, const Ipv6Address& router) {
    if (router != Ipv6Address{} && list.count < CIM_MAX_IPV6_ROUTERS)
        std::ranges::copy(router, list.addresses[list.count++]);
}

void appendDynamic(CIM_IPv6Routers& list, const LanParameters& bmc) {
    std::uint8_t count = 0;
    bmc.readIfPresent(parameter::ipv6DynamicRouterCount, std::span(&count, 1));
    count = std::min<std::uint8_t>(count, CIM_MAX_IPV6_ROUTERS); // which each cost a message
    for (std::uint8_t selector = 0; selector < count; ++selector) {
        std::array<std::uint8_t, 1 + std::tuple_size_v<Ipv6Address>> set; // behind its selector
        Ipv6Address router{};
        if (bmc.readSetIfPresent(parameter::ipv6DynamicRouters, selector, set))
            std::ranges::copy(std::span(set).subspan(1), router.begin());
        append(list, router);
    }
}

} // namespace

int CIM_GetIPv6NetworkCfg(IPMI20_SESSION_T* session, CIM_IPv6NetworkCfg* configuration, uint8_t channel,
                          int timeout) {
    return hooks::guarded(__func__, [&] {
        hooks::require(configuration != nullptr);
        const LanParameters bmc(hooks::sessionOf(session, timeout), channel);
        const auto stored = readAddress(bmc, parameter::ipv6StaticAddresses, 0);
        if (!stored)
            bmc.readByte(parameter::ipv6Enables); // which every BMC with IPv6 has
        const AddressSet set = stored.value_or(AddressSet());
        std::uint8_t routers = 0;
        bmc.readIfPresent(parameter::ipv6RouterControl, std::span(&routers, 1));
        const bool isStatic = stored && (set.isEnabled() || routers == lan::staticRouters);
        *configuration = {};
        configuration->source = isStatic ? CIM_ADDRESS_SOURCE_STATIC : CIM_ADDRESS_SOURCE_DYNAMIC;
        std::ranges::copy(set.address, configuration->address);
        configuration->prefixLength = set.publishedPrefix();
        bmc.readIfPresent(parameter::ipv6StaticRouter1, configuration->gateway);
    });
}

int CIM_GetAllIPv6Addresses(IPMI20_SESSION_T* session, CIM_IPv6Addresses* addresses, uint8_t channel,
                            int timeout) {
    return hooks::guarded(__func__, [&] {
        hooks::require(addresses != nullptr);
        addresses->count = 0;
        const LanParameters bmc(hooks::sessionOf(session, timeout), channel);
        std::uint8_t enables = lan::ipv6Disabled;
        std::uint8_t status[3] = {}; // greatest number of static and of dynamic addresses, ways to get those
        bmc.readIfPresent(parameter::ipv6Enables, std::span(&enables, 1));
        if (enables == lan::ipv6Disabled || !bmc.readIfPresent(parameter::ipv6Status, status))
            return;
        appendActive(*addresses, bmc, parameter::ipv6StaticAddresses, status[0]);
        appendActive(*addresses, bmc, parameter::ipv6DynamicAddresses, status[1]);
    });
}

int CIM_GetIPv6Routers(IPMI20_SESSION_T* session, CIM_IPv6Routers* routers, uint8_t channel, int timeout) {
    return hooks::guarded(__func__, [&] {
        hooks::require(routers != nullptr);
        *routers = {};
        const LanParameters bmc(hooks::sessionOf(session, timeout), channel);
        std::uint8_t enables = lan::ipv6Disabled;
        std::uint8_t control = 0;
        bmc.readIfPresent(parameter::ipv6Enables, std::span(&enables, 1));
        if (enables == lan::ipv6Disabled ||
            !bmc.readIfPresent(parameter::ipv6RouterControl, std::span(&control, 1)))
            return;
        if ((control & lan::staticRouters) != 0)
            for (const std::uint8_t number : {parameter::ipv6StaticRouter1, parameter::ipv6StaticRouter2}) {
                Ipv6Address router{};
                bmc.readIfPresent(number, router);
                append(*routers, router);
            }
        if ((control & lan::dynamicRouters) != 0)
            appendDynamic(*routers, bmc);
    });
}

int CIM_SetIPv6Source(IPMI20_SESSION_T* session, uint8_t source, uint8_t channel, int timeout) {
    return hooks::guarded(__func__, [&] {
        if (source != CIM_ADDRESS_SOURCE_STATIC && source != CIM_ADDRESS_SOURCE_DYNAMIC)
            throw std::invalid_argument("IPv6 address source " + std::to_string(source) + " is unknown");
        const bool isStatic = source == CIM_ADDRESS_SOURCE_STATIC;
        const LanParameters bmc(hooks::sessionOf(session, timeout), channel);
        auto set = readAddress(bmc, parameter::ipv6StaticAddresses, 0);
        if (isStatic && !set)
            throw std::runtime_error(noStaticAddress);
        if (bmc.readByte(parameter::ipv6Enables) == lan::ipv6Disabled)
            bmc.writeByte(parameter::ipv6Enables, lan::ipv6AndIpv4);
        bmc.writeByte(parameter::ipv6RouterControl, isStatic ? lan::staticRouters : lan::dynamicRouters);
        if (!isStatic && set && set->isEnabled()) {
            set->source = 0;
            writeStaticAddress(bmc, *set);
        }
    });
}

int CIM_SetIPv6Address(IPMI20_SESSION_T* session, const uint8_t* address, uint8_t channel, int timeout) {
    return changeStaticAddress(__func__, session, timeout, channel, [&](AddressSet& set) {
        hooks::require(address != nullptr);
        set.source = lan::addressEnabled;
        std::copy_n(address, set.address.size(), set.address.begin());
    });
}

int CIM_SetIPv6Prefix(IPMI20_SESSION_T* session, uint8_t prefixLength, uint8_t channel, int timeout) {
    return changeStaticAddress(__func__, session, timeout, channel, [&](AddressSet& set) {
        if (prefixLength > longestPrefix)
            throw std::invalid_argument("IPv6 prefix length " + std::to_string(prefixLength) +
                                        " is too long");
        set.prefixLength = prefixLength;
    });
}

int CIM_SetIPv6Gateway(IPMI20_SESSION_T* session, const uint8_t* gateway, uint8_t channel, int timeout) {
    return hooks::guarded(__func__, [&] {
        hooks::require(gateway != nullptr);
        LanParameters(hooks::sessionOf(session, timeout), channel)
            .write(parameter::ipv6StaticRouter1, std::span(gateway, std::tuple_size_v<Ipv6Address>));
    });
}
