// The watchdog timer (IPMI 2.0, 27), which acts on the host when it runs out.
#pragma once

#include "virtual-bmc/state/part.h"

namespace vbmc {

struct Watchdog {
    std::uint8_t use = 0; // 0: never set
    bool doesNotLog = false;
    std::uint8_t action = 0;
    std::uint8_t interrupt = 0;
    std::uint8_t interruptSeconds = 0; // before the end
    std::uint8_t expired = 0;          // bit n: a timer with use n ran out
    std::uint16_t interval = 0;        // 100 milliseconds
    // The end is a time: nothing runs between commands.
    std::int64_t endsAt = 0; // milliseconds since 1970, 0: it is stopped
    bool hasInterrupted = false;

    static constexpr const char* name = "watchdog";
    static std::span<const Command> commands();
    static void settle(State& state, std::int64_t now);
    void fields(Fields& fields);
    Json describe(const State& state) const;

    void start(std::int64_t now);
    void stop() { endsAt = 0; }
};

} // namespace vbmc
