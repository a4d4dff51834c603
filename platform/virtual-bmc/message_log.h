// The messages that the controller received, recorded for tests of its clients.
#pragma once

#include "virtual-bmc/state/part.h"
#include "virtual-bmc/virtual_bmc.h"

namespace vbmc {

struct MessageLog {
    static constexpr const char* bulkFile = ".messages";

    std::uint32_t limit = 0; // how many messages are recorded

    static constexpr const char* name = "messageLog";
    static std::span<const Command> commands() { return {}; }
    void fields(Fields& fields);

    // Appends a message while there is room.
    static void record(const State& state, std::uint8_t netFn, std::uint8_t command,
                       std::span<const std::uint8_t> request, std::span<const std::uint8_t> answer);
    static void restart(State& state, std::uint32_t limit);
    static std::vector<Message> read(const State& state);
};

} // namespace vbmc
