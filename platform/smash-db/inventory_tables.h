// How to reach the BMC, its devices, FRUs and sensors.
#pragma once

#include "smash-db/table.h"

#include <platform/smash_db_inventory.h>

namespace smash {

extern const TableOf<IPMISessionInfo> sessionTable;
extern const TableOf<DeviceRecord> deviceTable;
extern const TableOf<FruRecord> fruTable;
extern const TableOf<CompactSdr> compactSdrTable;
extern const TableOf<FullSdr> fullSdrTable;

} // namespace smash
