// Physical packages, and the ratings of power supplies.
#pragma once

#include "smash-db/table.h"

#include <platform/smash_db_packages.h>

namespace smash {

extern const TableOf<PackageRow> packageTable;
extern const TableOf<PowerSupplyInfoRow> powerSupplyInfoTable;

} // namespace smash
