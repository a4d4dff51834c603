// The network services (docs/oem-commands.md).
#pragma once

#include "virtual-bmc/state/part.h"

#include <string>
#include <vector>

namespace vbmc {

struct NetworkService {
    std::uint8_t number = 0; // bit of the mask that names it
    bool isEnabled = true;
    std::uint16_t port = 0; // 0: none
    std::uint16_t securePort = 0;
    std::uint16_t timeout = 0; // seconds, 0: never
    std::uint8_t maxSessions = 1;
    std::uint8_t activeSessions = 0;

    void fields(Fields& fields);
    const char* name() const;
};

struct Services {
    std::vector<NetworkService> list = everyService();

    static constexpr const char* name = "services";
    static std::span<const Command> commands();
    void check(const Place& place) const;
    Json describe(const State& state) const;

    static std::vector<NetworkService> everyService(); // what a model without them has
};

} // namespace vbmc
