/* SMASH database: what clients set about indications. For the common rules see smash_db.h. */
#ifndef PLATFORM_SMASH_DB_INDICATIONS_H
#define PLATFORM_SMASH_DB_INDICATIONS_H

#include <assert.h>
#include <stddef.h>
#include <stdint.h>

#include "platform/smash_db_handle.h"

#ifdef __cplusplus
extern "C" {
#endif

/* A filter for CIM-XML listeners, with what its query selects. */
typedef struct {
    char name[256];       /* identifies the row */
    char query[512];      /* as the client gave it */
    int32_t sensorNumber; /* FFh: any */
    int32_t sensorType;   /* FFh: any */
    int32_t severity;     /* event severity bits of a platform event filter, see CIM_PEFEntry */
} CimxmlFilterRow;
static_assert(offsetof(CimxmlFilterRow, query) == 256 && offsetof(CimxmlFilterRow, sensorNumber) == 768 &&
                  offsetof(CimxmlFilterRow, sensorType) == 772 &&
                  offsetof(CimxmlFilterRow, severity) == 776 && sizeof(CimxmlFilterRow) == 780,
              "layout shared with the platform");

/* Reads all filters; none is a success with NULL and 0. */
int db_get_all_indication_filter_cimxml(SMASH_DB_HANDLE handle, CimxmlFilterRow** rows, int* count);
/* Fills `row` with the filter that has the name in it; none is a failure that leaves the row as it was. */
int db_get_indication_filter_cimxml(SMASH_DB_HANDLE handle, CimxmlFilterRow* row);
/* Stores a filter, in the place of the one with its name. */
int db_set_indication_filter_cimxml(SMASH_DB_HANDLE handle, const CimxmlFilterRow* row);
/* A name that no filter has is a failure. */
int db_delete_indication_filter_cimxml(SMASH_DB_HANDLE handle, const char* name);

/* A listener that indications are posted to. */
typedef struct {
    char name[256];        /* identifies the row */
    char destination[256]; /* URL */
} CimxmlDestinationRow;
static_assert(offsetof(CimxmlDestinationRow, destination) == 256 && sizeof(CimxmlDestinationRow) == 512,
              "layout shared with the platform");

/* These work as those of filters do. */
int db_get_all_listener_destination(SMASH_DB_HANDLE handle, CimxmlDestinationRow** rows, int* count);
int db_get_listener_destination(SMASH_DB_HANDLE handle, CimxmlDestinationRow* row);
int db_set_listener_destination(SMASH_DB_HANDLE handle, const CimxmlDestinationRow* row);
int db_delete_listener_destination(SMASH_DB_HANDLE handle, const char* name);

#ifdef __cplusplus
}
#endif

#endif
