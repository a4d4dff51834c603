// OEM commands, network function 30h, as docs/oem-commands.md describes them: for those who send and those
// who answer them.
#pragma once

#include <cstdint>

namespace ipmi::oem {

// Services.
inline constexpr std::uint8_t getServiceConfiguration = 0x10;
inline constexpr std::uint8_t setServiceConfiguration = 0x11;

// Network.
inline constexpr std::uint8_t getInterfaceName = 0x20;
inline constexpr std::uint8_t getLanEnable = 0x21;
inline constexpr std::uint8_t setLanEnable = 0x22;
inline constexpr std::uint8_t getBond = 0x23;
inline constexpr std::uint8_t setBond = 0x24;
inline constexpr std::uint8_t getPhy = 0x25;
inline constexpr std::uint8_t getEthernetSettings = 0x26;

} // namespace ipmi::oem
