// The system boot options (IPMI 2.0, 28.12 and 28.13), and what the host makes of them when it boots.
#pragma once

#include "ipmi/boot_options.h"
#include "virtual-bmc/state/part.h"

#include <array>
#include <vector>

namespace vbmc {

// A boot device that the system firmware knows, by its selector.
struct BootDevice {
    std::uint8_t selector = 0;

    void fromJson(const Json& json, const Place& place);
    Json toJson() const;
};

struct BootOptions {
    std::vector<BootDevice> devices = everyDevice(); // flags with another one are refused
    std::uint32_t validTime = 60'000; // milliseconds that flags hold without a Chassis Control command

    std::uint8_t progress = ipmi::boot::setComplete;
    std::uint8_t servicePartition = 0;
    std::uint8_t servicePartitionScan = 0;
    std::uint8_t validBitClearing = 0;
    std::uint8_t acknowledge = 0;
    std::vector<std::uint8_t> flags = std::vector<std::uint8_t>(ipmi::boot::flagsSize);
    std::uint8_t invalid = 0;    // bit n: parameter n was marked so
    std::int64_t validSince = 0; // milliseconds since 1970, or since the last Chassis Control command
    std::uint32_t bootsSeen = 0; // of those that the chassis counts
    std::uint8_t lastBoot = 0;   // device of the last boot; 0: in the order of the firmware

    static constexpr const char* name = "boot";
    static std::span<const Command> commands();
    static void settle(State& state, std::int64_t now);
    void fields(Fields& fields);
    void check(const Place& place) const;
    Json describe(const State& state) const;

    static std::vector<BootDevice> everyDevice();

    bool isValid() const { return (flags[0] & ipmi::boot::flagsValid) != 0; }
    // Clears the valid bit, as what begins a boot does, unless parameter 3 has this bit.
    void clearValid(std::uint8_t unless);
};

} // namespace vbmc
