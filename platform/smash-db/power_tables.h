// Power management services and their capabilities.
#pragma once

#include "smash-db/table.h"

#include <platform/smash_db_power.h>

namespace smash {

extern const TableOf<PowerServiceRow> powerServiceTable;
extern const TableOf<PowerCapabilitiesRow> powerCapabilitiesTable;

} // namespace smash
