#include "virtual-bmc/lan/sol.h"

#include "ipmi/lan_configuration.h"
#include "ipmi/sol_configuration.h"
#include "virtual-bmc/state/json_fields.h"
#include "virtual-bmc/state/set_in_progress.h"
#include "virtual-bmc/state/state.h"

#include <algorithm>
#include <string>

namespace vbmc {
namespace {

namespace completion = ipmi::completion;
namespace sol = ipmi::sol;

constexpr Choice sessionPrivileges[] = {{2, "user"}, {3, "operator"}, {4, "administrator"}, {5, "oem"}};
constexpr Choice bitRates[] = {{sol::bitRateOfSerial, "serial"}, {sol::bitRate9600, "9600"},
                               {sol::bitRate19200, "19200"},     {sol::bitRate38400, "38400"},
                               {sol::bitRate57600, "57600"},     {sol::bitRate115200, "115200"}};

// A parameter of a channel (table 26-5): a row of a table. One without `set` is read-only.
struct SolParameter {
    std::uint8_t number;
    std::size_t leastRequest; // bytes for `set`; a shorter one is answered with C7h
    void (*get)(const SolChannel& channel, ipmi::Writer& answer);
    std::uint8_t (*set)(SolChannel& channel, ipmi::Reader request);
};

void getAuthentication(const SolChannel& channel, ipmi::Writer& answer) {
    answer.u8(static_cast<std::uint8_t>(channel.privilege |
                                        (channel.forcesEncryption ? sol::forcesEncryption : 0) |
                                        (channel.forcesAuthentication ? sol::forcesAuthentication : 0)));
}

std::uint8_t setAuthentication(SolChannel& channel, ipmi::Reader request) {
    const std::uint8_t bits = request.u8();
    const std::uint8_t privilege = bits & sol::privilegeMask;
    if (nameOf(sessionPrivileges, privilege) == nullptr)
        return completion::invalidDataField;
    channel.privilege = privilege;
    channel.forcesEncryption = (bits & sol::forcesEncryption) != 0;
    channel.forcesAuthentication = (bits & sol::forcesAuthentication) != 0;
    return completion::success;
}

std::uint8_t setAccumulation(SolChannel& channel, ipmi::Reader request) {
    const std::uint8_t interval = request.u8();
    if (interval == 0) // reserved
        return completion::invalidDataField;
    channel.accumulateInterval = interval;
    channel.sendThreshold = request.u8();
    return completion::success;
}

std::uint8_t setRetry(SolChannel& channel, ipmi::Reader request) {
    channel.retryCount = request.u8() & 0x07;
    channel.retryInterval = request.u8();
    return completion::success;
}

template <auto Member>
std::uint8_t setBitRate(SolChannel& channel, ipmi::Reader request) {
    const std::uint8_t code = request.u8() & sol::bitRateMask;
    if (nameOf(bitRates, code) == nullptr)
        return completion::invalidDataField;
    channel.*Member = code;
    return completion::success;
}

std::uint8_t setPort(SolChannel& channel, ipmi::Reader request) {
    const std::uint16_t port = request.u16();
    if (port == 0)
        return completion::invalidDataField;
    channel.port = port;
    return completion::success;
}

constexpr SolParameter solParameters[] = {
    {sol::parameter::setInProgress, 1,
     [](const SolChannel& channel, ipmi::Writer& answer) {
         answer.u8(channel.isSetInProgress ? ipmi::progress::started : ipmi::progress::complete);
     },
     [](SolChannel& channel, ipmi::Reader request) {
         return setProgress(channel.isSetInProgress, request.u8());
     }},
    {sol::parameter::enable, 1,
     [](const SolChannel& channel, ipmi::Writer& answer) { answer.u8(channel.isEnabled); },
     [](SolChannel& channel, ipmi::Reader request) {
         channel.isEnabled = (request.u8() & sol::isEnabled) != 0;
         return completion::success;
     }},
    {sol::parameter::authentication, 1, getAuthentication, setAuthentication},
    {sol::parameter::accumulation, 2,
     [](const SolChannel& channel, ipmi::Writer& answer) {
         answer.u8(channel.accumulateInterval).u8(channel.sendThreshold);
     },
     setAccumulation},
    {sol::parameter::retry, 2,
     [](const SolChannel& channel, ipmi::Writer& answer) {
         answer.u8(channel.retryCount).u8(channel.retryInterval);
     },
     setRetry},
    {sol::parameter::nonVolatileBitRate, 1,
     [](const SolChannel& channel, ipmi::Writer& answer) { answer.u8(channel.nonVolatileBitRate); },
     setBitRate<&SolChannel::nonVolatileBitRate>},
    {sol::parameter::volatileBitRate, 1,
     [](const SolChannel& channel, ipmi::Writer& answer) { answer.u8(channel.bitRate); },
     setBitRate<&SolChannel::bitRate>},
    {sol::parameter::payloadChannel, 1,
     [](const SolChannel& channel, ipmi::Writer& answer) { answer.u8(channel.channel); }, nullptr},
    {sol::parameter::payloadPort, 2,
     [](const SolChannel& channel, ipmi::Writer& answer) { answer.u16(channel.port); }, setPort},
};

const SolParameter* findSolParameter(std::uint8_t number) {
    const auto* const found = std::ranges::find(solParameters, number, &SolParameter::number);
    return found != std::end(solParameters) ? found : nullptr;
}

std::uint8_t getSolParameters(State& state, ipmi::Reader request, ipmi::Writer& answer) {
    constexpr std::uint8_t revisionOnly = 0x80;
    const std::uint8_t channel = request.u8();
    const SolParameter* const parameter = findSolParameter(request.u8());
    const auto& sol = state.get<Sol>();
    const SolChannel* const found = sol.find(channel & 0x0F);
    if (sol.channels.empty())
        return completion::invalidCommand;
    if (found == nullptr)
        return completion::invalidDataField;
    if (parameter == nullptr)
        return sol::parameterNotSupported;
    answer.u8(sol::parameterRevision);
    if ((channel & revisionOnly) == 0)
        parameter->get(*found, answer);
    return completion::success;
}

std::uint8_t setSolParameters(State& state, ipmi::Reader request, ipmi::Writer&) {
    const std::uint8_t channel = request.u8() & 0x0F;
    const SolParameter* const parameter = findSolParameter(request.u8());
    auto& channels = state.edit<Sol>().channels;
    const auto found = std::ranges::find(channels, channel, &SolChannel::channel);
    if (channels.empty())
        return completion::invalidCommand;
    if (found == channels.end())
        return completion::invalidDataField;
    if (parameter == nullptr)
        return sol::parameterNotSupported;
    if (parameter->set == nullptr)
        return sol::parameterIsReadOnly;
    if (request.left() < parameter->leastRequest)
        return completion::requestLengthInvalid;
    return parameter->set(*found, request);
}

std::uint8_t getActivation(State& state, ipmi::Reader request, ipmi::Writer& answer) {
    const auto& sol = state.get<Sol>();
    if (sol.channels.empty())
        return completion::invalidCommand;
    if (request.u8() != sol::payloadType)
        return completion::invalidDataField;
    std::uint16_t active = 0;
    for (const SolInstance& each : sol.active)
        active = static_cast<std::uint16_t>(active | 1U << (each.instance - 1));
    answer.u8(sol.capacity).u16(active);
    return completion::success;
}

std::uint8_t getInstance(State& state, ipmi::Reader request, ipmi::Writer& answer) {
    constexpr std::size_t reserved = 7; // of what is told of SOL
    const auto& sol = state.get<Sol>();
    if (sol.channels.empty())
        return completion::invalidCommand;
    if (request.u8() != sol::payloadType)
        return completion::invalidDataField;
    const std::uint8_t number = request.u8();
    if (number == 0 || number > sol.capacity)
        return completion::parameterOutOfRange;
    const SolInstance* const instance = sol.findInstance(number);
    answer.u32(instance != nullptr ? instance->session : 0);
    answer.u8(instance != nullptr ? instance->serialPort : 0).fill(reserved, 0);
    return completion::success;
}

} // namespace

void SolChannel::fields(Fields& fields) {
    fields.required("channel", channel);
    fields("enabled", isEnabled);
    fields.choice("privilege", privilege, sessionPrivileges);
    fields("encryption", forcesEncryption);
    fields("authentication", forcesAuthentication);
    fields.number("accumulateInterval", accumulateInterval, 1, 0xFF);
    fields("sendThreshold", sendThreshold);
    fields.number("retryCount", retryCount, 0, 7);
    fields("retryInterval", retryInterval);
    fields.choice("nonVolatileBitRate", nonVolatileBitRate, bitRates);
    fields.choice("bitRate", bitRate, bitRates);
    fields.number("port", port, 1, 0xFFFF);
    fields("setInProgress", isSetInProgress);
}

void SolInstance::fields(Fields& fields) {
    fields.number("instance", instance, 1, sol::mostInstances);
    fields.required("session", session);
    fields("serialPort", serialPort);
}

void Sol::fields(Fields& fields) {
    fields("channels", channels);
    fields.number("capacity", capacity, 1, sol::mostInstances);
    fields("active", active);
}

std::span<const Command> Sol::commands() {
    static constexpr Command table[] = {
        {ipmi::command::setSolConfiguration, 2, setSolParameters, administratorLevel},
        {ipmi::command::getSolConfiguration, 4, getSolParameters, userLevel},
        {ipmi::command::getPayloadActivationStatus, 1, getActivation, userLevel},
        {ipmi::command::getPayloadInstanceInfo, 2, getInstance, userLevel},
    };
    return table;
}

void Sol::check(const Place& place) const {
    for (const SolChannel& each : channels)
        if (each.channel < 1 || each.channel > ipmi::channel::last || find(each.channel) != &each)
            fail(Place{&place, "channels"}, "channels are 1 to 11, and each stands there once");
    for (const SolInstance& each : active)
        if (each.instance > capacity || findInstance(each.instance) != &each)
            fail(Place{&place, "active"}, "instances are 1 to the capacity, and each stands there once");
}

Json Sol::describe(const State&) const {
    if (channels.empty())
        return {};
    Json rows = Json::array();
    for (const SolChannel& channel : channels) {
        Json row = Json::object();
        row["channel"] = channel.channel;
        row["enabled"] = channel.isEnabled;
        row["privilege"] = nameOf(sessionPrivileges, channel.privilege);
        row["encryption"] = channel.forcesEncryption;
        row["authentication"] = channel.forcesAuthentication;
        row["bitRate"] = nameOf(bitRates, channel.bitRate);
        row["port"] = channel.port;
        row["active"] = active.size();
        row["capacity"] = capacity;
        rows.push_back(std::move(row));
    }
    return rows;
}

const SolChannel* Sol::find(std::uint8_t channel) const {
    const auto found = std::ranges::find(channels, channel, &SolChannel::channel);
    return found != channels.end() ? &*found : nullptr;
}

const SolInstance* Sol::findInstance(std::uint8_t instance) const {
    const auto found = std::ranges::find(active, instance, &SolInstance::instance);
    return found != active.end() ? &*found : nullptr;
}

} // namespace vbmc
