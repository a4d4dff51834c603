#include "smash-db/sync/fru_device.h"

#include "ipmi/command.h"

#include <algorithm>
#include <numeric>

namespace smash {

FruDevice::FruDevice(ipmi::Transport& bmc, std::uint8_t id) : bmc_(bmc), id_(id) {
    const auto answer = ipmi::run(bmc_, ipmi::command::getFruInventoryAreaInfo, {id_});
    auto reader = answer.reader();
    size_ = reader.u16();
    addressUnit_ = (reader.u8() & 0x01) != 0 ? 2 : 1;
    answer.verify(reader);
}

std::vector<std::uint8_t> FruDevice::read(std::size_t offset, std::size_t count) {
    if (offset + count > size_)
        throw MalformedFru("it goes beyond the end of the device's " + std::to_string(size_) + " bytes");
    constexpr std::size_t part = 16; // what every BMC returns
    const std::size_t begun = offset % addressUnit_;
    std::vector<std::uint8_t> bytes;
    while (bytes.size() < begun + count) {
        const std::size_t missing = begun + count - bytes.size();
        append(bytes, (offset - begun + bytes.size()) / addressUnit_,
               (std::min(part, missing) + addressUnit_ - 1) / addressUnit_);
    }
    return {bytes.begin() + static_cast<std::ptrdiff_t>(begun),
            bytes.begin() + static_cast<std::ptrdiff_t>(begun + count)};
}

std::vector<std::uint8_t> FruDevice::readChecked(std::size_t offset, std::size_t count) {
    auto bytes = read(offset, count);
    if (std::accumulate(bytes.begin(), bytes.end(), 0U) % 0x100 != 0)
        throw MalformedFru("its checksum is wrong");
    return bytes;
}

std::vector<std::uint8_t> FruDevice::readArea(std::size_t offset) {
    constexpr std::size_t unit = 8;
    const std::size_t length = read(offset, unit)[1] * unit;
    if (length == 0)
        throw MalformedFru("it has no length");
    return readChecked(offset, length);
}

// Address and count are in units of bytes or words.
void FruDevice::append(std::vector<std::uint8_t>& bytes, std::size_t address, std::size_t count) {
    std::uint8_t request[4];
    ipmi::Writer(request)
        .u8(id_)
        .u16(static_cast<std::uint16_t>(address))
        .u8(static_cast<std::uint8_t>(count));
    const auto answer = ipmi::run(bmc_, ipmi::command::readFruData, request);
    auto reader = answer.reader();
    reader.skip(1); // count
    answer.verify(reader);
    const auto data = reader.bytes(std::min(reader.left(), count * addressUnit_));
    if (data.empty() || data.size() % addressUnit_ != 0)
        throw MalformedFru("the BMC does not return all of it");
    bytes.insert(bytes.end(), data.begin(), data.end());
}

} // namespace smash
