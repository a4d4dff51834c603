/* SMASH database: opening and closing. For the common rules see smash_db.h. */
#ifndef PLATFORM_SMASH_DB_HANDLE_H
#define PLATFORM_SMASH_DB_HANDLE_H

#ifdef __cplusplus
extern "C" {
#endif

typedef struct SmashDatabase* SMASH_DB_HANDLE;

/* Opens the database of the BMC's inventory and settings ("/conf/smash.db"). It must exist: sync creates it. */
int db_init(SMASH_DB_HANDLE* handle);
/* Opens the temporary database of jobs and errors ("/tmp/method_jobs.db"), created when it is missing or not
 * usable. A file of another user's, a link or a pipe in its place is a failure. */
int tmp_db_init(SMASH_DB_HANDLE* handle);
/* Opens the same database as db_init for settings that clients write; created when it is missing. */
int smash_db_init(SMASH_DB_HANDLE* handle);
/* Closes a handle; NULL is a failure. */
int db_close(SMASH_DB_HANDLE handle);
/* Why the last call of the calling thread that failed did so: a text that names the database file, empty
 * before the first failure. It stays valid until that thread's next failure. */
const char* db_last_error(void);

#ifdef __cplusplus
}
#endif

#endif
