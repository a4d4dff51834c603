// Names of IPMI sensor types.
#pragma once

#include <cstdint>

namespace ipmi {

// Sensor type code (IPMI 2.0 table 42-3); "Reserved" and "OEM" for codes without a name of their own.
const char* sensorTypeName(std::uint8_t type);

} // namespace ipmi
