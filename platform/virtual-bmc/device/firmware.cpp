#include "virtual-bmc/device/firmware.h"

#include "firmware/image.h"
#include "ipmi/oem_commands.h"
#include "virtual-bmc/device/chassis.h"
#include "virtual-bmc/device/device.h"
#include "virtual-bmc/state/file_handle.h"
#include "virtual-bmc/state/json_fields.h"
#include "virtual-bmc/state/state.h"

#include <algorithm>
#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

namespace vbmc {
namespace {

namespace completion = ipmi::completion;
namespace oem = ipmi::oem;

// Codes of Finish Firmware Update.
constexpr std::uint8_t notForThisDevice = 0x80;
constexpr std::uint8_t damaged = 0x81;

FileHandle openReceived(const State& state, int flags = 0) {
    return openPrivate(state.bulkFile(Firmware::bulkFile), O_RDWR | O_CREAT | flags);
}

std::uint32_t sizeOf(const FileHandle& file) {
    struct stat status = {};
    return fstat(file.get(), &status) == 0 ? static_cast<std::uint32_t>(status.st_size) : 0;
}

// What was received is only in the file: a block changes no line of the state.
std::uint32_t received(const State& state) {
    return state.get<Firmware>().expected != 0 ? sizeOf(openReceived(state)) : 0;
}

std::uint8_t getUpdate(State& state, ipmi::Reader, ipmi::Writer& answer) {
    const auto& firmware = state.get<Firmware>();
    if (firmware.largestImage == 0)
        return completion::invalidCommand;
    std::int64_t percent = 0;
    if (firmware.isRestarting() && firmware.restartTime != 0)
        percent = 100 - (firmware.restartsAt - Chassis::now()) * 100 / firmware.restartTime;
    answer
        .u8(firmware.isRestarting()  ? oem::firmwareActivating
            : firmware.expected != 0 ? oem::firmwareReceiving
                                     : oem::firmwareIdle)
        .u8(static_cast<std::uint8_t>(std::clamp<std::int64_t>(percent, 0, 100)))
        .u32(firmware.largestImage)
        .u32(received(state));
    return completion::success;
}

// One that was interrupted is given up for the new one.
std::uint8_t begin(State& state, ipmi::Reader request, ipmi::Writer& answer) {
    auto& firmware = state.edit<Firmware>();
    if (firmware.largestImage == 0)
        return completion::invalidCommand;
    const std::uint32_t size = request.u32();
    if (size == 0 || size > firmware.largestImage)
        return completion::outOfSpace;
    openReceived(state, O_TRUNC);
    firmware.expected = size;
    ++firmware.transfer;
    answer.u8(firmware.transfer);
    return completion::success;
}

// Tells why a command of this transfer is refused; success for one that is not.
std::uint8_t refusal(const Firmware& firmware, std::uint8_t transfer) {
    if (firmware.largestImage == 0)
        return completion::invalidCommand;
    if (firmware.expected == 0)
        return completion::notInPresentState;
    return transfer == firmware.transfer ? completion::success : completion::reservationCanceled;
}

// A block may come again, as its answer may have been lost; none may be left out.
std::uint8_t writeBlock(State& state, ipmi::Reader request, ipmi::Writer&) {
    const auto& firmware = state.get<Firmware>();
    if (const std::uint8_t code = refusal(firmware, request.u8()); code != completion::success)
        return code;
    const std::uint32_t offset = request.u32();
    const auto bytes = request.rest();
    if (bytes.empty() || bytes.size() > oem::firmwareBlockSize)
        return completion::requestLengthInvalid;
    const FileHandle file = openReceived(state);
    if (offset > sizeOf(file) || bytes.size() > firmware.expected - offset)
        return completion::parameterOutOfRange;
    return pwrite(file.get(), bytes.data(), bytes.size(), offset) == static_cast<ssize_t>(bytes.size())
               ? completion::success
               : completion::outOfSpace;
}

std::uint8_t finish(State& state, ipmi::Reader request, ipmi::Writer&) {
    if (const std::uint8_t code = refusal(state.get<Firmware>(), request.u8()); code != completion::success)
        return code;
    auto& firmware = state.edit<Firmware>();
    const FileHandle file = openReceived(state);
    if (sizeOf(file) != firmware.expected)
        return completion::notInPresentState;
    firmware::ImageHead head;
    if (firmware::check(file.get(), head) != firmware::Fault::None)
        return damaged;
    const auto& device = state.get<Device>();
    if (head.manufacturerId != device.manufacturerId || head.productId != device.productId)
        return notForThisDevice;
    firmware.expected = 0;
    firmware.restartsAt = Chassis::now() + firmware.restartTime;
    firmware.nextMajor = head.major;
    firmware.nextMinor = head.minor;
    firmware.nextAuxiliary.assign(head.auxiliary.begin(), head.auxiliary.end());
    return completion::success;
}

std::uint8_t cancel(State& state, ipmi::Reader request, ipmi::Writer&) {
    if (const std::uint8_t code = refusal(state.get<Firmware>(), request.u8()); code != completion::success)
        return code;
    state.edit<Firmware>().expected = 0;
    openReceived(state, O_TRUNC);
    return completion::success;
}

} // namespace

std::span<const Command> Firmware::commands() {
    static constexpr Command table[] = {
        {oem::getFirmwareUpdate, 0, getUpdate},
        {oem::beginFirmwareUpdate, 4, begin, administratorLevel},
        {oem::writeFirmwareBlock, 5, writeBlock, administratorLevel},
        {oem::finishFirmwareUpdate, 1, finish, administratorLevel},
        {oem::cancelFirmwareUpdate, 1, cancel, administratorLevel},
    };
    return table;
}

bool Firmware::answersWhileRestarting(ipmi::CommandCode command) {
    return command == ipmi::command::getDeviceId || command == oem::getFirmwareUpdate;
}

void Firmware::settle(State& state, std::int64_t now) {
    if (!state.get<Firmware>().isRestarting() || now < state.get<Firmware>().restartsAt)
        return;
    auto& firmware = state.edit<Firmware>();
    auto& device = state.edit<Device>();
    device.firmwareMajor = firmware.nextMajor;
    device.firmwareMinor = firmware.nextMinor;
    device.auxiliaryRevision = firmware.nextAuxiliary;
    firmware.restartsAt = 0;
    openReceived(state, O_TRUNC);
}

void Firmware::fields(Fields& fields) {
    fields("largestImage", largestImage);
    fields("restartTime", restartTime);
    fields("transfer", transfer);
    fields("expected", expected);
    fields("restartsAt", restartsAt);
    fields.number("nextMajor", nextMajor, 0, 0x7F);
    fields.number("nextMinor", nextMinor, 0, 99);
    fields("nextAuxiliary", nextAuxiliary);
}

Json Firmware::describe(const State& state) const {
    if (largestImage == 0)
        return {};
    Json json = Json::object();
    json["state"] = isRestarting() ? "restarting" : expected != 0 ? "receiving" : "idle";
    json["largestImage"] = largestImage;
    if (expected != 0) {
        json["expected"] = expected;
        json["received"] = received(state);
    }
    return json;
}

} // namespace vbmc
