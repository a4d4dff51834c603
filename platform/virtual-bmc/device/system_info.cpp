#include "virtual-bmc/device/system_info.h"

#include "virtual-bmc/state/json_fields.h"
#include "virtual-bmc/state/state.h"

#include <algorithm>

namespace vbmc {
namespace {

namespace completion = ipmi::completion;

constexpr std::uint8_t notSupported = 0x80; // of these commands
constexpr std::size_t blockSize = 16;
constexpr std::size_t blockHeadSize = 2; // of the first block: encoding and length
constexpr std::size_t mostBytes = 0xFF;

// A text parameter (IPMI 2.0 table 22-16c).
struct Parameter {
    std::uint8_t number;
    const char* field;
    std::string SystemInfo::*text;
    bool needsRunningHost = false;
};

constexpr Parameter parameters[] = {
    {1, "firmwareVersion", &SystemInfo::firmwareVersion}, {2, "systemName", &SystemInfo::systemName},
    {3, "primaryOsName", &SystemInfo::primaryOsName},     {4, "osName", &SystemInfo::osName, true},
    {5, "osVersion", &SystemInfo::osVersion, true},
};

const Parameter* find(std::uint8_t number) {
    const auto* const found = std::ranges::find(parameters, number, &Parameter::number);
    return found != std::end(parameters) ? found : nullptr;
}

bool hasAny(const SystemInfo& info) {
    return std::ranges::any_of(parameters, [&](const Parameter& each) { return !(info.*each.text).empty(); });
}

// Returns what the parameter reads as now.
std::string current(const State& state, const Parameter& parameter) {
    const bool isThere = !parameter.needsRunningHost || state.get<Chassis>().isOnNow();
    return isThere ? state.get<SystemInfo>().*parameter.text : std::string();
}

// Returns where a block's part of the text begins.
std::size_t offsetOf(std::size_t block) {
    return block == 0 ? 0 : block * blockSize - blockHeadSize;
}

std::uint8_t getSystemInfo(State& state, ipmi::Reader request, ipmi::Writer& answer) {
    constexpr std::uint8_t revision = 0x11;
    constexpr std::uint8_t revisionOnly = 0x80;
    constexpr std::uint8_t ascii = 0;
    const bool wantsText = (request.u8() & revisionOnly) == 0;
    const Parameter* const parameter = find(request.u8());
    const std::uint8_t block = request.u8();
    const auto& info = state.get<SystemInfo>();
    if (!hasAny(info))
        return completion::invalidCommand;
    if (parameter == nullptr || (info.*parameter->text).empty())
        return notSupported;
    answer.u8(revision);
    if (!wantsText)
        return completion::success;
    const std::string text = current(state, *parameter);
    const std::size_t offset = offsetOf(block);
    if (block > 0 && offset >= text.size())
        return completion::parameterOutOfRange;
    answer.u8(block);
    if (block == 0)
        answer.u8(ascii).u8(static_cast<std::uint8_t>(text.size()));
    const std::size_t room = blockSize - (block == 0 ? blockHeadSize : 0);
    const std::string part = text.substr(offset, room);
    answer.bytes({reinterpret_cast<const std::uint8_t*>(part.data()), part.size()})
        .fill(room - part.size(), 0);
    return completion::success;
}

// The first block makes room for the text, the others fill it.
std::uint8_t setSystemInfo(State& state, ipmi::Reader request, ipmi::Writer&) {
    const Parameter* const parameter = find(request.u8());
    const std::uint8_t block = request.u8();
    if (!hasAny(state.get<SystemInfo>()))
        return completion::invalidCommand;
    if (parameter == nullptr)
        return notSupported;
    std::string& text = state.edit<SystemInfo>().*parameter->text;
    if (block == 0) {
        request.skip(1); // encoding: what is not ASCII is refused
        text.assign(request.u8(), ' ');
    }
    const std::size_t offset = offsetOf(block);
    if (offset > text.size())
        return completion::parameterOutOfRange;
    const auto part = request.bytes(std::min(request.left(), text.size() - offset));
    if (std::ranges::any_of(part, [](std::uint8_t byte) { return byte < 0x20 || byte > 0x7E; }))
        return completion::invalidDataField;
    std::ranges::copy(part, text.begin() + static_cast<std::ptrdiff_t>(offset));
    return completion::success;
}

} // namespace

std::span<const Command> SystemInfo::commands() {
    static constexpr Command table[] = {
        {ipmi::command::getSystemInfo, 4, getSystemInfo},
        {ipmi::command::setSystemInfo, 3, setSystemInfo},
    };
    return table;
}

void SystemInfo::fields(Fields& fields) {
    for (const Parameter& parameter : parameters)
        fields(parameter.field, this->*parameter.text);
}

void SystemInfo::check(const Place& place) const {
    for (const Parameter& parameter : parameters)
        if ((this->*parameter.text).size() > mostBytes)
            fail(Place{&place, parameter.field}, "at most 255 bytes are allowed");
}

Json SystemInfo::describe(const State& state) const {
    Json json = hasAny(*this) ? Json::object() : Json();
    for (const Parameter& parameter : parameters)
        if (!(this->*parameter.text).empty())
            json[parameter.field] = current(state, parameter);
    return json;
}

} // namespace vbmc
