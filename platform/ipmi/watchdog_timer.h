// The watchdog timer's settings (IPMI 2.0, 27.5 to 27.7).
#pragma once

#include <cstdint>

namespace ipmi::watchdog {

// Byte 0: what the timer is used for.
inline constexpr std::uint8_t dontLog = 0x80;
inline constexpr std::uint8_t isRunning = 0x40;   // in the answer
inline constexpr std::uint8_t keepRunning = 0x40; // in the request
inline constexpr std::uint8_t useMask = 0x07;
inline constexpr std::uint8_t lastUse = 5; // OEM; 0 and the others are reserved

// Byte 1: what happens at the end, and before.
inline constexpr std::uint8_t actionMask = 0x07;
enum Action : std::uint8_t { noAction, hardReset, powerDown, powerCycle };
inline constexpr std::uint8_t interruptMask = 0x70;
inline constexpr unsigned interruptShift = 4;
inline constexpr std::uint8_t lastInterrupt = 3; // messaging interrupt

// Byte 3: bit n is set once a timer with use n ran out. Written, its bits clear those.
inline constexpr std::uint8_t expirationMask = 0x3E;

inline constexpr std::uint8_t notInitialized = 0x80; // completion code of Reset Watchdog Timer

} // namespace ipmi::watchdog
