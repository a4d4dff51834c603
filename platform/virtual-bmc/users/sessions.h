// The sessions that users have open (Get Session Info, IPMI 2.0 22.20). They stand in the model: what reaches the machine
// through its state file comes by the system interface, which has no sessions.
#pragma once

#include "virtual-bmc/state/part.h"

#include <vector>

namespace vbmc {

struct OpenSession {
    std::uint8_t user = 0;
    std::uint8_t privilege = 2; // level: 1 callback to 5 OEM
    std::uint8_t channel = 1;

    void fields(Fields& fields);
    void check(const Place& place) const;
};

struct Sessions {
    static constexpr std::size_t most = 15;

    std::vector<OpenSession> list; // the nth has the handle n, from 1

    static constexpr const char* name = "sessions";
    static std::span<const Command> commands();
    void check(const Place& place) const;
    Json describe(const State& state) const;
};

} // namespace vbmc
