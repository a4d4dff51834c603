// OEM commands, network function 30h, as docs/oem-commands.md describes them: for those who send and those
// who answer them.
#pragma once

#include <cstdint>

namespace ipmi::oem {

inline constexpr std::uint8_t getServiceConfiguration = 0x10;
inline constexpr std::uint8_t setServiceConfiguration = 0x11;

} // namespace ipmi::oem
