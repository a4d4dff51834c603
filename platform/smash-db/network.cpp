// Rows of staged addresses.
#include "smash-db/interface.h"
#include "smash-db/network_tables.h"

using namespace smash;

int db_init_static_ip_assignment_settingdata(SMASH_DB_HANDLE handle, const StaticIPRow* row) {
    return inTransaction(__func__, handle, [&](SQLite::Database& database) {
        require(row != nullptr);
        if (read(select(database, staticIpTable), staticIpTable).count == 0)
            replace(database, staticIpTable, *row);
    });
}

int db_set_static_ip_assignment_settingdata(SMASH_DB_HANDLE handle, const StaticIPRow* row) {
    return setRow(__func__, handle, row, staticIpTable);
}

int db_get_all_static_ip_assignment_settingdata(SMASH_DB_HANDLE handle, StaticIPRow** rows, int* count) {
    return getRows(__func__, handle, rows, count, staticIpTable);
}

int db_delete_static_ip(SMASH_DB_HANDLE handle) {
    return inTransaction(__func__, handle, [](SQLite::Database& database) {
        replaceAll(database, staticIpTable, std::span<const StaticIPRow>());
    });
}
