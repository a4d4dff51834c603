// What the command Chassis Control does to the host (IPMI 2.0 table 28-4).
#pragma once

#include <cstdint>

namespace ipmi {

enum class ChassisControl : std::uint8_t {
    PowerDown = 0,
    PowerUp = 1,
    PowerCycle = 2,
    HardReset = 3,
    DiagnosticInterrupt = 4,
    SoftShutdown = 5
};

} // namespace ipmi
