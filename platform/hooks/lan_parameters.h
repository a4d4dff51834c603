// LAN configuration parameters of one channel.
#pragma once

#include "ipmi/command.h"
#include "ipmi/lan_configuration.h"

#include <vector>

namespace hooks {

class LanParameters {
public:
    LanParameters(ipmi::Transport& bmc, std::uint8_t channel) : bmc_(bmc), channel_(channel) {}

    // Fills `bytes` with what follows the parameter's revision in the answer. Throws what ipmi::run does, and
    // for a shorter answer.
    void read(std::uint8_t parameter, std::span<std::uint8_t> bytes, std::uint8_t set = 0) const;
    // The same; false, and zeros, for a parameter or a set that the BMC does not have.
    bool readIfPresent(std::uint8_t parameter, std::span<std::uint8_t> bytes, std::uint8_t set = 0) const;
    std::uint8_t readByte(std::uint8_t parameter) const;

    // One command writes a parameter whole, so none of the BMC's transactions (parameter 0) is opened. A
    // change of the address that the session goes to often loses its answer, and would leave the transaction
    // open.
    void write(std::uint8_t parameter, std::span<const std::uint8_t> bytes) const;
    void writeByte(std::uint8_t parameter, std::uint8_t value) const;

private:
    ipmi::Transport& bmc_;
    std::uint8_t channel_;
};

// The channels of medium 802.3 LAN in order; with `limit` only so many of them. The nth has LAN index n.
std::vector<std::uint8_t> lanChannels(ipmi::Transport& bmc, std::size_t limit = ipmi::channel::last);

} // namespace hooks
