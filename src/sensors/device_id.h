// What the rest of the sensors needs of a DeviceID.
#pragma once

#include "provider_helper/sensors.h"

#include <cstdint>

namespace ph {

PHSensorDeviceId parseDeviceId(const SensorRecord& sensor);

// The state bit of a sensor-specific sensor; the text may also have a negative or a large number.
int stateOffset(const PHSensorDeviceId& id);
inline constexpr int wholeSensor = 99;

std::uint8_t sensorNumber(const SensorRecord& sensor);

} // namespace ph
