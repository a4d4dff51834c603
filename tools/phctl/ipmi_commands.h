// Names of IPMI commands.
#pragma once

#include "ipmi/commands.h"

#include <string>

namespace phctl {

// Reads a name such as "get-sensor-reading", or "0x04:0x2D" (network function and command). Throws UsageError.
ipmi::CommandCode parseIpmiCommand(const std::string& text);

// "get-sensor-reading (0x04:0x2D)"
std::string toText(ipmi::CommandCode command);

// All names, with commas.
std::string ipmiCommandNames();

} // namespace phctl
