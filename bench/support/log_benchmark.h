// CIM_LogEntry on a virtual BMC.
#pragma once

#include "broker/broker.h"

#include <cstddef>
#include <string>

namespace bench {

// Makes a virtual BMC with an empty event log of the largest capacity, which requests go to; returns its
// state file. PH_SYSROOT names `root`.
std::string makeLogBmc(const std::string& root);

// Enumerates the log entries and counts them, without keeping any: what it takes to hold instances is the
// object manager's affair. Throws when the enumeration fails.
std::size_t countLogEntries(const broker::Broker& broker);

} // namespace bench
