// Rows of the BMC's inventory.
#include "smash-db/interface.h"
#include "smash-db/inventory_tables.h"

#include <platform/smash_db_inventory.h>

using namespace smash;

namespace {

constexpr const char* ofEvent = "WHERE " SMASH_EVENT_NUMBER " = ? ORDER BY rowid";

} // namespace

int db_get_ipmi_session_info(SMASH_DB_HANDLE handle, IPMISessionInfo** info) {
    return getRow(__func__, handle, info, sessionTable);
}

int db_set_ipmi_session_info(SMASH_DB_HANDLE handle, const IPMISessionInfo* info) {
    return setRow(__func__, handle, info, sessionTable);
}

int db_get_device_bytype(SMASH_DB_HANDLE handle, int type, DeviceRecord** device) {
    return getRow(__func__, handle, device, deviceTable, "WHERE type = ?", {type});
}

int db_set_device(SMASH_DB_HANDLE handle, const DeviceRecord* device) {
    return setRow(__func__, handle, device, deviceTable);
}

int db_get_fru_by_entity_id(SMASH_DB_HANDLE handle, int entityId, FruRecord** fru) {
    return getRow(__func__, handle, fru, fruTable, "WHERE entityId = ? ORDER BY entityInstance LIMIT 1",
                  {entityId});
}

int db_get_all_compact_sdrs(SMASH_DB_HANDLE handle, CompactSdr** rows, int* count) {
    return getRows(__func__, handle, rows, count, compactSdrTable);
}

int db_get_all_full_sdrs(SMASH_DB_HANDLE handle, FullSdr** rows, int* count) {
    return getRows(__func__, handle, rows, count, fullSdrTable);
}

int db_get_compact_sdrs_of_event(SMASH_DB_HANDLE handle, int sensorNumber, CompactSdr** rows, int* count) {
    return getRows(__func__, handle, rows, count, compactSdrTable, ofEvent, {sensorNumber});
}

int db_get_full_sdrs_of_event(SMASH_DB_HANDLE handle, int sensorNumber, FullSdr** rows, int* count) {
    return getRows(__func__, handle, rows, count, fullSdrTable, ofEvent, {sensorNumber});
}

int db_get_compact_sdr(SMASH_DB_HANDLE handle, const char* deviceId, CompactSdr** row) {
    return getRow(__func__, handle, row, compactSdrTable, "WHERE deviceId = ?", {deviceId});
}

int db_get_full_sdr(SMASH_DB_HANDLE handle, const char* deviceId, FullSdr** row) {
    return getRow(__func__, handle, row, fullSdrTable, "WHERE deviceId = ?", {deviceId});
}
