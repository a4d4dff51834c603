// FRU inventory of the BMC.
#pragma once

#include "smash-db/sync/fru_contents.h"
#include "smash-db/sync/sdr_mapping.h"

#include <span>

namespace smash {

// FRU device 0 is the BMC's own and needs no locator. It is assumed to be on the system board.
inline constexpr std::uint8_t ownFruDevice = 0;

// Makes a row of the first FRU device of each entity that has a board or a product area. There is always a row of
// the system board: where no locator leads to one, the row is that of FRU device 0, or blank.
std::vector<FruRecord> readFrus(FruDevices& devices, std::span<const EntityLocator> locators,
                                const std::function<void(std::size_t, std::size_t)>& progress);

} // namespace smash
