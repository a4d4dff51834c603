// How sensors read at the moment (IPMI 2.0 35.14).
#pragma once

#include "ipmi-view/sensor_rows.h"
#include "ipmi/transport.h"

#include <span>

namespace view {

struct Reading {
    std::optional<std::uint8_t> raw = {}; // of a sensor that was read and reads as a number
    std::optional<double> value = {};     // the same in the sensor's unit
    std::uint16_t states = 0;             // comparison status, or state bits
    Severity severity = Severity::Unknown;
    std::vector<std::string> events = {}; // the names of its states
    std::string problem = {};             // why it cannot be read; empty when it was read
};

// Decodes an answer to Get Sensor Reading, completion code first. Where the BMC leaves the comparison status out,
// the reading is compared with the thresholds of the row.
Reading decodeReading(const SensorRow& sensor, std::span<const std::uint8_t> answer);

// Sets severity and events from the states.
void judge(const SensorRow& sensor, Reading& reading);

// Reads a sensor. That it cannot be read is told in the result. Throws ipmi::TransportError.
Reading readSensor(ipmi::Transport& bmc, const SensorRow& sensor);

// Reads the thresholds as they are set now; those of the record where the BMC does not tell them. Throws
// ipmi::TransportError.
Thresholds readThresholds(ipmi::Transport& bmc, const SensorRow& sensor);

} // namespace view
