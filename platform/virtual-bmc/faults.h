// The faults of commands that were asked for. See Fault in virtual_bmc.h.
#pragma once

#include "virtual-bmc/state/part.h"
#include "virtual-bmc/virtual_bmc.h"

#include <optional>

namespace vbmc {

struct FaultEntry : Fault {
    void fields(Fields& fields);
    void check(const Place& place) const;
};

struct Faults {
    std::vector<FaultEntry> list;

    static constexpr const char* name = "faults";
    static std::span<const Command> commands() { return {}; }
    Json describe(const State& state) const;

    // Returns the fault that strikes a call of the command, if any.
    const Fault* strike(std::uint8_t netFn, std::uint8_t command) const;
    // Counts a call of the command; true when there is something to count (see `countCall`).
    bool counts(std::uint8_t netFn, std::uint8_t command) const;
    void countCall(std::uint8_t netFn, std::uint8_t command);
};

} // namespace vbmc
