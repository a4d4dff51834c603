// Texts of SDRs and FRU areas: a type/length byte and up to 63 bytes in one of four codes.
#pragma once

#include "ipmi/message.h"

#include <optional>
#include <string>

namespace smash {

// The ID string at the end of an SDR (IPMI 2.0 43.15), as UTF-8. Padding at its end is dropped and control
// characters, which no text of a CIM instance may hold, become '_'. Empty where the record ends within it:
// the reader then says so.
std::string readIdString(ipmi::Reader& record);

// The next field of a FRU board or product area (Platform Management FRU Information Storage Definition 13),
// in the same form; binary data as hexadecimal digits. Nothing at the end mark and behind it.
std::optional<std::string> readFruField(ipmi::Reader& area, std::uint8_t languageCode);

} // namespace smash
