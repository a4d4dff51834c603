// IPMI sensor types and their names.
#pragma once

#include <cstdint>

namespace ipmi {

inline constexpr std::uint8_t sensorSpecific = 0x6F; // event/reading type (table 42-1)

// Names a sensor type code (IPMI 2.0 table 42-3); "Reserved" and "OEM" stand for codes without a name of
// their own.
const char* sensorTypeName(std::uint8_t type);

} // namespace ipmi
