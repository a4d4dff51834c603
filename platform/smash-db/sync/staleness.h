// Whether the database still describes the BMC's sensors.
#pragma once

#include "ipmi/transport.h"
#include "smash-db/inventory_tables.h"

namespace smash {

// Compares what Get SDR Repository Info tells with what it told when the database was filled: one message.
// Throws what ipmi::run throws, and std::runtime_error where the database cannot be read. A database that does
// not say is taken as up to date.
bool isStale(ipmi::Transport& bmc);
// Compares with what the BMC has told already. Throws std::runtime_error.
bool isStale(const SdrRepositoryRow& now);

} // namespace smash
