// Rows of physical packages.
#include "smash-db/interface.h"
#include "smash-db/package_tables.h"

#include <platform/smash_db_packages.h>

using namespace smash;

int db_get_all_packages(SMASH_DB_HANDLE handle, PackageRow** rows, int* count) {
    return getRows(__func__, handle, rows, count, packageTable);
}

int db_get_package(SMASH_DB_HANDLE handle, const char* tag, PackageRow** row) {
    return getRow(__func__, handle, row, packageTable, "WHERE tag = ?", {tag});
}

int db_get_power_supply_info(SMASH_DB_HANDLE handle, int entityId, int entityInstance,
                             PowerSupplyInfoRow** row) {
    return getRow(__func__, handle, row, powerSupplyInfoTable, "WHERE entityId = ? AND entityInstance = ?",
                  {entityId, entityInstance}, NoRow::IsSuccess);
}
