/* SMASH database: the registry of event messages. For the common rules see smash_db.h. */
#ifndef PLATFORM_SMASH_DB_MESSAGES_H
#define PLATFORM_SMASH_DB_MESSAGES_H

#include <stdint.h>

#include "platform/smash_db_handle.h"

#ifdef __cplusplus
extern "C" {
#endif

/* Finds the number of an event's description, from 1. A description that has none yet gets the next, so
 * that events with the same words have the same number as long as the database is kept. */
int db_get_MessageID(SMASH_DB_HANDLE handle, const char* description, int32_t* messageId);

#ifdef __cplusplus
}
#endif

#endif
