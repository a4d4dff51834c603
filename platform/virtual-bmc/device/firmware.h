// The firmware that runs, and taking a new one (docs/oem-commands.md, "Firmware").
#pragma once

#include "virtual-bmc/state/part.h"

#include <string>
#include <vector>

namespace vbmc {

struct Firmware {
    static constexpr const char* bulkFile = ".firmware"; // what was received of an image

    std::uint32_t largestImage = 16 * 1024 * 1024; // bytes; 0: the machine takes none
    std::uint32_t restartTime = 2000;              // milliseconds

    std::uint8_t transfer = 0;   // number of the last one
    std::uint32_t expected = 0;  // bytes of the image that is received, 0: none is
    std::int64_t restartsAt = 0; // milliseconds since 1970, 0: it does not restart
    std::uint8_t nextMajor = 0;  // of the firmware that it restarts with
    std::uint8_t nextMinor = 0;
    std::vector<std::uint8_t> nextAuxiliary;

    static constexpr const char* name = "firmware";
    static std::span<const Command> commands();
    static void settle(State& state, std::int64_t now);
    void fields(Fields& fields);
    Json describe(const State& state) const;

    bool isRestarting() const { return restartsAt != 0; }
    static bool answersWhileRestarting(ipmi::CommandCode command);
};

} // namespace vbmc
