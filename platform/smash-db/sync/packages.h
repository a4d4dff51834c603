// The physical packages of the machine: FRU devices, and entities that are located otherwise.
#pragma once

#include "smash-db/sync/fru_contents.h"
#include "smash-db/sync/sdr_mapping.h"

#include <platform/smash_db_packages.h>

#include <optional>
#include <string>
#include <vector>

namespace smash {

struct Packages {
    std::vector<PackageRow> packages;
    std::vector<PowerSupplyInfoRow> powerSupplies;
};

// Makes the row of a part of which nothing more is known.
PackageRow makePackage(std::uint8_t entityId, std::uint8_t entityInstance,
                       std::optional<std::uint8_t> fruDeviceId, const std::string& name);

// Makes a tag, "<beginning>:<name>". It is a key of object paths, which quote it: quotes become '_'.
std::string tagFrom(std::string beginning, const std::string& name);

// Makes the rows of the packages that are installed. docs/sdr-mapping.md says how that is found out, and what the
// rows hold.
Packages readPackages(ipmi::Transport& bmc, const SdrMapping& records, FruDevices& devices);

} // namespace smash
