#include "ipmi/text.h"

namespace ipmi {
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

constexpr char32_t replacement = 0xFFFD;

// Takes one character of UTF-8 off. A byte that begins none is taken as U+FFFD.
char32_t takeCharacter(Bytes& bytes) {
    const std::uint8_t first = bytes[0];
    const std::size_t length = first < 0x80 ? 1 : first < 0xE0 ? 2 : first < 0xF0 ? 3 : 4;
    constexpr char32_t least[] = {0, 0, 0x80, 0x800, 0x10000};
    const bool isLead = first < 0x80 || (first >= 0xC2 && first < 0xF5);
    char32_t character = length == 1 ? first : first & (0x7F >> length);
    bool isWhole = isLead && length <= bytes.size();
    for (std::size_t i = 1; isWhole && i < length; ++i) {
        isWhole = (bytes[i] & 0xC0) == 0x80;
        character = character << 6 | (bytes[i] & 0x3F);
    }
    isWhole = isWhole && character >= least[length] && character <= 0x10FFFF &&
              (character < 0xD800 || character > 0xDFFF);
    bytes = bytes.subspan(isWhole ? length : 1);
    return isWhole ? character : replacement;
}

} // namespace

std::string decodeLatin1(Bytes bytes) {
    std::string text;
    for (const std::uint8_t byte : bytes) {
        if (byte == 0) // padding
            break;
        appendUtf8(text, byte);
    }
    return text;
}

std::string decodeUtf16(Bytes bytes) {
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

std::string decodeUtf8(Bytes bytes) {
    std::string text;
    while (!bytes.empty() && bytes[0] != 0)
        appendUtf8(text, takeCharacter(bytes));
    return text;
}

} // namespace ipmi
