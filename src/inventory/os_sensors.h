// The sensors that watch an operating system (IPMI 2.0 table 42-3: types 1Fh, 20h and 22h).
#pragma once

#include "Utility/back-ends/back_ends.h"
#include "Utility/values/dmtf_values.h"

#include <cstdint>

namespace ph {

// What the sensors tell. Without any of them all is taken to be well.
struct OsCondition {
    std::uint16_t operationalStatus = OperationalStatus::OK;
    std::uint16_t healthState = HealthState::OK;
    bool isShuttingDown = false;
    std::uint8_t acpiState = CIM_ACPI_UNKNOWN; // as Get ACPI Power State has it

    // Returns false when the rows of the sensors cannot be read. A sensor without a reading tells nothing.
    bool read(IpmiSession& session);
};

} // namespace ph
