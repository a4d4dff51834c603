// LAN configuration parameters of one channel.
#pragma once

#include "ipmi/command.h"
#include "ipmi/lan_configuration.h"

namespace hooks {

class LanParameters {
public:
    LanParameters(ipmi::Transport& bmc, std::uint8_t channel) : bmc_(bmc), channel_(channel) {}

    // Fills `bytes` with what follows the parameter's revision in the answer. Throws what ipmi::run does, and
    // ShortAnswerError.
    void read(std::uint8_t parameter, std::span<std::uint8_t> bytes) const;
    // Does the same; returns false, and zeros, for a parameter that the BMC does not have.
    bool readIfPresent(std::uint8_t parameter, std::span<std::uint8_t> bytes) const;
    // Reads a parameter with sets, whose first byte is the set's selector. An answer with another set throws
    // too, except set 0, which marks a set that is not used.
    void readSet(std::uint8_t parameter, std::uint8_t set, std::span<std::uint8_t> bytes) const;
    bool readSetIfPresent(std::uint8_t parameter, std::uint8_t set, std::span<std::uint8_t> bytes) const;
    std::uint8_t readByte(std::uint8_t parameter) const;

    // One command writes a parameter whole, so none of the BMC's transactions (parameter 0) is opened. A
    // change of the address that the session goes to often loses its answer, and would leave the transaction
    // open.
    void write(std::uint8_t parameter, std::span<const std::uint8_t> bytes) const;
    void writeByte(std::uint8_t parameter, std::uint8_t value) const;

private:
    void get(std::uint8_t parameter, std::uint8_t set, std::span<std::uint8_t> bytes) const;

    ipmi::Transport& bmc_;
    std::uint8_t channel_;
};

} // namespace hooks
