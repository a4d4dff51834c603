#include "smash-db/sync/type_length.h"

#include <cstdio>

namespace smash {
namespace {

using Bytes = std::span<const std::uint8_t>;

void appendUtf8(std::string& text, char32_t character) {
    const auto append = [&](char32_t byte) { text += static_cast<char>(byte); };
    if (character < 0x20 || (character >= 0x7F && character < 0xA0)) {
        append(U'_');
    } else if (character < 0x80) {
        append(character);
    } else if (character < 0x800) {
        append(0xC0 | character >> 6);
        append(0x80 | (character & 0x3F));
    } else if (character < 0x10000) {
        append(0xE0 | character >> 12);
        append(0x80 | (character >> 6 & 0x3F));
        append(0x80 | (character & 0x3F));
    } else {
        append(0xF0 | character >> 18);
        append(0x80 | (character >> 12 & 0x3F));
        append(0x80 | (character >> 6 & 0x3F));
        append(0x80 | (character & 0x3F));
    }
}

std::string decodeLatin1(Bytes bytes) {
    std::string text;
    for (const std::uint8_t byte : bytes) {
        if (byte == 0) // padding
            break;
        appendUtf8(text, byte);
    }
    return text;
}

// Two bytes each, less significant first.
std::string decodeUtf16(Bytes bytes) {
    constexpr char32_t replacement = 0xFFFD;
    std::string text;
    char32_t high = 0; // first half of a pair
    for (std::size_t i = 0; i + 1 < bytes.size(); i += 2) {
        const char32_t unit = bytes[i] | char32_t{bytes[i + 1]} << 8;
        const bool isLow = (unit & 0xFC00) == 0xDC00;
        if (high != 0 && !isLow)
            appendUtf8(text, replacement);
        if (unit == 0)
            return text;
        if ((unit & 0xFC00) == 0xD800) {
            high = unit;
            continue;
        }
        if (isLow)
            appendUtf8(text, high != 0 ? 0x10000 + ((high & 0x3FF) << 10 | (unit & 0x3FF)) : replacement);
        else
            appendUtf8(text, unit);
        high = 0;
    }
    if (high != 0)
        appendUtf8(text, replacement);
    return text;
}

// Two digits a byte, the upper half first.
std::string decodeBcdPlus(Bytes bytes) {
    constexpr char digits[] = "0123456789 -.:,_";
    std::string text;
    for (const std::uint8_t byte : bytes) {
        text += digits[byte >> 4];
        text += digits[byte & 0x0F];
    }
    return text;
}

// Four characters from 20h on in three bytes, the least significant bits first.
std::string decodeSixBit(Bytes bytes) {
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

std::string decodeHexadecimal(Bytes bytes) {
    std::string text;
    char digits[3];
    for (const std::uint8_t byte : bytes) {
        std::snprintf(digits, sizeof digits, "%02X", byte);
        text += digits;
    }
    return text;
}

std::string decode(unsigned code, Bytes bytes, std::string (*first)(Bytes), std::string (*last)(Bytes)) {
    std::string (*const decoders[])(Bytes) = {first, decodeBcdPlus, decodeSixBit, last};
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
