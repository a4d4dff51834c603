// What the states of a sensor mean.
#pragma once

#include <cstdint>
#include <string>
#include <vector>

namespace view {

enum class Severity { Nominal, Warning, Critical, Unknown };
inline constexpr const char* severityNames[] = {"nominal", "warning", "critical", "na"};
inline const char* nameOf(Severity severity) {
    return severityNames[static_cast<std::size_t>(severity)];
}

inline constexpr std::uint8_t thresholdReadingType = 0x01;

// The thresholds in the order of their bits in masks and comparison status.
inline constexpr unsigned thresholdCount = 6;
inline constexpr const char* thresholdNames[thresholdCount] = {
    "Lower Non-Critical", "Lower Critical", "Lower Non-Recoverable",
    "Upper Non-Critical", "Upper Critical", "Upper Non-Recoverable"};
constexpr bool isLowerThreshold(unsigned threshold) {
    return threshold < 3;
}

// Judges states by the event/reading type (IPMI 2.0 table 42-1) and the sensor type (table 42-3) that give them
// their meaning: the comparison status of a threshold sensor, or the state bits of a discrete one. A
// non-critical threshold is a warning, any other critical; discrete states are judged as FreeIPMI does, where it does. Unknown
// where the states have no meaning that is public.
Severity severityOf(std::uint8_t readingType, std::uint8_t sensorType, std::uint16_t states);

// Names a state: "Upper Critical", "Redundancy Lost".
std::string stateName(std::uint8_t readingType, std::uint8_t sensorType, unsigned offset);
// Names all that are set, in order.
std::vector<std::string> stateNames(std::uint8_t readingType, std::uint8_t sensorType, std::uint16_t states);

} // namespace view
