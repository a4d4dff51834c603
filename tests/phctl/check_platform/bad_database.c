/* A database whose functions break their contracts, each in a way of its own. */
#include <platform/smash_db.h>

#include <stdlib.h>
#include <string.h>

static int opened;

int db_init(SMASH_DB_HANDLE* handle) {
    *handle = (SMASH_DB_HANDLE)&opened;
    return 0;
}

int db_close(SMASH_DB_HANDLE handle) {
    (void)handle; /* NULL would have to be a failure */
    return 0;
}

int db_get_ipmi_session_info(SMASH_DB_HANDLE handle, IPMISessionInfo** info) {
    (void)handle;
    *info = calloc(1, sizeof **info);
    return 0;
}

/* The rows are no block of the heap. */
int db_get_all_compact_sdrs(SMASH_DB_HANDLE handle, CompactSdr** rows, int* count) {
    static CompactSdr row;
    (void)handle;
    memset(&row, 0, sizeof row);
    *rows = &row;
    *count = 1;
    return 0;
}

int db_get_all_full_sdrs(SMASH_DB_HANDLE handle, FullSdr** rows, int* count) {
    (void)handle;
    *rows = NULL;
    *count = 0;
    return -1;
}

static PackageRow* packages(int count) {
    PackageRow* rows = calloc((size_t)count, sizeof *rows);
    for (int i = 0; i < count; ++i) {
        strcpy(rows[i].tag, "10.1");
        rows[i].entityId = 10;
        rows[i].entityInstance = 1;
    }
    return rows;
}

int db_get_all_packages(SMASH_DB_HANDLE handle, PackageRow** rows, int* count) {
    (void)handle;
    *count = 2;
    *rows = packages(*count);
    memset((*rows)[1].model, 'x', sizeof(*rows)[1].model);
    return 0;
}

/* Any key has a row. */
int db_get_package(SMASH_DB_HANDLE handle, const char* tag, PackageRow** row) {
    (void)handle, (void)tag;
    *row = packages(1);
    strcpy((*row)->model, "another one");
    return 0;
}

/* The count is not that of the rows. */
int db_get_all_power_mgt_service(SMASH_DB_HANDLE handle, PowerServiceRow** rows, int* count) {
    (void)handle;
    *rows = calloc(1, 8);
    *count = 20;
    return 0;
}

int db_get_device_bytype(SMASH_DB_HANDLE handle, int type, DeviceRecord** device) {
    (void)handle, (void)type;
    *device = calloc(1, sizeof **device);
    return 1;
}
