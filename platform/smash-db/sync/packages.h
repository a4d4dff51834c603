// The physical packages of the machine: FRU devices, and entities that are located otherwise.
#pragma once

#include "smash-db/sync/fru_contents.h"
#include "smash-db/sync/sdr_mapping.h"

#include <platform/smash_db_packages.h>

#include <vector>

namespace smash {

struct Packages {
    std::vector<PackageRow> packages;
    std::vector<PowerSupplyInfoRow> powerSupplies;
};

// Makes the rows of the packages that are installed. docs/sdr-mapping.md says how that is found out, and what the
// rows hold.
Packages readPackages(ipmi::Transport& bmc, const SdrMapping& records, FruDevices& devices);

} // namespace smash
