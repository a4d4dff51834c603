// Words for the codes of sensors.
#pragma once

#include "virtual-bmc/state/json_fields.h"

#include <span>

namespace vbmc {

std::span<const Choice> sensorTypeNames();  // IPMI 2.0 table 42-3
std::span<const Choice> readingTypeNames(); // table 42-1
std::span<const Choice> unitNames();        // table 43-15
const char* availabilityName(Availability availability);

} // namespace vbmc
