#include "virtual-bmc/pef/alert_destinations.h"

#include "ipmi/lan_configuration.h"
#include "virtual-bmc/lan/lans.h"
#include "virtual-bmc/pef/mail.h"
#include "virtual-bmc/state/json_fields.h"
#include "virtual-bmc/state/state.h"

#include <algorithm>

namespace vbmc {
namespace {

namespace completion = ipmi::completion;
namespace lan = ipmi::lan;

constexpr std::uint8_t selectorMask = 0x0F;
constexpr std::uint8_t acknowledged = 0x80;
constexpr std::uint8_t mostRetries = 7;

constexpr Choice kindNames[] = {{lan::petTrap, "trap"}, {lan::email, "e-mail"}, {lan::listener, "listener"}};

std::uint8_t getCount(const State&, const Lan&, LanSelector, ipmi::Writer& answer) {
    answer.u8(AlertDestinations::slots);
    return completion::success;
}

std::uint8_t getType(const State& state, const Lan& lan, LanSelector selector, ipmi::Writer& answer) {
    if (selector.set > AlertDestinations::slots)
        return completion::parameterOutOfRange;
    const auto destination = state.get<AlertDestinations>().get(lan.channel, selector.set);
    answer.u8(selector.set)
        .u8(static_cast<std::uint8_t>(destination.kind | (destination.isAcknowledged ? acknowledged : 0)))
        .u8(destination.timeout)
        .u8(destination.retries);
    return completion::success;
}

std::uint8_t setType(State& state, Lan& lan, ipmi::Reader request) {
    auto& destination = state.edit<AlertDestinations>().edit(lan.channel, request.u8() & selectorMask);
    const std::uint8_t type = request.u8();
    destination.kind = type & lan::destinationTypeMask;
    destination.isAcknowledged = (type & acknowledged) != 0;
    destination.timeout = request.u8();
    destination.retries = request.u8() & mostRetries;
    return completion::success;
}

std::uint8_t getAddress(const State& state, const Lan& lan, LanSelector selector, ipmi::Writer& answer) {
    if (selector.set > AlertDestinations::slots)
        return completion::parameterOutOfRange;
    const auto destination = state.get<AlertDestinations>().get(lan.channel, selector.set);
    answer.u8(selector.set);
    if (destination.isIpv6)
        answer.u8(lan::destinationIpv6 << 4).bytes(destination.ipv6.bytes);
    else
        answer.u8(lan::destinationIpv4 << 4)
            .u8(destination.usesBackupGateway)
            .bytes(destination.ipv4.bytes)
            .bytes(destination.mac.bytes);
    return completion::success;
}

std::uint8_t setAddress(State& state, Lan& lan, ipmi::Reader request) {
    auto& destination = state.edit<AlertDestinations>().edit(lan.channel, request.u8() & selectorMask);
    const std::uint8_t format = request.u8() >> 4;
    if (format > lan::destinationIpv6)
        return completion::invalidDataField;
    const auto take = [&](auto& address) {
        std::ranges::copy(request.bytes(address.bytes.size()), address.bytes.begin());
    };
    destination.isIpv6 = format == lan::destinationIpv6;
    destination.usesBackupGateway = false;
    destination.ipv4 = {};
    destination.mac = {};
    destination.ipv6 = {};
    if (destination.isIpv6) {
        take(destination.ipv6);
    } else {
        destination.usesBackupGateway = (request.u8() & 1) != 0;
        take(destination.ipv4);
        take(destination.mac);
    }
    return request.ok() ? completion::success : completion::requestLengthInvalid;
}

auto isAt(std::uint8_t channel, std::uint8_t selector) {
    return [=](const AlertDestination& each) { return each.channel == channel && each.selector == selector; };
}

} // namespace

void AlertDestination::fields(Fields& fields) {
    fields.required("channel", channel);
    fields.required("selector", selector);
    fields.choice("kind", kind, kindNames, true);
    fields("acknowledged", isAcknowledged);
    fields("timeout", timeout);
    fields.number("retries", retries, 0, mostRetries);
    fields("isIpv6", isIpv6);
    fields("backupGateway", usesBackupGateway);
    fields("ipv4", ipv4);
    fields("mac", mac);
    fields("ipv6", ipv6);
    fields("user", userId);
    fields("subject", subject);
    fields("message", message);
}

void AlertDestination::check(const Place& place) const {
    if (selector > AlertDestinations::slots)
        fail(Place{&place, "selector"}, std::to_string(selector) + " is not allowed: 0 to 15");
    if (kind > lan::destinationTypeMask)
        fail(Place{&place, "kind"}, std::to_string(kind) + " is not allowed: 0 to 7");
    checkMailText(Place{&place, "subject"}, subject, ipmi::oem::mailSubject);
    checkMailText(Place{&place, "message"}, message, ipmi::oem::mailMessage);
}

std::span<const LanParameter> AlertDestinations::lanParameters() {
    static constexpr LanParameter table[] = {
        {lan::parameter::destinationCount, 0, getCount, nullptr},
        {lan::parameter::destinationType, 4, getType, setType},
        {lan::parameter::destinationAddress, 13, getAddress, setAddress},
    };
    return table;
}

void AlertDestinations::check(const Place& place) const {
    for (std::size_t i = 0; i < list.size(); ++i)
        if (std::ranges::count_if(list, isAt(list[i].channel, list[i].selector)) > 1)
            fail(Place{&place, nullptr, i}, "this destination stands there twice");
}

AlertDestination AlertDestinations::get(std::uint8_t channel, std::uint8_t selector) const {
    const auto found = std::ranges::find_if(list, isAt(channel, selector));
    if (found != list.end())
        return *found;
    AlertDestination none;
    none.channel = channel;
    none.selector = selector;
    return none;
}

AlertDestination& AlertDestinations::edit(std::uint8_t channel, std::uint8_t selector) {
    const auto found = std::ranges::find_if(list, isAt(channel, selector));
    return found != list.end() ? *found : list.emplace_back(get(channel, selector));
}

Json AlertDestinations::describe(const State&) const {
    Json json = Json::array();
    for (const AlertDestination& destination : list) {
        const char* const kind = destinationKindName(destination.kind);
        Json row = Json::object();
        row["channel"] = destination.channel;
        row["selector"] = destination.selector;
        row["kind"] = kind != nullptr ? Json(kind) : Json(destination.kind);
        row["address"] = destination.isIpv6 ? destination.ipv6.toJson() : destination.ipv4.toJson();
        row["user"] = destination.userId;
        json.push_back(std::move(row));
    }
    return json;
}

const char* destinationKindName(std::uint8_t kind) {
    return nameOf(kindNames, kind);
}

} // namespace vbmc
