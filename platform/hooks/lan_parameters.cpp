#include "hooks/lan_parameters.h"

#include <stdexcept>
#include <string>

namespace hooks {
namespace {

namespace completion = ipmi::completion;

[[noreturn]] void refuseSet(std::uint8_t parameter, std::uint8_t asked, std::uint8_t answered) {
    throw std::runtime_error("the BMC answered set " + std::to_string(asked) + " of LAN parameter " +
                             std::to_string(parameter) + " with set " + std::to_string(answered));
}

template <class Read>
bool ifPresent(std::span<std::uint8_t> bytes, Read read) {
    try {
        read();
        return true;
    } catch (const ipmi::CompletionCodeError& error) {
        if (error.code != ipmi::lan::parameterNotSupported && !completion::meansAbsent(error.code))
            throw;
        std::ranges::fill(bytes, std::uint8_t{0});
        return false;
    }
}

} // namespace

void LanParameters::get(std::uint8_t parameter, std::uint8_t set, std::span<std::uint8_t> bytes) const {
    const auto answer = ipmi::run(bmc_, ipmi::command::getLanConfiguration, {channel_, parameter, set, 0});
    auto reader = answer.reader();
    reader.skip(1); // parameter revision
    const auto value = reader.bytes(bytes.size());
    answer.verify(reader);
    std::ranges::copy(value, bytes.begin());
}

void LanParameters::read(std::uint8_t parameter, std::span<std::uint8_t> bytes) const {
    get(parameter, 0, bytes);
}

void LanParameters::readSet(std::uint8_t parameter, std::uint8_t set, std::span<std::uint8_t> bytes) const {
    get(parameter, set, bytes);
    if (bytes[0] != set)
        refuseSet(parameter, set, bytes[0]);
}

bool LanParameters::readIfPresent(std::uint8_t parameter, std::span<std::uint8_t> bytes) const {
    return ifPresent(bytes, [&] { read(parameter, bytes); });
}

bool LanParameters::readSetIfPresent(std::uint8_t parameter, std::uint8_t set,
                                     std::span<std::uint8_t> bytes) const {
    const bool isPresent = ifPresent(bytes, [&] { get(parameter, set, bytes); });
    if (isPresent && bytes[0] == set)
        return true;
    if (isPresent && bytes[0] != 0)
        refuseSet(parameter, set, bytes[0]);
    std::ranges::fill(bytes, std::uint8_t{0});
    return false;
}

std::uint8_t LanParameters::readByte(std::uint8_t parameter) const {
    std::uint8_t value = 0;
    read(parameter, std::span(&value, 1));
    return value;
}

void LanParameters::write(std::uint8_t parameter, std::span<const std::uint8_t> bytes) const {
    std::array<std::uint8_t, 32> storage;
    ipmi::Writer request(storage);
    request.u8(channel_).u8(parameter).bytes(bytes);
    ipmi::run(bmc_, ipmi::command::setLanConfiguration, request.written());
}

void LanParameters::writeByte(std::uint8_t parameter, std::uint8_t value) const {
    write(parameter, std::span<const std::uint8_t>(&value, 1));
}

} // namespace hooks
