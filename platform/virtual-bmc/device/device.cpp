#include "virtual-bmc/device/device.h"

#include "virtual-bmc/state/json_fields.h"
#include "virtual-bmc/state/state.h"

#include <algorithm>
#include <cstdio>

namespace vbmc {
namespace {

namespace completion = ipmi::completion;

constexpr std::uint8_t unavailable = 0x80; // with the firmware's major revision
constexpr std::uint8_t ipmiVersion = 0x02; // 2.0, the lower digit first

std::uint8_t bcd(unsigned value) {
    return static_cast<std::uint8_t>(value / 10 << 4 | value % 10);
}

std::uint8_t getDeviceId(State& state, ipmi::Reader, ipmi::Writer& answer) {
    const auto& device = state.get<Device>();
    answer.u8(device.deviceId)
        .u8(device.deviceRevision)
        .u8(static_cast<std::uint8_t>(device.firmwareMajor |
                                      (state.get<Firmware>().isRestarting() ? unavailable : 0)))
        .u8(bcd(device.firmwareMinor))
        .u8(ipmiVersion)
        .u8(device.additionalSupport)
        .u24(device.manufacturerId)
        .u16(device.productId)
        .bytes(device.auxiliaryRevision);
    return completion::success;
}

std::uint8_t getSelfTestResults(State&, ipmi::Reader, ipmi::Writer& answer) {
    constexpr std::uint8_t noError = 0x55;
    answer.u8(noError).u8(0);
    return completion::success;
}

std::uint8_t answerGuid(const std::optional<Guid>& guid, ipmi::Writer& answer) {
    if (!guid)
        return completion::invalidCommand;
    answer.bytes(guid->bytes);
    return completion::success;
}

std::uint8_t getDeviceGuid(State& state, ipmi::Reader, ipmi::Writer& answer) {
    return answerGuid(state.get<Device>().deviceGuid, answer);
}

std::uint8_t getSystemGuid(State& state, ipmi::Reader, ipmi::Writer& answer) {
    return answerGuid(state.get<Device>().systemGuid, answer);
}

constexpr bool isHyphen(std::size_t position) {
    return position == 8 || position == 13 || position == 18 || position == 23;
}

} // namespace

void Guid::fromJson(const Json& json, const Place& place) {
    std::string text;
    readText(json, place, text);
    constexpr std::size_t length = 36;
    bool isGuid = text.size() == length;
    for (std::size_t i = 0; isGuid && i < length; ++i)
        isGuid = (text[i] == '-') == isHyphen(i);
    if (!isGuid)
        fail(place, "'" + text + "' is no GUID of the form 01020304-0506-0708-090a-0b0c0d0e0f10");
    std::erase(text, '-');
    const auto parsed = readHex(text, place);
    std::ranges::reverse_copy(parsed, bytes);
}

Json Guid::toJson() const {
    std::string text;
    for (const char digit : writeHex(std::vector<std::uint8_t>(std::rbegin(bytes), std::rend(bytes)))) {
        if (isHyphen(text.size()))
            text += '-';
        text += digit;
    }
    return text;
}

std::span<const Command> Device::commands() {
    static constexpr Command table[] = {
        {ipmi::command::getDeviceId, 0, getDeviceId},
        {ipmi::command::getSelfTestResults, 0, getSelfTestResults},
        {ipmi::command::getDeviceGuid, 0, getDeviceGuid},
        {ipmi::command::getSystemGuid, 0, getSystemGuid},
    };
    return table;
}

void Device::fields(Fields& fields) {
    fields("deviceId", deviceId);
    fields.number("deviceRevision", deviceRevision, 0, 0x0F);
    fields.number("firmwareMajor", firmwareMajor, 0, 0x7F);
    fields.number("firmwareMinor", firmwareMinor, 0, 99);
    fields("additionalSupport", additionalSupport);
    fields.number("manufacturerId", manufacturerId, 0, 0xFFFFF);
    fields("productId", productId);
    fields("auxiliaryRevision", auxiliaryRevision);
    fields("deviceGuid", deviceGuid);
    fields("systemGuid", systemGuid);
}

void Device::check(const Place& place) const {
    if (!auxiliaryRevision.empty() && auxiliaryRevision.size() != 4)
        fail(Place{&place, "auxiliaryRevision"}, "4 bytes are expected");
}

Json Device::describe(const State&) const {
    char firmware[16];
    std::snprintf(firmware, sizeof firmware, "%d.%02d", firmwareMajor, firmwareMinor);
    Json json = Json::object();
    json["deviceId"] = deviceId;
    json["firmware"] = firmware;
    json["manufacturerId"] = manufacturerId;
    json["productId"] = productId;
    if (deviceGuid)
        json["deviceGuid"] = deviceGuid->toJson();
    if (systemGuid)
        json["systemGuid"] = systemGuid->toJson();
    return json;
}

} // namespace vbmc
