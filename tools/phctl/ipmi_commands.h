// Names of IPMI commands.
#pragma once

#include <cstdint>
#include <string>

namespace phctl {

struct IpmiCommand {
    std::uint8_t netFn;
    std::uint8_t command;
};

// From a name such as "get-sensor-reading", or "0x04:0x2D" (network function and command). Throws UsageError.
IpmiCommand parseIpmiCommand(const std::string& text);

// "get-sensor-reading (0x04:0x2D)"
std::string toText(const IpmiCommand& command);

// All names, with commas.
std::string ipmiCommandNames();

} // namespace phctl
