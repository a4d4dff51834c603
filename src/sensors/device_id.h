// What the rest of the sensors needs of a DeviceID.
#pragma once

#include "provider_helper/sensors.h"

#include <cstdint>

namespace ph {

PHSensorDeviceId parseDeviceId(const SensorRecord& sensor);

// Of a sensor-specific sensor: its state bit; also a negative or large number, as the text has it.
int stateOffset(const PHSensorDeviceId& id);
inline constexpr int wholeSensor = 99;

std::uint8_t sensorNumber(const SensorRecord& sensor);

} // namespace ph
