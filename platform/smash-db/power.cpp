// Rows of power management.
#include "smash-db/interface.h"
#include "smash-db/power_tables.h"

#include <platform/smash_db_power.h>

using namespace smash;

int db_get_all_power_mgt_service(SMASH_DB_HANDLE handle, PowerServiceRow** rows, int* count) {
    return getRows(__func__, handle, rows, count, powerServiceTable);
}

int db_get_power_mgt_service(SMASH_DB_HANDLE handle, const char* name, PowerServiceRow** row) {
    return getRow(__func__, handle, row, powerServiceTable, "WHERE name = ?", {name});
}

int db_get_all_power_mgt_capabilities(SMASH_DB_HANDLE handle, PowerCapabilitiesRow** rows, int* count) {
    return getRows(__func__, handle, rows, count, powerCapabilitiesTable);
}

int db_get_power_mgt_capabilities(SMASH_DB_HANDLE handle, const char* instanceId,
                                  PowerCapabilitiesRow** row) {
    return getRow(__func__, handle, row, powerCapabilitiesTable, "WHERE instanceId = ?", {instanceId});
}
