// Texts that a BMC was told of its system (IPMI 2.0 22.14a).
#pragma once

#include "ipmi/transport.h"

#include <string>

namespace hooks {

// Returns a text of Get System Info Parameters; empty where the BMC has not got it. Throws what ipmi::run
// throws, and std::runtime_error for an encoding that IPMI does not know.
std::string readSystemInfo(ipmi::Transport& bmc, std::uint8_t parameter);

} // namespace hooks
