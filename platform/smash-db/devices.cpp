// Rows of devices and of the entities that contain others.
#include "smash-db/device_tables.h"
#include "smash-db/interface.h"

#include <platform/smash_db_devices.h>

using namespace smash;

int db_get_all_entity_devices(SMASH_DB_HANDLE handle, EntityDeviceRow** rows, int* count) {
    return getRows(__func__, handle, rows, count, entityDeviceTable);
}

int db_get_all_entity_associations(SMASH_DB_HANDLE handle, EntityAssociationRow** rows, int* count) {
    return getRows(__func__, handle, rows, count, entityAssociationTable);
}
