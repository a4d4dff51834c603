// "Set In Progress", parameter 0 of the LAN, PEF and SOL configuration parameters (IPMI 2.0, tables 23-4, 30-6 and 26-5).
#pragma once

#include <cstdint>

namespace ipmi::progress {

inline constexpr std::uint8_t mask = 0x03;
inline constexpr std::uint8_t complete = 0;
inline constexpr std::uint8_t started = 1;
inline constexpr std::uint8_t commitWrite = 2;

// Completion code of the commands that set these parameters.
inline constexpr std::uint8_t alreadyStarted = 0x81;

} // namespace ipmi::progress
