// Text that XML 1.0 can hold.
#pragma once

#include <string>
#include <string_view>

namespace interop {

// Returns the text with U+FFFD in place of each byte that is not of valid UTF-8, and of each character that
// an XML document must not have: control characters other than tab, LF and CR, and the non-characters FFFEh
// and FFFFh.
std::string xmlText(std::string_view text);

// Turns a UTF-16 code unit into such text: halves of a character become U+FFFD too.
std::string xmlText(char16_t unit);

} // namespace interop
