// What a simulated BMC has: sensors, and the SDR records and simulator commands that make them.
#pragma once

#include <array>
#include <cstdint>
#include <string>
#include <vector>

namespace ph_test {

// A threshold sensor (event/reading type 01h) gets a full SDR, any other a compact one.
struct SimSensor {
    std::uint8_t number = 1;
    std::string name;                     // at most 16 characters
    std::uint8_t type = 0x01;             // IPMI 2.0 table 42-3; temperature
    std::uint8_t eventReadingType = 0x01; // IPMI 2.0 table 42-1
    std::uint8_t entityId = 7;            // system board
    std::uint8_t entityInstance = 1;
    std::uint16_t states = 0; // discrete sensor: state bits now; the SDR says that all 15 are supported

    // Threshold sensor: value = (m * raw + b * 10^bExponent) * 10^rExponent, in `unit` (table 43-15; degrees
    // C).
    std::uint8_t reading = 0; // raw
    std::uint8_t unit = 1;
    std::int16_t m = 1;
    std::int16_t b = 0;
    std::int8_t rExponent = 0;
    std::int8_t bExponent = 0;
    // Bytes 21, 23 and 24 of the record: analog format, rate, use of the modifier unit and percentage; the modifier
    // unit; linearization.
    std::uint8_t units = 0;
    std::uint8_t modifierUnit = 0;
    std::uint8_t linearization = 0;
    // Raw thresholds in the order of their bits: lower non-critical, critical, non-recoverable, then upper.
    std::array<std::uint8_t, 6> thresholds = {20, 10, 5, 100, 120, 130};
    std::uint8_t thresholdMask = 0x3F; // those that exist

    bool isThreshold() const { return eventReadingType == 0x01; }
};

// `count` (at most 254) threshold sensors with readings of their own, one in ten above its critical
// threshold.
std::vector<SimSensor> thresholdSensors(int count);

// The commands of ipmi_sim(1) that make a BMC with these sensors.
std::string simCommands(const std::vector<SimSensor>& sensors);

} // namespace ph_test
