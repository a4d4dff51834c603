// Which filters an event matches, and whom that alerts (IPMI 2.0, 17.7 to 17.11).
#pragma once

#include "virtual-bmc/state/state.h"
#include "virtual-bmc/virtual_bmc.h"

namespace vbmc {

EventMatch filterEvent(const State& state, std::span<const std::uint8_t, 16> record);

} // namespace vbmc
