#include "virtual-bmc/device/boot_options.h"

#include "virtual-bmc/device/chassis.h"
#include "virtual-bmc/state/json_fields.h"
#include "virtual-bmc/state/state.h"

#include <algorithm>

namespace vbmc {
namespace {

namespace boot = ipmi::boot;
namespace completion = ipmi::completion;

constexpr std::uint8_t invalidBit = 0x80;

constexpr Choice deviceNames[] = {{1, "network"},       {2, "disk"},      {3, "disk-safe-mode"},
                                  {4, "diagnostics"},   {5, "cd"},        {6, "firmware-setup"},
                                  {7, "remote-floppy"}, {8, "remote-cd"}, {9, "remote-media"},
                                  {11, "remote-disk"},  {15, "floppy"}};

std::uint8_t deviceOf(const std::vector<std::uint8_t>& flags) {
    return (flags[1] & boot::deviceMask) >> boot::deviceShift;
}

const char* textOf(std::uint8_t device) {
    const char* name = nameOf(deviceNames, device);
    return name != nullptr ? name : "firmware's order";
}

std::uint8_t setBootProgress(BootOptions& options, std::uint8_t value) {
    if (value != boot::setComplete && value != boot::inProgress) // nothing is rolled back
        return completion::invalidDataField;
    if (value == boot::inProgress && options.progress == boot::inProgress)
        return boot::alreadyInProgress;
    options.progress = value;
    return completion::success;
}

std::uint8_t setFlags(BootOptions& options, std::span<const std::uint8_t> bytes) {
    const std::vector<std::uint8_t> flags(bytes.begin(), bytes.end());
    const std::uint8_t device = deviceOf(flags);
    if (device != 0 &&
        std::ranges::find(options.devices, device, &BootDevice::selector) == options.devices.end())
        return completion::invalidDataField;
    options.flags = flags;
    options.validSince = Chassis::now();
    return completion::success;
}

constexpr std::size_t sizes[] = {1, 1, 1, 1, 2, boot::flagsSize}; // by parameter

std::uint8_t setBootOptions(State& state, ipmi::Reader request, ipmi::Writer&) {
    const std::uint8_t first = request.u8();
    const std::uint8_t number = first & 0x7F;
    if (number >= std::size(sizes))
        return boot::parameterNotSupported;
    auto& options = state.edit<BootOptions>();
    const auto bit = static_cast<std::uint8_t>(1U << number);
    options.invalid =
        static_cast<std::uint8_t>((options.invalid & ~bit) | ((first & invalidBit) != 0 ? bit : 0));
    if (request.left() == 0) // only the mark is set
        return completion::success;
    if (request.left() != sizes[number])
        return completion::requestLengthInvalid;
    const auto value = request.rest();
    switch (number) {
    case boot::parameter::setInProgress:
        return setBootProgress(options, value[0] & 0x03);
    case boot::parameter::servicePartitionSelector:
        options.servicePartition = value[0];
        break;
    case boot::parameter::servicePartitionScan:
        options.servicePartitionScan = value[0] & 0x03;
        break;
    case boot::parameter::validBitClearing:
        options.validBitClearing = value[0] & 0x1F;
        break;
    case boot::parameter::infoAcknowledge:
        options.acknowledge =
            static_cast<std::uint8_t>((options.acknowledge & ~value[0]) | (value[0] & value[1]));
        break;
    default:
        return setFlags(options, value);
    }
    return completion::success;
}

std::uint8_t getBootOptions(State& state, ipmi::Reader request, ipmi::Writer& answer) {
    const std::uint8_t number = request.u8() & 0x7F;
    if (number >= std::size(sizes))
        return boot::parameterNotSupported;
    const auto& options = state.get<BootOptions>();
    answer.u8(boot::parameterVersion)
        .u8(static_cast<std::uint8_t>(number | ((options.invalid >> number & 1) != 0 ? invalidBit : 0)));
    switch (number) {
    case boot::parameter::setInProgress:
        answer.u8(options.progress);
        break;
    case boot::parameter::servicePartitionSelector:
        answer.u8(options.servicePartition);
        break;
    case boot::parameter::servicePartitionScan:
        answer.u8(options.servicePartitionScan);
        break;
    case boot::parameter::validBitClearing:
        answer.u8(options.validBitClearing);
        break;
    case boot::parameter::infoAcknowledge:
        answer.u8(0).u8(options.acknowledge); // the mask is written only
        break;
    default:
        answer.bytes(options.flags);
    }
    return completion::success;
}

} // namespace

void BootDevice::fromJson(const Json& json, const Place& place) {
    selector = static_cast<std::uint8_t>(readChoice(json, place, deviceNames, false));
}

Json BootDevice::toJson() const {
    return nameOf(deviceNames, selector);
}

std::vector<BootDevice> BootOptions::everyDevice() {
    std::vector<BootDevice> all;
    for (const Choice& device : deviceNames)
        all.push_back({static_cast<std::uint8_t>(device.code)});
    return all;
}

std::span<const Command> BootOptions::commands() {
    static constexpr Command table[] = {
        {ipmi::command::setSystemBootOptions, 1, setBootOptions, 3},
        {ipmi::command::getSystemBootOptions, 3, getBootOptions, 3},
    };
    return table;
}

void BootOptions::fields(Fields& fields) {
    constexpr int tenMinutes = 600'000;
    fields("devices", devices);
    fields.number("validTime", validTime, 0, tenMinutes);
    fields("progress", progress);
    fields("servicePartition", servicePartition);
    fields("servicePartitionScan", servicePartitionScan);
    fields("validBitClearing", validBitClearing);
    fields("acknowledge", acknowledge);
    fields("flags", flags);
    fields("invalid", invalid);
    fields("validSince", validSince);
    fields("bootsSeen", bootsSeen);
    fields("lastBoot", lastBoot);
}

void BootOptions::check(const Place& place) const {
    if (flags.size() != boot::flagsSize)
        fail(Place{&place, "flags"}, "5 bytes are expected");
}

void BootOptions::clearValid(std::uint8_t unless) {
    if ((validBitClearing & unless) == 0)
        flags[0] = static_cast<std::uint8_t>(flags[0] & ~boot::flagsValid);
}

// The system firmware takes the flags and, where they are for one boot, clears the valid bit. Who set them and
// did not restart the host in time has changed their mind.
void BootOptions::settle(State& state, std::int64_t now) {
    Chassis chassis = state.get<Chassis>();
    chassis.settle(now);
    const std::uint32_t boots = chassis.boots - state.get<BootOptions>().bootsSeen;
    if (boots > 0) {
        auto& options = state.edit<BootOptions>();
        options.bootsSeen = chassis.boots;
        const bool isOnce = (options.flags[0] & boot::persistent) == 0;
        options.lastBoot = options.isValid() && (boots == 1 || !isOnce) ? deviceOf(options.flags) : 0;
        if (options.isValid())
            options.acknowledge &= 0xFE; // by the system firmware
        if (isOnce)
            options.clearValid(0);
    }
    const auto& options = state.get<BootOptions>();
    if (!options.isValid() || (options.validBitClearing & boot::keepWithoutCommand) != 0)
        return;
    if (options.validSince == 0) // those of a model hold from the start
        state.edit<BootOptions>().validSince = now;
    else if (options.validSince + options.validTime <= now)
        state.edit<BootOptions>().clearValid(boot::keepWithoutCommand);
}

Json BootOptions::describe(const State&) const {
    Json json = Json::object();
    json["valid"] = isValid();
    json["persistent"] = (flags[0] & boot::persistent) != 0;
    json["device"] = textOf(deviceOf(flags));
    json["flags"] = writeHex(flags);
    json["inProgress"] = progress == boot::inProgress;
    json["validBitClearing"] = validBitClearing;
    json["acknowledge"] = acknowledge;
    json["lastBoot"] = textOf(lastBoot);
    return json;
}

} // namespace vbmc
