// The LAN configuration parameters of addresses (IPMI 2.0 revision 1.1, table 23-4).
#include "ipmi/lan_configuration.h"
#include "virtual-bmc/lan/lans.h"
#include "virtual-bmc/state/set_in_progress.h"

#include <algorithm>

namespace vbmc {
namespace {

namespace completion = ipmi::completion;

// ---- Transaction

std::uint8_t getProgress(const State&, const Lan& lan, LanSelector, ipmi::Writer& answer) {
    answer.u8(lan.isSetInProgress ? ipmi::progress::started : ipmi::progress::complete);
    return completion::success;
}

std::uint8_t setLanProgress(State&, Lan& lan, ipmi::Reader request) {
    return setProgress(lan.isSetInProgress, request.u8());
}

// ---- IPv4

template <auto Member>
std::uint8_t getIpv4(const State&, const Lan& lan, LanSelector, ipmi::Writer& answer) {
    answer.bytes((lan.ipv4.used().*Member).bytes);
    return completion::success;
}

template <auto Member>
std::uint8_t setIpv4(State&, Lan& lan, ipmi::Reader request) {
    if (lan.ipv4.isDhcp())
        return completion::notInPresentState;
    Ipv4Address address;
    std::ranges::copy(request.bytes(address.bytes.size()), address.bytes.begin());
    if (Member == &Ipv4Setting::netmask && !isNetmask(address))
        return completion::invalidDataField;
    lan.ipv4.configured.*Member = address;
    return completion::success;
}

std::uint8_t getSource(const State&, const Lan& lan, LanSelector, ipmi::Writer& answer) {
    answer.u8(lan.ipv4.source);
    return completion::success;
}

std::uint8_t setSource(State&, Lan& lan, ipmi::Reader request) {
    const std::uint8_t source = request.u8() & 0x0F;
    if (source != ipmi::lan::sourceStatic && source != ipmi::lan::sourceDhcp)
        return completion::invalidDataField;
    if (lan.ipv4.isDhcp() && source == ipmi::lan::sourceStatic)
        lan.ipv4.configured = lan.ipv4.lease; // the interface keeps its address
    lan.ipv4.source = source;
    return completion::success;
}

// ---- MAC and VLAN

std::uint8_t getMac(const State&, const Lan& lan, LanSelector, ipmi::Writer& answer) {
    answer.bytes(lan.mac.bytes);
    return completion::success;
}

std::uint8_t getVlanId(const State&, const Lan& lan, LanSelector, ipmi::Writer& answer) {
    answer.u16(static_cast<std::uint16_t>(lan.vlanId | lan.isInVlan << 15));
    return completion::success;
}

std::uint8_t setVlanId(State&, Lan& lan, ipmi::Reader request) {
    const std::uint16_t value = request.u16();
    lan.vlanId = value & 0x0FFF;
    lan.isInVlan = (value & 0x8000) != 0;
    return completion::success;
}

std::uint8_t getVlanPriority(const State&, const Lan& lan, LanSelector, ipmi::Writer& answer) {
    answer.u8(lan.vlanPriority);
    return completion::success;
}

std::uint8_t setVlanPriority(State&, Lan& lan, ipmi::Reader request) {
    lan.vlanPriority = request.u8() & 0x07;
    return completion::success;
}

// ---- IPv6

std::uint8_t getIpv6Support(const State&, const Lan&, LanSelector, ipmi::Writer& answer) {
    answer.u8(0x03); // IPv6 only, and beside IPv4
    return completion::success;
}

std::uint8_t getIpv6Enables(const State&, const Lan& lan, LanSelector, ipmi::Writer& answer) {
    answer.u8(lan.ipv6.enables);
    return completion::success;
}

std::uint8_t setIpv6Enables(State&, Lan& lan, ipmi::Reader request) {
    const std::uint8_t enables = request.u8();
    if (enables > ipmi::lan::ipv6AndIpv4)
        return completion::invalidDataField;
    lan.ipv6.enables = enables;
    return completion::success;
}

std::uint8_t getIpv6Status(const State&, const Lan&, LanSelector, ipmi::Writer& answer) {
    answer.u8(Ipv6::staticSets).u8(Ipv6::dynamicSets).u8(0x03); // DHCPv6 and SLAAC
    return completion::success;
}

void writeAddress(ipmi::Writer& answer, std::uint8_t selector, std::uint8_t source,
                  const Ipv6Setting& setting, bool isActive) {
    answer.u8(selector).u8(source).bytes(setting.address.bytes).u8(setting.prefixLength);
    answer.u8(isActive ? ipmi::lan::statusActive : ipmi::lan::statusDisabled);
}

std::uint8_t getStaticAddress(const State&, const Lan& lan, LanSelector selector, ipmi::Writer& answer) {
    if (selector.set >= Ipv6::staticSets)
        return completion::parameterOutOfRange;
    const auto& statics = lan.ipv6.statics;
    const Ipv6Setting setting = selector.set < statics.size() ? statics[selector.set] : Ipv6Setting{};
    writeAddress(answer, selector.set, setting.isEnabled ? ipmi::lan::addressEnabled : 0, setting,
                 setting.isEnabled && lan.ipv6.enables != ipmi::lan::ipv6Disabled);
    return completion::success;
}

std::uint8_t setStaticAddress(State&, Lan& lan, ipmi::Reader request) {
    const std::uint8_t selector = request.u8();
    if (selector >= Ipv6::staticSets)
        return completion::parameterOutOfRange;
    Ipv6Setting setting;
    setting.isEnabled = (request.u8() & ipmi::lan::addressEnabled) != 0;
    std::ranges::copy(request.bytes(setting.address.bytes.size()), setting.address.bytes.begin());
    setting.prefixLength = request.u8();
    const bool isMulticast = setting.address.bytes[0] == 0xFF;
    if (setting.prefixLength > longestPrefix || isMulticast ||
        (setting.isEnabled && setting.address == Ipv6Address{}))
        return completion::invalidDataField;
    auto& statics = lan.ipv6.statics;
    statics.resize(std::max<std::size_t>(statics.size(), selector + 1U));
    statics[selector] = setting;
    return completion::success;
}

std::uint8_t getDynamicAddress(const State&, const Lan& lan, LanSelector selector, ipmi::Writer& answer) {
    if (selector.set >= Ipv6::dynamicSets)
        return completion::parameterOutOfRange;
    const auto dynamic = lan.ipv6.dynamic(selector.set);
    const DynamicIpv6 setting = dynamic.value_or(DynamicIpv6{});
    writeAddress(answer, selector.set, setting.source, setting, dynamic.has_value());
    return completion::success;
}

std::uint8_t getRouterControl(const State&, const Lan& lan, LanSelector, ipmi::Writer& answer) {
    answer.u8(lan.ipv6.routerControl);
    return completion::success;
}

std::uint8_t setRouterControl(State&, Lan& lan, ipmi::Reader request) {
    lan.ipv6.routerControl = request.u8() & (ipmi::lan::staticRouters | ipmi::lan::dynamicRouters);
    return completion::success;
}

std::uint8_t getRouter(const State&, const Lan& lan, LanSelector, ipmi::Writer& answer) {
    answer.bytes(lan.ipv6.router.bytes);
    return completion::success;
}

std::uint8_t setRouter(State&, Lan& lan, ipmi::Reader request) {
    std::ranges::copy(request.bytes(lan.ipv6.router.bytes.size()), lan.ipv6.router.bytes.begin());
    return completion::success;
}

std::uint8_t getRouterPrefixLength(const State&, const Lan& lan, LanSelector, ipmi::Writer& answer) {
    answer.u8(lan.ipv6.routerPrefixLength);
    return completion::success;
}

std::uint8_t setRouterPrefixLength(State&, Lan& lan, ipmi::Reader request) {
    const std::uint8_t length = request.u8();
    if (length > longestPrefix)
        return completion::invalidDataField;
    lan.ipv6.routerPrefixLength = length;
    return completion::success;
}

bool hasDynamicRouter(const Lan& lan) {
    return lan.ipv6.isDynamic() && lan.ipv6.advertisedRouter != Ipv6Address{};
}

std::uint8_t getDynamicRouterCount(const State&, const Lan& lan, LanSelector, ipmi::Writer& answer) {
    answer.u8(hasDynamicRouter(lan));
    return completion::success;
}

std::uint8_t getDynamicRouter(const State&, const Lan& lan, LanSelector selector, ipmi::Writer& answer) {
    if (selector.set != 0 || !hasDynamicRouter(lan))
        return completion::parameterOutOfRange;
    answer.u8(selector.set).bytes(lan.ipv6.advertisedRouter.bytes);
    return completion::success;
}

} // namespace

std::span<const LanParameter> Lans::lanParameters() {
    static constexpr LanParameter table[] = {
        {ipmi::lan::parameter::setInProgress, 1, getProgress, setLanProgress},
        {ipmi::lan::parameter::ipv4Address, 4, getIpv4<&Ipv4Setting::address>,
         setIpv4<&Ipv4Setting::address>},
        {ipmi::lan::parameter::ipv4Source, 1, getSource, setSource},
        {ipmi::lan::parameter::macAddress, 6, getMac, nullptr},
        {ipmi::lan::parameter::subnetMask, 4, getIpv4<&Ipv4Setting::netmask>, setIpv4<&Ipv4Setting::netmask>},
        {ipmi::lan::parameter::defaultGateway, 4, getIpv4<&Ipv4Setting::gateway>,
         setIpv4<&Ipv4Setting::gateway>},
        {ipmi::lan::parameter::vlanId, 2, getVlanId, setVlanId},
        {ipmi::lan::parameter::vlanPriority, 1, getVlanPriority, setVlanPriority},
        {ipmi::lan::parameter::ipv6Support, 0, getIpv6Support, nullptr},
        {ipmi::lan::parameter::ipv6Enables, 1, getIpv6Enables, setIpv6Enables},
        {ipmi::lan::parameter::ipv6Status, 0, getIpv6Status, nullptr},
        {ipmi::lan::parameter::ipv6StaticAddresses, 19, getStaticAddress, setStaticAddress},
        {ipmi::lan::parameter::ipv6DynamicAddresses, 0, getDynamicAddress, nullptr},
        {ipmi::lan::parameter::ipv6RouterControl, 1, getRouterControl, setRouterControl},
        {ipmi::lan::parameter::ipv6StaticRouter1, 16, getRouter, setRouter},
        {ipmi::lan::parameter::ipv6StaticRouter1PrefixLength, 1, getRouterPrefixLength,
         setRouterPrefixLength},
        {ipmi::lan::parameter::ipv6DynamicRouterCount, 0, getDynamicRouterCount, nullptr},
        {ipmi::lan::parameter::ipv6DynamicRouters, 0, getDynamicRouter, nullptr},
    };
    return table;
}

} // namespace vbmc
