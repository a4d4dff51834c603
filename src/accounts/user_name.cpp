// Names of the BMC's users as texts of CIM, which are UTF-8.
#include "accounts/user_slots.h"

#include <bit>
#include <iterator>
#include <string_view>

namespace ph {
namespace {

bool isControl(unsigned char c) {
    return c < 0x20 || c == 0x7F;
}

// Overlong forms, surrogates and characters beyond U+10FFFF are not valid.
bool isUtf8(std::string_view text) {
    constexpr char32_t least[] = {0, 0, 0x80, 0x800, 0x10000, 0x110000}; // of characters of so many bytes
    while (!text.empty()) {
        const auto lead = static_cast<unsigned char>(text.front());
        const std::size_t size = lead < 0x80 ? 1 : static_cast<std::size_t>(std::countl_one(lead));
        if ((size == 1 && lead >= 0x80) || size > 4 || size > text.size())
            return false;
        char32_t character = size == 1 ? lead : lead & (0x7FU >> size);
        for (const char next : text.substr(1, size - 1)) {
            if ((next & 0xC0) != 0x80)
                return false;
            character = character << 6 | (next & 0x3FU);
        }
        const bool isSurrogate = (character & ~char32_t{0x7FF}) == 0xD800;
        if (character < least[size] || character >= least[5] || isSurrogate)
            return false;
        text.remove_prefix(size);
    }
    return true;
}

} // namespace

void decodeUserName(const char* bytes, UserName& name) {
    const bool isText = isUtf8(bytes);
    char* end = name;
    for (; *bytes != '\0' && end + 2 < std::end(name); ++bytes) {
        const auto c = static_cast<unsigned char>(*bytes);
        if (isControl(c)) {
            *end++ = '_';
        } else if (isText || c < 0x80) {
            *end++ = *bytes;
        } else {
            *end++ = static_cast<char>(0xC0 | c >> 6);
            *end++ = static_cast<char>(0x80 | (c & 0x3F));
        }
    }
    *end = '\0';
}

} // namespace ph
