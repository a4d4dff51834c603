// The tables of devices that sensors watch, and of entities that contain others.
#pragma once

#include "smash-db/table.h"

#include <platform/smash_db_devices.h>

namespace smash {

extern const TableOf<EntityDeviceRow> entityDeviceTable;
extern const TableOf<EntityAssociationRow> entityAssociationTable;

} // namespace smash
