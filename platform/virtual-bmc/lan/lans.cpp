#include "virtual-bmc/lan/lans.h"

#include "ipmi/lan_configuration.h"
#include "virtual-bmc/state/json_fields.h"
#include "virtual-bmc/state/state.h"

#include <algorithm>

namespace vbmc {
namespace {

namespace completion = ipmi::completion;

constexpr std::size_t longestName = 15; // Linux IFNAMSIZ less the terminator
constexpr std::uint16_t lastVlan = 4095;

constexpr Choice enableWords[] = {{0, "off"}, {1, "ipv4"}, {2, "ipv6"}, {3, "both"}};
constexpr Choice sources[] = {{1, "static"}, {2, "dhcp"}};
constexpr Choice ipv6Enables[] = {{0, "off"}, {1, "only"}, {2, "both"}};
constexpr Choice routers[] = {{0, "none"}, {1, "static"}, {2, "dynamic"}, {3, "both"}};

// All parts' parameters.
template <class... Parts>
const LanParameter* findParameter(std::uint8_t number, const std::tuple<Parts...>*) {
    const LanParameter* found = nullptr;
    const auto search = [&]<class Part>(const Part*) {
        if constexpr (requires { Part::lanParameters(); })
            for (const LanParameter& parameter : Part::lanParameters())
                if (parameter.number == number)
                    found = &parameter;
    };
    (search(static_cast<const Parts*>(nullptr)), ...);
    return found;
}

const LanParameter* findParameter(std::uint8_t number) {
    return findParameter(number, static_cast<const Parts*>(nullptr));
}

constexpr std::uint8_t systemInterface = 0x0F;

std::uint8_t getChannelInfo(State& state, ipmi::Reader request, ipmi::Writer& answer) {
    struct Medium {
        std::uint8_t medium, protocol, sessions;
    };
    constexpr Medium ipmb{0x01, 0x01, 0x00};
    constexpr Medium kcs{0x0C, 0x05, 0x00};
    constexpr Medium lan{ipmi::channel::mediumLan, ipmi::channel::protocolIpmb, 0x80}; // multi-session
    std::uint8_t channel = request.u8() & 0x0F;
    if (channel == ipmi::channel::present)
        channel = systemInterface;
    const Medium* medium = nullptr;
    if (channel == 0)
        medium = &ipmb;
    else if (channel == systemInterface)
        medium = &kcs;
    else if (state.get<Lans>().find(channel) != nullptr)
        medium = &lan;
    if (medium == nullptr)
        return completion::invalidDataField;
    constexpr std::uint32_t ipmiForum = 7154; // IANA enterprise number
    answer.u8(channel).u8(medium->medium).u8(medium->protocol).u8(medium->sessions).u24(ipmiForum).u16(0);
    return completion::success;
}

std::uint8_t getParameters(State& state, ipmi::Reader request, ipmi::Writer& answer) {
    const std::uint8_t channel = request.u8();
    const std::uint8_t number = request.u8();
    const LanSelector selector{request.u8(), request.u8()};
    constexpr std::uint8_t revisionOnly = 0x80;
    const Lan* const lan = state.get<Lans>().find(channel & 0x0F);
    const LanParameter* const parameter = findParameter(number);
    if (lan == nullptr)
        return completion::invalidDataField;
    if (parameter == nullptr)
        return ipmi::lan::parameterNotSupported;
    if (parameter->get == nullptr)
        return ipmi::lan::parameterIsWriteOnly;
    answer.u8(ipmi::lan::parameterRevision);
    return (channel & revisionOnly) != 0 ? completion::success
                                         : parameter->get(state, *lan, selector, answer);
}

std::uint8_t setParameters(State& state, ipmi::Reader request, ipmi::Writer&) {
    const std::uint8_t channel = request.u8() & 0x0F;
    const LanParameter* const parameter = findParameter(request.u8());
    if (state.get<Lans>().find(channel) == nullptr)
        return completion::invalidDataField;
    if (parameter == nullptr)
        return ipmi::lan::parameterNotSupported;
    if (parameter->set == nullptr)
        return ipmi::lan::parameterIsReadOnly;
    if (request.left() < parameter->leastRequest)
        return completion::requestLengthInvalid;
    return parameter->set(state, *state.edit<Lans>().find(channel), request);
}

// The IPv6 addresses in use, as a text for people.
std::string addressesOf(const Ipv6& ipv6) {
    std::string text;
    const auto add = [&](const Ipv6Setting& setting) {
        text += (text.empty() ? "" : ", ") + setting.address.toJson().get<std::string>() + "/" +
                std::to_string(setting.prefixLength);
    };
    for (const Ipv6Setting& setting : ipv6.statics)
        if (setting.isEnabled && ipv6.enables != ipmi::lan::ipv6Disabled)
            add(setting);
    for (std::uint8_t selector = 0; selector < Ipv6::dynamicSets; ++selector)
        if (const auto dynamic = ipv6.dynamic(selector))
            add(*dynamic);
    return text;
}

} // namespace

void Ipv4Setting::fields(Fields& fields) {
    fields("address", address);
    fields("netmask", netmask);
    fields("gateway", gateway);
}

void Ipv4Setting::check(const Place& place) const {
    if (!isNetmask(netmask))
        fail(Place{&place, "netmask"}, "it is no netmask");
}

void Ipv4::fields(Fields& fields) {
    fields.choice("source", source, sources);
    fields("configured", configured);
    fields("lease", lease);
}

void Ipv6Setting::fields(Fields& fields) {
    fields("enabled", isEnabled);
    fields("address", address);
    fields.number("prefixLength", prefixLength, 0, longestPrefix);
}

void Ipv6::fields(Fields& fields) {
    fields.choice("enables", enables, ipv6Enables);
    fields("static", statics);
    fields.choice("routers", routerControl, routers);
    fields("router", router);
    fields.number("routerPrefixLength", routerPrefixLength, 0, longestPrefix);
    fields("advertised", advertised);
    fields("lease", lease);
    fields("advertisedRouter", advertisedRouter);
}

void Ipv6::check(const Place& place) const {
    if (statics.size() > staticSets)
        fail(Place{&place, "static"}, "it has more than " + std::to_string(staticSets) + " addresses");
}

std::optional<DynamicIpv6> Ipv6::dynamic(std::uint8_t selector) const {
    const auto& setting = selector == 0 ? advertised : lease;
    if (!isDynamic() || !setting)
        return std::nullopt;
    return DynamicIpv6{*setting, static_cast<std::uint8_t>(selector + 1)};
}

bool Ipv6::isDynamic() const {
    return enables != ipmi::lan::ipv6Disabled && (routerControl & ipmi::lan::dynamicRouters) != 0;
}

void Lan::fields(Fields& fields) {
    fields.required("channel", channel);
    fields.required("name", name);
    fields("mac", mac);
    fields.choice("enable", enable, enableWords);
    fields("linkUp", isLinkUp);
    fields("speed", speed);
    fields("fullDuplex", isFullDuplex);
    fields("autoNegotiation", autoNegotiates);
    fields("inVlan", isInVlan);
    fields.number("vlanId", vlanId, 0, lastVlan);
    fields.number("vlanPriority", vlanPriority, 0, 7);
    fields("ipv4", ipv4);
    fields("ipv6", ipv6);
    fields("setInProgress", isSetInProgress);
}

void Lan::check(const Place& place) const {
    if (channel < 1 || channel > ipmi::channel::last)
        fail(Place{&place, "channel"}, std::to_string(channel) + " is not allowed: 1 to 11");
    if (name.empty() || name.size() > longestName)
        fail(Place{&place, "name"}, "it has 1 to 15 characters");
}

std::span<const Command> Lans::commands() {
    static constexpr Command table[] = {
        {ipmi::command::getChannelInfo, 1, getChannelInfo},
        {ipmi::command::setLanConfiguration, 2, setParameters},
        {ipmi::command::getLanConfiguration, 4, getParameters},
    };
    return table;
}

void Lans::check(const Place& place) const {
    for (std::size_t i = 1; i < list.size(); ++i)
        if (list[i].channel <= list[i - 1].channel)
            fail(Place{&place, nullptr, i}, "LANs stand in the order of their channels");
}

Lan* Lans::find(std::uint8_t channel) {
    const auto found = std::ranges::find(list, channel, &Lan::channel);
    return found != list.end() ? &*found : nullptr;
}

const Lan* Lans::find(std::uint8_t channel) const {
    const auto found = std::ranges::find(list, channel, &Lan::channel);
    return found != list.end() ? &*found : nullptr;
}

Lan& Lans::find(std::string_view interfaceName) {
    const auto found = std::ranges::find(list, interfaceName, &Lan::name);
    if (found == list.end())
        throw Error("there is no LAN '" + std::string(interfaceName) + "'");
    return *found;
}

Json Lans::describe(const State&) const {
    Json json = Json::array();
    for (const Lan& lan : list) {
        Json row = Json::object();
        row["channel"] = lan.channel;
        row["name"] = lan.name;
        row["mac"] = lan.mac.toJson();
        row["enable"] = nameOf(enableWords, lan.enable);
        row["speed"] = lan.isLinkUp ? lan.speed : 0;
        row["vlan"] = lan.isInVlan ? lan.vlanId : 0;
        row["source"] = nameOf(sources, lan.ipv4.source);
        row["address"] = lan.ipv4.used().address.toJson();
        row["netmask"] = lan.ipv4.used().netmask.toJson();
        row["gateway"] = lan.ipv4.used().gateway.toJson();
        row["ipv6"] = addressesOf(lan.ipv6);
        row["ipv6Router"] = lan.ipv6.router.toJson();
        json.push_back(std::move(row));
    }
    return json;
}

} // namespace vbmc
