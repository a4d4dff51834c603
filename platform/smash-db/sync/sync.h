// Fills the SMASH database from a BMC: devices, FRU inventory, sensors.
#pragma once

#include "ipmi/transport.h"

#include <cstddef>
#include <functional>
#include <string>
#include <string_view>
#include <vector>

namespace smash {

// Something of the BMC that is missing in the database, and why.
struct SyncRemark {
    std::string source; // "SDR record 0x0012", "FRU device 3", "device GUID"
    std::string reason;
    // It was dropped because it could not be read or is malformed. Otherwise it is something that BMCs may be
    // without, or that is not served.
    bool isLoss = false;
};

struct SyncReport {
    std::size_t recordsRead = 0;    // SDR records of all types
    std::size_t numericSensors = 0; // rows, CIM_NumericSensor
    std::size_t sensors = 0;        // rows, CIM_Sensor
    std::size_t frus = 0;           // rows
    std::size_t packages = 0;       // rows
    std::vector<SyncRemark> remarks;
};

// `done` of `total` steps of a phase ("device", "SDR", "FRU", "database"). Called from sync's thread.
using SyncProgress = std::function<void(std::string_view phase, std::size_t done, std::size_t total)>;

// Reads the BMC, then replaces the rows of devices, FRUs, packages, sensors and power services in one
// transaction; the session row stays, and so do each device's requested state and the indication service. The
// database is created when it is missing.
// Throws a std::runtime_error (ipmi::TransportError when the BMC stopped answering) and leaves the database
// as it was.
SyncReport sync(ipmi::Transport& bmc, const SyncProgress& progress = {});

} // namespace smash
