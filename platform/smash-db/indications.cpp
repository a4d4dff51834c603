// Rows about indications.
#include "smash-db/indication_tables.h"
#include "smash-db/interface.h"

#include <platform/smash_db_indications.h>

using namespace smash;

int db_get_all_indication_filter_cimxml(SMASH_DB_HANDLE handle, CimxmlFilterRow** rows, int* count) {
    return getRows(__func__, handle, rows, count, cimxmlFilterTable);
}

int db_get_indication_filter_cimxml(SMASH_DB_HANDLE handle, CimxmlFilterRow* row) {
    return fillRow(__func__, handle, row, cimxmlFilterTable);
}

int db_set_indication_filter_cimxml(SMASH_DB_HANDLE handle, const CimxmlFilterRow* row) {
    return setRow(__func__, handle, row, cimxmlFilterTable);
}

int db_delete_indication_filter_cimxml(SMASH_DB_HANDLE handle, const char* name) {
    return removeRow(__func__, handle, cimxmlFilterTable, name);
}

int db_get_all_listener_destination(SMASH_DB_HANDLE handle, CimxmlDestinationRow** rows, int* count) {
    return getRows(__func__, handle, rows, count, cimxmlDestinationTable);
}

int db_get_listener_destination(SMASH_DB_HANDLE handle, CimxmlDestinationRow* row) {
    return fillRow(__func__, handle, row, cimxmlDestinationTable);
}

int db_set_listener_destination(SMASH_DB_HANDLE handle, const CimxmlDestinationRow* row) {
    return setRow(__func__, handle, row, cimxmlDestinationTable);
}

int db_delete_listener_destination(SMASH_DB_HANDLE handle, const char* name) {
    return removeRow(__func__, handle, cimxmlDestinationTable, name);
}

int db_get_all_indication_service(SMASH_DB_HANDLE handle, IndicationServiceRow** rows, int* count) {
    return getRows(__func__, handle, rows, count, indicationServiceTable);
}

int db_set_indication_service(SMASH_DB_HANDLE handle, const IndicationServiceRow* row) {
    return setRow(__func__, handle, row, indicationServiceTable);
}
