/* SMASH database: power management services and what they can do. For the common rules see smash_db.h. */
#ifndef PLATFORM_SMASH_DB_POWER_H
#define PLATFORM_SMASH_DB_POWER_H

#include <stdint.h>

#include "platform/smash_db_handle.h"

#ifdef __cplusplus
extern "C" {
#endif

/* The service that switches one managed system's power, published as CIM_PowerManagementService. The one
 * named "SP Power Management Service" restarts the service processor, any other switches the host. Lists are
 * decimal numbers separated by commas. */
typedef struct {
    char name[64]; /* identifies the row */
    char elementName[64];
    char operationalStatus[64]; /* list; DMTF OperationalStatus: 2 OK */
    uint16_t healthState;       /* 5 OK */
    uint16_t enabledState;      /* 2 enabled */
    uint16_t requestedState;    /* 12 not applicable */
    uint8_t started;            /* 1: the service is running */
} PowerServiceRow;

/* Reads all services in the order they were stored; none is a success with NULL and 0. */
int db_get_all_power_mgt_service(SMASH_DB_HANDLE handle, PowerServiceRow** rows, int* count);
/* Reads the service of this name; none is a failure. */
int db_get_power_mgt_service(SMASH_DB_HANDLE handle, const char* name, PowerServiceRow** row);

/* What a service can do, published as CIM_PowerManagementCapabilities. */
typedef struct {
    char instanceId[64]; /* identifies the row */
    char elementName[64];
    /* Lists. PowerChangeCapabilities: 3 power state settable, 4 power cycling, 6 hard power cycling, 7
     * hardware reset, 8 graceful shutdown. Power states: 2 on, 5 soft cycle, 6 hard off, 8 soft off, 9 hard
     * cycle, 10 reset, 11 diagnostic interrupt. */
    char powerChangeCapabilities[64];
    char powerStatesSupported[64];
    char requestedPowerStatesSupported[64];
} PowerCapabilitiesRow;

int db_get_all_power_mgt_capabilities(SMASH_DB_HANDLE handle, PowerCapabilitiesRow** rows, int* count);
int db_get_power_mgt_capabilities(SMASH_DB_HANDLE handle, const char* instanceId, PowerCapabilitiesRow** row);

#ifdef __cplusplus
}
#endif

#endif
