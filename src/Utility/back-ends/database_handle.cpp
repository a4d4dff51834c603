#include "provider_helper/utility.h"

#include <cstdio>

namespace {

// The log has this line for every failure, closing included.
int report(bool failed) {
    if (!failed)
        return 0;
    std::puts("\nUnable to create handle for DB Access");
    return -1;
}

} // namespace

int PH_CreateDBHandle(SMASH_DB_HANDLE* handle) {
    return report(db_init(handle) != 0);
}

int PH_CreateTmpDBHandle(SMASH_DB_HANDLE* handle) {
    return report(tmp_db_init(handle) != 0);
}

int PH_CreateSmashDBHandle(SMASH_DB_HANDLE* handle) {
    return report(smash_db_init(handle) != 0);
}

int PH_CloseDBHandle(SMASH_DB_HANDLE handle) {
    return report(db_close(handle) == 1);
}
