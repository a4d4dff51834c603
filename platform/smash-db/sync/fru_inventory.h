// FRU inventory of the BMC.
#pragma once

#include "smash-db/sync/sdr_mapping.h"

#include <span>

namespace smash {

// Row of each located FRU device that can be read, the first one of an entity; the others are remarked. There
// is always a row of entity 7, the system board: where no locator leads to one, it is FRU device 0, the BMC's
// own.
std::vector<FruRecord> readFrus(ipmi::Transport& bmc, std::span<const FruLocator> locators,
                                std::vector<SyncRemark>& remarks,
                                const std::function<void(std::size_t, std::size_t)>& progress);

} // namespace smash
