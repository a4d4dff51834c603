// The BMC's user table (IPMI 2.0, 22.26 to 22.29).
#pragma once

#include "ipmi/transport.h"

#include <string_view>

namespace hooks {

// Throws std::runtime_error unless the BMC has an enabled user of this name. A BMC that has no user table
// knows no users that it could refuse.
void requireUser(ipmi::Transport& bmc, std::string_view name);

} // namespace hooks
