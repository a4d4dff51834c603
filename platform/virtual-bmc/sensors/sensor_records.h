// Sensor data records (IPMI 2.0 43).
#pragma once

#include "ipmi/message.h"
#include "virtual-bmc/sensors/sensors.h"

#include <string>
#include <string_view>

namespace vbmc {

inline constexpr std::uint8_t controllerAddress = 0x20;
inline constexpr std::size_t recordHeaderSize = 5; // ID, version, type, number of bytes that follow

// What follows the head of a record.
void writeSensor(ipmi::Writer& record, const Sensor& sensor);
std::uint8_t recordType(const Sensor& sensor);

// M, tolerance, B, accuracy and exponents: bytes 25 to 30 of a full record.
void writeFactors(ipmi::Writer& bytes, const Analog& analog);

// Type/length byte and text of 8-bit characters.
void writeIdString(ipmi::Writer& record, std::string_view text);
// Throws Error for a text that is too long for a record, or not of printable ASCII characters.
void checkIdString(const std::string& text, const Place& place);

} // namespace vbmc
