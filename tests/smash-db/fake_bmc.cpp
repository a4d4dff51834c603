#include "fake_bmc.h"

#include "ipmi/message.h"

#include <algorithm>
#include <cstring>
#include <numeric>

namespace {

constexpr unsigned at(std::uint8_t netFn, std::uint8_t command) {
    return netFn << 8U | command;
}

Bytes withCode(std::uint8_t code, const Bytes& data = {}) {
    Bytes answer(1 + data.size(), code);
    std::ranges::copy(data, answer.begin() + 1);
    return answer;
}

std::uint8_t low(std::size_t value) {
    return static_cast<std::uint8_t>(value);
}
std::uint8_t high(std::size_t value) {
    return static_cast<std::uint8_t>(value >> 8);
}

} // namespace

std::size_t FakeBmc::exchange(std::uint8_t netFn, std::uint8_t command, std::span<const std::uint8_t> request,
                              std::span<std::uint8_t> answer) {
    if (silentAfter-- <= 0)
        throw ipmi::TransportError("no answer");
    const Bytes bytes = answerTo(netFn, command, request);
    std::ranges::copy(bytes, answer.begin());
    return bytes.size();
}

Bytes FakeBmc::answerTo(std::uint8_t netFn, std::uint8_t command, std::span<const std::uint8_t> request) {
    constexpr std::uint8_t invalidCommand = 0xC1;
    switch (at(netFn, command)) {
    case at(0x06, 0x01): // Get Device ID
        return {0x00, 0x21, 0x85, 0x83, 0x45, 0x02, 0xBF, 0x57, 0x01, 0xF0, 0x34, 0x12};
    case at(0x06, 0x08): // Get Device GUID
        return deviceGuid ? withCode(0, *deviceGuid) : Bytes{invalidCommand};
    case at(0x06, 0x37): // Get System GUID
        return systemGuid ? withCode(0, *systemGuid) : Bytes{invalidCommand};
    case at(0x0A, 0x10): { // Get FRU Inventory Area Info
        const auto fru = frus.find(request[0]);
        if (fru == frus.end())
            return {0xCB};
        return {0x00, low(fru->second.size()), high(fru->second.size()), low(isFruWordAddressed)};
    }
    case at(0x0A, 0x11): // Read FRU Data
        return readFru(request);
    case at(0x0A, 0x20): // Get SDR Repository Info
        return withCode(0, {0x51, low(sdrs.size()), high(sdrs.size()), 0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0x22});
    case at(0x0A, 0x22): // Reserve SDR Repository
        reserved_ = reservation_;
        return withCode(0, {low(reserved_), high(reserved_)});
    case at(0x0A, 0x23):
        return getSdr(request);
    default:
        return {invalidCommand};
    }
}

Bytes FakeBmc::getSdr(std::span<const std::uint8_t> request) {
    if (const std::uint8_t code = onGetSdr(getSdrs_++); code != 0)
        return {code};
    ipmi::Reader reader(request);
    const std::uint16_t reservation = reader.u16();
    const std::size_t id = std::max<std::size_t>(1, reader.u16());
    const std::size_t offset = reader.u8();
    const std::size_t count = reader.u8();
    if (reservation != reservation_ || reserved_ != reservation_)
        return {0xC5};
    if (id > sdrs.size())
        return {0xCB};
    if (count > largestPart)
        return {tooMuchCode};
    Bytes sdr = sdrs[id - 1];
    if (offset > sdr.size())
        return {0xC9};
    const std::size_t next = id < sdrs.size() ? id + 1 : nextOfLast;
    Bytes answer{0x00, low(next), high(next)};
    const auto part = std::span(sdr).subspan(offset).first(std::min(count, sdr.size() - offset));
    answer.insert(answer.end(), part.begin(), part.end());
    return answer;
}

Bytes FakeBmc::readFru(std::span<const std::uint8_t> request) const {
    const std::size_t unit = isFruWordAddressed ? 2 : 1;
    ipmi::Reader reader(request);
    const auto fru = frus.find(reader.u8());
    const std::size_t offset = reader.u16() * unit;
    const std::size_t count = reader.u8() * unit;
    if (fru == frus.end())
        return {0xCB};
    if (offset + count > fru->second.size())
        return {0xC9};
    Bytes answer{0x00, low(count / unit)};
    const auto part = std::span(fru->second).subspan(offset, count);
    answer.insert(answer.end(), part.begin(), part.end());
    return answer;
}

Bytes fruImage(std::initializer_list<const char*> texts, bool isProduct) {
    const auto close = [](Bytes& area) {
        area.back() = low(0x100 - std::accumulate(area.begin(), area.end(), 0U) % 0x100);
    };
    Bytes header{1, 0, 0, low(isProduct ? 0 : 1), low(isProduct ? 1 : 0), 0, 0, 0};
    close(header);
    Bytes area{1, 0, 25};
    if (!isProduct)
        area.insert(area.end(), 3, 0); // manufacturing date
    for (const char* text : texts) {
        area.push_back(low(0xC0 | std::strlen(text)));
        area.insert(area.end(), text, text + std::strlen(text));
    }
    area.push_back(0xC1);
    area.resize((area.size() + 8) / 8 * 8);
    area[1] = low(area.size() / 8);
    close(area);
    header.insert(header.end(), area.begin(), area.end());
    return header;
}
