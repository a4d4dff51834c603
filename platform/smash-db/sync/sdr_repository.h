// Reading the SDR repository of a BMC.
#pragma once

#include "ipmi/transport.h"
#include "smash-db/inventory_tables.h"
#include "smash-db/sync/sync.h"

#include <cstdint>
#include <functional>
#include <string>
#include <vector>

namespace smash {

struct SdrRecord {
    std::uint16_t id;
    std::vector<std::uint8_t> bytes; // from the record ID on, as long as its length byte says
};

std::string sourceOf(const SdrRecord& record); // "SDR record 0x0012"

// Reads Get SDR Repository Info (IPMI 2.0 33.9). Throws what ipmi::run throws.
SdrRepositoryRow readSdrRepositoryInfo(ipmi::Transport& bmc);

// All records in the order of the repository; what cannot be read alone is left out and remarked. `progress`
// is told how many records were read of how many the BMC has. Throws when the BMC stops answering, or has no
// way to go on.
std::vector<SdrRecord> readSdrRepository(ipmi::Transport& bmc, std::vector<SyncRemark>& remarks,
                                         const std::function<void(std::size_t, std::size_t)>& progress);

} // namespace smash
