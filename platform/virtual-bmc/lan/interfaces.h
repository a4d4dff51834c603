// What the controller does with its LANs beyond IPMI: bonding, and what holds for all Ethernet ports.
#pragma once

#include "virtual-bmc/state/part.h"

#include <vector>

namespace vbmc {

// LANs that act as one interface. It takes the place of its first member.
struct Bond {
    static constexpr const char* interfaceName = "bond0";

    bool isEnabled = false;
    std::uint8_t mode = 1; // Linux bonding mode: active-backup
    std::uint16_t milliseconds = 100;
    std::vector<std::uint16_t> members; // LAN indices

    void fields(Fields& fields);
    std::uint16_t mask() const; // bit n: LAN index n + 1
};

struct Ethernet {
    bool isFullDuplex = true;
    bool autoNegotiates = true;
    std::uint16_t mtu = 1500; // bytes
    bool hasWakeOnLan = false;
    bool isWakeOnLanEnabled = false;

    void fields(Fields& fields);
};

struct Interfaces {
    Bond bond;
    Ethernet ethernet;

    static constexpr const char* name = "interfaces";
    static std::span<const Command> commands();
    void fields(Fields& fields);
    Json describe(const State& state) const;

    // Switches the bond. Returns false where that must not be done: it has fewer than two members, or no LAN
    // would work without it.
    bool setBond(const State& state, bool isEnabled);
};

} // namespace vbmc
