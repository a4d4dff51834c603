// Serial over LAN (IPMI 2.0, 26): its parameters on each channel, and what is active.
#pragma once

#include "virtual-bmc/state/part.h"

#include <vector>

namespace vbmc {

struct SolChannel {
    std::uint8_t channel = 0;
    bool isEnabled = true;
    std::uint8_t privilege = 2; // 2 user, 3 operator, 4 administrator, 5 OEM
    bool forcesEncryption = true;
    bool forcesAuthentication = true;
    std::uint8_t accumulateInterval = 12; // 5 milliseconds
    std::uint8_t sendThreshold = 96;      // characters
    std::uint8_t retryCount = 7;
    std::uint8_t retryInterval = 50;      // 10 milliseconds
    std::uint8_t nonVolatileBitRate = 10; // code of table 26-5; 115,200 bit/s
    std::uint8_t bitRate = 10;            // the volatile one
    std::uint16_t port = 623;             // UDP
    bool isSetInProgress = false;

    void fields(Fields& fields);
};

struct SolInstance {
    std::uint8_t instance = 1;
    std::uint32_t session = 0; // ID
    std::uint8_t serialPort = 1;

    void fields(Fields& fields);
};

// A machine whose model has no channel with it does not know the commands.
struct Sol {
    std::vector<SolChannel> channels;
    std::uint8_t capacity = 1; // instances
    std::vector<SolInstance> active;

    static constexpr const char* name = "sol";
    static std::span<const Command> commands();
    void fields(Fields& fields);
    void check(const Place& place) const;
    Json describe(const State& state) const;

    const SolChannel* find(std::uint8_t channel) const;
    const SolInstance* findInstance(std::uint8_t instance) const; // null for one that is not active
};

} // namespace vbmc
