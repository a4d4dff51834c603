// Readings in full beside those of CIM: what the providers of this process were answered when they read the sensors
// is decoded once more, with all that the database knows of them.
#pragma once

#include "broker/broker.h"
#include "sensor_table.h"

#include <optional>

namespace phctl {

// Keeps the answer where the exchange is one of Get Sensor Reading. Any thread may call it.
void keepReading(std::uint8_t netFn, std::uint8_t command, std::span<const std::uint8_t> request,
                 std::span<const std::uint8_t> answer);

// Returns the sensor that an instance of CIM_Sensor or CIM_NumericSensor is about, as it was read last. One that stands
// for a single state has no other. Nothing for other instances, and for a sensor that was not read or that the
// database does not have.
std::optional<SensorLine> computedReading(const broker::Instance& instance);

// Puts a property of such a sensor into words: "53 degrees C" for CurrentReading and for thresholds, "critical: Upper
// Critical" for CurrentState; empty for any other.
std::string computedText(const SensorLine& line, std::string_view property);

} // namespace phctl
