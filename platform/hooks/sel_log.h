// The system event log as a whole: read it, erase it.
#pragma once

#include "hooks/sel_reader.h"

#include <functional>
#include <span>

namespace hooks::sel {

// Reads the log, oldest record first, until there are no more records or no more room, and returns how many
// it read. A log that changes meanwhile is read again. Before each record `begin` is called. Throws what
// ipmi::run throws, and std::runtime_error for a log that changed each time.
std::uint16_t readLog(
    ipmi::Transport& bmc, std::span<CIM_SELEntry> entries, const std::function<void()>& begin = [] {});

// Erases all records and waits until the BMC has done so. Throws std::runtime_error when that takes until
// `end`, or others keep the log reserved.
void eraseLog(ipmi::Transport& bmc, ipmi::Clock::time_point end = ipmi::Clock::time_point::max());

// Erases one record. Throws what ipmi::run throws.
void eraseRecord(ipmi::Transport& bmc, std::uint16_t id);

} // namespace hooks::sel
