// Fills the SMASH database from a BMC: devices, FRU inventory, sensors.
#pragma once

#include "ipmi/transport.h"

#include <cstddef>
#include <filesystem>
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
    std::string hardwareSource;     // of the host's SMBIOS table; empty without one
    std::size_t processors = 0;     // rows, as the following three
    std::size_t memoryModules = 0;
    std::size_t connectors = 0; // slots, sockets and ports
    std::size_t pciDevices = 0;
    std::vector<SyncRemark> remarks;
};

// `done` of `total` steps of a phase ("device", "SDR", "FRU", "SMBIOS", "database"). Called from sync's thread.
using SyncProgress = std::function<void(std::string_view phase, std::size_t done, std::size_t total)>;

// Reads the BMC and the host's SMBIOS table, then replaces the rows of devices, FRUs, packages, sensors, hardware and power
// services in one transaction; the session row stays, and so do each device's requested state and the indication service. The
// database is created when it is missing.
// Throws a std::runtime_error (ipmi::TransportError when the BMC stopped answering) and leaves the database
// as it was. `smbiosFile` is the host's SMBIOS table (see smbios_source.h); empty: that of the BMC, or the one that was kept.
SyncReport sync(ipmi::Transport& bmc, const SyncProgress& progress = {},
                const std::filesystem::path& smbiosFile = {});

} // namespace smash
