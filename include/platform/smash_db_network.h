/* SMASH database: addresses that clients have staged. For the common rules see smash_db.h. The functions
 * expect a handle of smash_db_init. */
#ifndef PLATFORM_SMASH_DB_NETWORK_H
#define PLATFORM_SMASH_DB_NETWORK_H

#include <stdint.h>

#include "platform/smash_db_handle.h"

#ifdef __cplusplus
extern "C" {
#endif

/* A static address that waits to be applied, published as CIM_StaticIPAssignmentSettingData. Addresses are
 * texts. */
typedef struct {
    char key[256]; /* "1" */
    char IPv4Address[256];
    char GatewayIPv4Address[256];
    char SubnetMask[256];
    char IPv6Address[256];
    int32_t IPv6AddressType;        /* DMTF IPv6AddressType */
    int32_t IPv6SubnetPrefixLength; /* bits, 0 to 128 */
    char GatewayIPv6Address[256];
} StaticIPRow;

/* Stores this row in an empty table, at once: a row that somebody stored meanwhile stays. */
int db_init_static_ip_assignment_settingdata(SMASH_DB_HANDLE handle, const StaticIPRow* row);
/* Stores a row, replacing the one that has its key. */
int db_set_static_ip_assignment_settingdata(SMASH_DB_HANDLE handle, const StaticIPRow* row);
/* Reads all rows, in the order they were stored in; none is a success with NULL and 0. */
int db_get_all_static_ip_assignment_settingdata(SMASH_DB_HANDLE handle, StaticIPRow** rows, int* count);
/* Removes all rows. */
int db_delete_static_ip(SMASH_DB_HANDLE handle);

#ifdef __cplusplus
}
#endif

#endif
