#include "hooks/lan_parameters.h"

namespace hooks {
namespace {

namespace completion = ipmi::completion;

// BMCs differ in how they refuse a parameter or a set that they do not have.
bool meansAbsent(std::uint8_t code) {
    return code == ipmi::lan::parameterNotSupported || code == completion::parameterOutOfRange ||
           code == completion::notPresent || code == completion::invalidDataField;
}

bool isLan(ipmi::Transport& bmc, std::uint8_t channel) {
    const auto answer =
        ipmi::ask(bmc, ipmi::netFn::app, ipmi::channel::getInfo, std::span<const std::uint8_t>(&channel, 1));
    auto reader = answer.reader();
    reader.skip(1); // the channel again
    const std::uint8_t medium = reader.u8() & 0x7F;
    return answer.code() == completion::success && reader.ok() && medium == ipmi::channel::mediumLan;
}

} // namespace

void LanParameters::read(std::uint8_t parameter, std::span<std::uint8_t> bytes, std::uint8_t set) const {
    const auto answer =
        ipmi::run(bmc_, ipmi::netFn::transport, ipmi::lan::getParameters, {channel_, parameter, set, 0});
    auto reader = answer.reader();
    reader.skip(1); // parameter revision
    const auto value = reader.bytes(bytes.size());
    answer.verify(reader);
    std::ranges::copy(value, bytes.begin());
}

bool LanParameters::readIfPresent(std::uint8_t parameter, std::span<std::uint8_t> bytes,
                                  std::uint8_t set) const {
    try {
        read(parameter, bytes, set);
        return true;
    } catch (const ipmi::CompletionCodeError& error) {
        if (!meansAbsent(error.code))
            throw;
        std::ranges::fill(bytes, std::uint8_t{0});
        return false;
    }
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
    ipmi::run(bmc_, ipmi::netFn::transport, ipmi::lan::setParameters, request.written());
}

void LanParameters::writeByte(std::uint8_t parameter, std::uint8_t value) const {
    write(parameter, std::span<const std::uint8_t>(&value, 1));
}

std::vector<std::uint8_t> lanChannels(ipmi::Transport& bmc, std::size_t limit) {
    std::vector<std::uint8_t> channels;
    for (std::uint8_t channel = 1; channel <= ipmi::channel::last && channels.size() < limit; ++channel)
        if (isLan(bmc, channel))
            channels.push_back(channel);
    return channels;
}

} // namespace hooks
