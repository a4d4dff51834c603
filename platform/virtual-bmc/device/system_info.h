// What the BMC was told of the system (IPMI 2.0 22.14: system info parameters).
#pragma once

#include "virtual-bmc/state/part.h"

#include <string>

namespace vbmc {

// A machine whose model has none of these does not know the commands.
struct SystemInfo {
    std::string firmwareVersion;
    std::string systemName;
    std::string primaryOsName;
    // The operating system sets these when it starts; they read empty while the host is off.
    std::string osName;
    std::string osVersion;

    static constexpr const char* name = "systemInfo";
    static std::span<const Command> commands();
    void fields(Fields& fields);
    void check(const Place& place) const;
    Json describe(const State& state) const;
};

} // namespace vbmc
