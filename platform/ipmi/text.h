// These decode texts of IPMI records and parameters to UTF-8. A text ends with its first NUL. Control
// characters, which no text of a CIM instance may hold, become '_'; what is no character becomes U+FFFD.
#pragma once

#include <cstdint>
#include <span>
#include <string>

namespace ipmi {

std::string decodeLatin1(std::span<const std::uint8_t> bytes);
std::string decodeUtf16(std::span<const std::uint8_t> bytes); // the less significant byte first
std::string decodeUtf8(std::span<const std::uint8_t> bytes);

} // namespace ipmi
