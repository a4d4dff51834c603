// Whether the database still describes the BMC's sensors.
#pragma once

#include "ipmi/transport.h"

namespace smash {

// Compares what Get SDR Repository Info tells with what it told when the database was filled: one message.
// Throws what ipmi::run throws, and std::runtime_error where the database cannot be read. A database that does
// not say is taken as up to date.
bool isStale(ipmi::Transport& bmc);

} // namespace smash
