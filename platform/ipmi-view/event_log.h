// The records of the BMC's event log (IPMI 2.0 31.4 to 31.9).
#pragma once

#include "ipmi/transport.h"

#include <array>
#include <cstdint>
#include <vector>

namespace view {

using SelRecord = std::array<std::uint8_t, 16>;

// These throw what ipmi::run throws, and std::runtime_error where others change or reserve the log each time.

// Reads all records, oldest first.
std::vector<SelRecord> readEventLog(ipmi::Transport& bmc);
// Returns when the BMC says that the log is erased; it has a minute for that.
void clearEventLog(ipmi::Transport& bmc);
void deleteRecord(ipmi::Transport& bmc, std::uint16_t id);

} // namespace view
