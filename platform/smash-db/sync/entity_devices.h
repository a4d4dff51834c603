// Fans and power supplies, as far as sensors tell of them.
#pragma once

#include "smash-db/sync/sdr_mapping.h"

#include <vector>

namespace smash {

// Makes the row of a device, with the sensor that tells whether it is installed.
EntityDeviceRow makeEntityDevice(std::uint8_t entityId, std::uint8_t entityInstance,
                                 const SdrMapping& sensors);

// Finds the devices that have sensors; docs/sdr-mapping.md describes how.
std::vector<EntityDeviceRow> findEntityDevices(const SdrMapping& sensors);

} // namespace smash
