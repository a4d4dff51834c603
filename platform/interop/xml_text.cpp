#include "interop/xml_text.h"

#include <cstdint>

namespace interop {
namespace {

constexpr char32_t replacement = 0xFFFD;

bool isXmlCharacter(char32_t c) {
    return c == '\t' || c == '\n' || c == '\r' || (c >= 0x20 && c < 0xD800) || (c >= 0xE000 && c <= 0xFFFD) ||
           (c >= 0x10000 && c <= 0x10FFFF);
}

void append(std::string& text, char32_t c) {
    const auto rest = [&](unsigned shift) { text += static_cast<char>(0x80 | (c >> shift & 0x3F)); };
    if (c < 0x80) {
        text += static_cast<char>(c);
    } else if (c < 0x800) {
        text += static_cast<char>(0xC0 | c >> 6);
        rest(0);
    } else if (c < 0x10000) {
        text += static_cast<char>(0xE0 | c >> 12);
        rest(6);
        rest(0);
    } else {
        text += static_cast<char>(0xF0 | c >> 18);
        rest(12);
        rest(6);
        rest(0);
    }
}

struct Character {
    char32_t code = replacement;
    std::size_t size = 1; // bytes
};

// Reads the first character of a text that is not empty.
Character first(std::string_view text) {
    const auto byte = [&](std::size_t i) { return static_cast<std::uint8_t>(text[i]); };
    const std::uint8_t lead = byte(0);
    if (lead < 0x80)
        return {lead, 1};
    const std::size_t size = lead >= 0xC2 && lead < 0xE0 ? 2
                             : (lead & 0xF0) == 0xE0     ? 3
                             : (lead & 0xF8) == 0xF0     ? 4
                                                         : 0;
    if (size == 0 || size > text.size())
        return {};
    char32_t code = lead & (0x7F >> size);
    for (std::size_t i = 1; i < size; ++i) {
        if ((byte(i) & 0xC0) != 0x80)
            return {};
        code = code << 6 | (byte(i) & 0x3F);
    }
    // An encoding longer than the character needs is not valid.
    if ((size == 3 && code < 0x800) || (size == 4 && code < 0x10000))
        return {};
    return {code, size};
}

} // namespace

std::string xmlText(std::string_view text) {
    std::string result;
    result.reserve(text.size());
    while (!text.empty()) {
        const Character c = first(text);
        append(result, isXmlCharacter(c.code) ? c.code : replacement);
        text.remove_prefix(c.size);
    }
    return result;
}

std::string xmlText(char16_t unit) {
    std::string result;
    append(result, isXmlCharacter(unit) ? unit : replacement);
    return result;
}

} // namespace interop
