// Names of IPMI sensor types.
#pragma once

#include <cstdint>

namespace ipmi {

// Names a sensor type code (IPMI 2.0 table 42-3); "Reserved" and "OEM" stand for codes without a name of
// their own.
const char* sensorTypeName(std::uint8_t type);

} // namespace ipmi
