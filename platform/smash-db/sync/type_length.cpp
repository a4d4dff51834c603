#include "smash-db/sync/type_length.h"

#include "ipmi/text.h"

#include <cstdio>

namespace smash {
namespace {

using ipmi::decodeLatin1;
using ipmi::decodeUtf16;

// Two digits a byte, the upper half first.
std::string decodeBcdPlus(std::span<const std::uint8_t> bytes) {
    constexpr char digits[] = "0123456789 -.:,_";
    std::string text;
    for (const std::uint8_t byte : bytes) {
        text += digits[byte >> 4];
        text += digits[byte & 0x0F];
    }
    return text;
}

// Four characters from 20h on in three bytes, the least significant bits first.
std::string decodeSixBit(std::span<const std::uint8_t> bytes) {
    std::string text;
    unsigned bits = 0;
    unsigned count = 0;
    for (const std::uint8_t byte : bytes) {
        bits |= unsigned{byte} << count;
        for (count += 8; count >= 6; count -= 6, bits >>= 6)
            text += static_cast<char>(0x20 + (bits & 0x3F));
    }
    return text;
}

std::string decodeHexadecimal(std::span<const std::uint8_t> bytes) {
    std::string text;
    char digits[3];
    for (const std::uint8_t byte : bytes) {
        std::snprintf(digits, sizeof digits, "%02X", byte);
        text += digits;
    }
    return text;
}

std::string decode(unsigned code, std::span<const std::uint8_t> bytes,
                   std::string (*first)(std::span<const std::uint8_t>),
                   std::string (*last)(std::span<const std::uint8_t>)) {
    std::string (*const decoders[])(std::span<const std::uint8_t>) = {first, decodeBcdPlus, decodeSixBit,
                                                                      last};
    std::string text = decoders[code](bytes);
    text.erase(text.find_last_not_of(' ') + 1);
    return text;
}

} // namespace

std::string readIdString(ipmi::Reader& record) {
    const std::uint8_t typeLength = record.u8();
    return decode(typeLength >> 6, record.bytes(typeLength & 0x1F), decodeUtf16, decodeLatin1);
}

std::optional<std::string> readFruField(ipmi::Reader& area, std::uint8_t languageCode) {
    constexpr std::uint8_t endMark = 0xC1;
    constexpr std::uint8_t english = 25; // and 0
    const std::uint8_t typeLength = area.u8();
    if (!area.ok() || typeLength == endMark)
        return std::nullopt;
    const bool isEnglish = languageCode == 0 || languageCode == english;
    return decode(typeLength >> 6, area.bytes(typeLength & 0x3F), decodeHexadecimal,
                  isEnglish ? decodeLatin1 : decodeUtf16);
}

} // namespace smash
