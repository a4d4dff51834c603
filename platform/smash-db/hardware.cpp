// Rows of the host's hardware.
#include "smash-db/hardware_tables.h"
#include "smash-db/interface.h"

#include <platform/smash_db_hardware.h>

using namespace smash;

namespace {

constexpr const char* ofEntity = "WHERE entityId = ? AND entityInstance = ?";

} // namespace

int db_get_processor(SMASH_DB_HANDLE handle, int entityId, int entityInstance, ProcessorRow** row) {
    return getRow(__func__, handle, row, processorTable, ofEntity, {entityId, entityInstance},
                  NoRow::IsSuccess);
}

int db_get_all_processors(SMASH_DB_HANDLE handle, ProcessorRow** rows, int* count) {
    return getRows(__func__, handle, rows, count, processorTable);
}

int db_get_memory(SMASH_DB_HANDLE handle, MemoryRow** row) {
    return getRow(__func__, handle, row, memoryTable, "", {}, NoRow::IsSuccess);
}

int db_get_memory_module(SMASH_DB_HANDLE handle, int entityId, int entityInstance, MemoryModuleRow** row) {
    return getRow(__func__, handle, row, memoryModuleTable, ofEntity, {entityId, entityInstance},
                  NoRow::IsSuccess);
}

int db_get_all_memory_modules(SMASH_DB_HANDLE handle, MemoryModuleRow** rows, int* count) {
    return getRows(__func__, handle, rows, count, memoryModuleTable);
}

int db_get_all_connectors(SMASH_DB_HANDLE handle, ConnectorRow** rows, int* count) {
    return getRows(__func__, handle, rows, count, connectorTable);
}

int db_get_all_pci_devices(SMASH_DB_HANDLE handle, PciDeviceRow** rows, int* count) {
    return getRows(__func__, handle, rows, count, pciDeviceTable);
}
