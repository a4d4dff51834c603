// From raw values of a sensor to numbers in its unit (IPMI 2.0 36.3, table 43-1).
#pragma once

#include "ipmi/reading_factors.h"

#include <cstdint>
#include <span>
#include <string>

namespace view {

struct Conversion {
    ipmi::ReadingFactors factors = {};
    std::uint8_t units = 0;    // byte 21 of a full record: format, rate, use of the modifier unit, percentage
    std::uint8_t baseUnit = 0; // table 43-15
    std::uint8_t modifierUnit = 0; // likewise

    bool hasNumbers() const { return factors.format != ipmi::AnalogFormat::None; }
    double value(std::uint8_t raw) const { return factors.value(raw); }
    bool isPercentage() const { return (units & 0x01) != 0; }
    // Tells whether the base unit is the whole unit.
    bool isPlain() const { return (units & 0x3F) == 0; }
    // Each raw value has factors of its own, which Get Sensor Reading Factors tells.
    bool isNonLinear() const { return factors.linearization >= 0x70; }

    // "degrees C", "percent", "Watts * hour", "Joules per s"; empty for a number without a unit.
    std::string unit() const;
};

// Takes the factors of the six bytes that a full record has from byte 25 on and Get Sensor Reading Factors has
// behind its first; format and linearization stay.
void setFactors(ipmi::ReadingFactors& factors, std::span<const std::uint8_t, 6> bytes);

// Writes a number with three digits behind the point, as ipmitool's list of sensors has it, without zeros at its
// end; one below 1 keeps three significant digits.
std::string readingText(double value);

} // namespace view
