// The host's power (IPMI 2.0 28: chassis commands).
#pragma once

#include "virtual-bmc/state/part.h"

namespace vbmc {

// Changes that take a while are a time at which they will have happened: nothing runs between commands.
struct Chassis {
    bool isOn = true;                   // until one of the times below
    std::int64_t offAt = 0;             // milliseconds since 1970, 0: never
    std::int64_t onAt = 0;              // after `offAt`, if there is one
    std::uint32_t softOffDelay = 5000;  // milliseconds from a soft shutdown's request to power off
    std::uint32_t cycleInterval = 1000; // milliseconds without power
    bool wasSwitchedOn = false;         // by a command
    std::uint32_t resets = 0;
    std::uint32_t diagnosticInterrupts = 0;
    std::uint32_t boots = 0; // times that the host came up or was reset

    static constexpr const char* name = "chassis";
    static std::span<const Command> commands();
    void fields(Fields& fields);
    Json describe(const State& state) const;

    bool isOnNow() const;
    // Takes what has happened by now into `isOn`.
    void settle(std::int64_t now);

    // Commands and the watchdog do this to a host.
    void powerDown();
    void powerCycle(std::int64_t time);
    void reset();

    static std::int64_t now(); // milliseconds since 1970
};

} // namespace vbmc
