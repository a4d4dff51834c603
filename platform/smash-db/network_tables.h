// Staged addresses.
#pragma once

#include "smash-db/table.h"

#include <platform/smash_db_network.h>

namespace smash {

extern const TableOf<StaticIPRow> staticIpTable;

} // namespace smash
