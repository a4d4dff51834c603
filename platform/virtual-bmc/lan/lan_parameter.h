// One LAN configuration parameter: a row of a table. A part that has some states them as
//   static std::span<const LanParameter> lanParameters()
// beside its commands, and they are answered for every LAN.
#pragma once

#include "virtual-bmc/state/part.h"

namespace vbmc {

struct Lan;

struct LanSelector {
    std::uint8_t set;
    std::uint8_t block;
};

struct LanParameter {
    // Writes what follows the parameter revision.
    using Get = std::uint8_t (*)(const State& state, const Lan& lan, LanSelector selector,
                                 ipmi::Writer& answer);
    // Reads what follows the parameter's number.
    using Set = std::uint8_t (*)(State& state, Lan& lan, ipmi::Reader request);

    std::uint8_t number;
    std::size_t leastRequest; // bytes for `set`; a shorter one is answered with C7h
    Get get;                  // null: write-only, answered with 83h
    Set set;                  // null: read-only, answered with 82h
};

} // namespace vbmc
