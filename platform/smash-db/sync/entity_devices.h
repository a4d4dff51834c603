// Fans and power supplies, as far as sensors tell of them.
#pragma once

#include "smash-db/sync/sdr_mapping.h"

#include <vector>

namespace smash {

// Finds the devices that have sensors; docs/sdr-mapping.md describes how.
std::vector<EntityDeviceRow> findEntityDevices(const SdrMapping& sensors);

} // namespace smash
