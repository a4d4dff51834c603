/* SMASH database: what libProviderHelper keeps about the BMC, and the rows it exchanges with it.
 *
 * Common rules:
 *   - every function returns 0 for success and 1 for failure; on failure no row is handed out;
 *   - a row or row array handed out is one heap block, owned by the caller, released with free();
 *   - texts are NUL-terminated UTF-8; a longer text is cut at its field's width;
 *   - a handle serves one thread at a time; several processes may use the same database.
 *
 * The rows are declared by subject, in the headers included here. */
#ifndef PLATFORM_SMASH_DB_H
#define PLATFORM_SMASH_DB_H

#include "platform/smash_db_devices.h"
#include "platform/smash_db_handle.h"
#include "platform/smash_db_hardware.h"
#include "platform/smash_db_indications.h"
#include "platform/smash_db_inventory.h"
#include "platform/smash_db_jobs.h"
#include "platform/smash_db_messages.h"
#include "platform/smash_db_network.h"
#include "platform/smash_db_packages.h"
#include "platform/smash_db_power.h"

#endif
