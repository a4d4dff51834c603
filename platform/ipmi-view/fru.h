// The FRU devices of a BMC and what their areas say (IPMI 2.0 34, Platform Management FRU Information Storage
// Definition).
#pragma once

#include "smash-db/sync/fru_contents.h"

namespace view {

struct FruDevice {
    std::uint8_t id;
    std::string name; // of its locator record; empty where it is not known
    std::optional<smash::FruContents> contents;
    std::vector<std::string> problems; // why parts, or all, of it could not be read
};

// Finds the devices that the BMC answers for: device 0, and those of the locator records in the SDR repository.
// Their contents are not read yet. Throws what ipmi::run throws.
std::vector<FruDevice> findFruDevices(ipmi::Transport& bmc);
// Reads its contents; what the BMC refuses and what is malformed becomes a problem. Throws
// ipmi::TransportError.
void readFru(ipmi::Transport& bmc, FruDevice& device);

struct FruField {
    const char* area; // "Chassis", "Board" or "Product"
    const char* name; // "Serial number"
    std::string value;
};
// All fields that are not empty, in the order of the areas.
std::vector<FruField> fieldsOf(const smash::FruContents& contents);

} // namespace view
