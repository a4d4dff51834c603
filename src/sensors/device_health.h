// Health of a device by the sensors that watch it.
#pragma once

#include "sensors/reading.h"

#include <span>

namespace ph {

// Raises both values to what logdev_health_state_mapping says of a CurrentState. Returns false when it has no row.
bool raiseHealth(const char* currentState, std::uint16_t& healthState, int& operationalStatus);

// Does what PH_DeviceInstance does, without instances, and reads the sensors of the device only. The states of processors and
// memory count, too. Throws std::bad_alloc.
void rollUpHealth(std::span<const CompactSdr> sensors, SensorReader& reader, int entityId, int entityInstance,
                  std::uint16_t& healthState, int& operationalStatus);

} // namespace ph
