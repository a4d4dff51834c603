// The settings of the watchdog timer between IPMI 2.0 and CIM_Watchdog.
#pragma once

#include <platform/cim_hooks.h>

#include <cstdint>

namespace ph::watchdog {

inline constexpr std::uint32_t resolution = 100'000; // microseconds that the timer counts in

std::uint16_t entityOf(std::uint8_t use);
// Returns the entity of the timer that ran out. `expired` has a bit for each use; when there are several, it is
// unknown which was the last.
std::uint16_t lastEntity(std::uint8_t expired);
std::uint16_t actionOf(const CIM_WatchdogTimer& timer);
// Returns microseconds, or 0 for an interval that has more than 32 bits of them, which is one of 72 minutes.
std::uint32_t intervalOf(const CIM_WatchdogTimer& timer);

// These return false, and change nothing, for what the timer cannot have.
bool setEntity(CIM_WatchdogTimer& timer, std::uint64_t entity);
bool setAction(CIM_WatchdogTimer& timer, std::uint64_t action);
bool setInterval(CIM_WatchdogTimer& timer, std::uint64_t microseconds);

} // namespace ph::watchdog
