// Rows of jobs and their errors.
#include "smash-db/interface.h"
#include "smash-db/job_tables.h"

#include <platform/smash_db_jobs.h>

#include <cinttypes>
#include <cstdio>
#include <cstring>
#include <ctime>

using namespace smash;

namespace {

constexpr std::size_t instanceIdSize = 64;
// Seconds, more than the longest method takes. A job that runs longer belongs to a process that died. Errors
// of the daemon's jobs, of which nothing is known here, are kept for this time too.
#define UPPER_AGE "3600"

// The time is ?1. A change in the future was made before the last boot. DMTF JobState: 7 completed, 10
// exception and the first of those that end a job badly.
#define JOB_IS_KEPT                                                                                          \
    "(deleteOnCompletion = 0 OR (changedAt <= ?1 AND ?1 < changedAt + CASE WHEN jobState = 7 OR"             \
    " jobState >= 10 THEN 60 * CAST(minutesToKeep AS INTEGER) ELSE " UPPER_AGE " END))"

// Times are seconds since boot, because a BMC without a battery learns the time of day long after its first
// jobs.
std::int64_t now() {
    timespec time{};
    clock_gettime(CLOCK_BOOTTIME, &time);
    return time.tv_sec;
}

void removeOldRows(SQLite::Database& database) {
    constexpr const char* statements[] = {
        "DELETE FROM concrete_job WHERE NOT " JOB_IS_KEPT,
        "DELETE FROM job_error WHERE errorSource NOT IN (SELECT instanceId FROM concrete_job) AND"
        " (errorSource NOT LIKE '%clp-job%' OR storedAt > ?1 OR ?1 >= storedAt + " UPPER_AGE ")"};
    for (const char* statement : statements) {
        SQLite::Statement removal(database, statement);
        removal.bind(1, now());
        removal.exec();
    }
}

std::int64_t nextNumber(SQLite::Database& database) {
    const auto known = read(select(database, jobSequenceTable), jobSequenceTable);
    const JobSequenceRow next{known.count > 0 ? known.records->last + 1 : 1};
    replace(database, jobSequenceTable, next);
    return next.last;
}

int getError(const char* function, SMASH_DB_HANDLE handle, const char* instanceId, JobErrorRow** error) {
    return getRow(function, handle, error, storedErrorColumns,
                  "WHERE errorSource NOT IN (SELECT instanceId FROM concrete_job WHERE NOT " JOB_IS_KEPT ")"
                  " AND errorSource = ?",
                  {now(), instanceId}, NoRow::IsSuccess);
}

} // namespace

int db_set_concretejob(SMASH_DB_HANDLE handle, const ConcreteJobRow* job, char* instanceId) {
    return inTransaction(__func__, handle, [&](SQLite::Database& database) {
        require(job != nullptr && instanceId != nullptr);
        removeOldRows(database);
        JobTableRow row{};
        row.stored.job = *job;
        row.changedAt = now();
        std::snprintf(row.stored.instanceId, sizeof row.stored.instanceId, "ProviderHelper:Job-%" PRId64,
                      nextNumber(database));
        replace(database, jobTable, row);
        std::memcpy(instanceId, row.stored.instanceId, instanceIdSize);
    });
}

int db_modify_concretejob(SMASH_DB_HANDLE handle, const char* instanceId, const char* jobStatus,
                          const char* operationalStatus, int percentComplete, int jobState) {
    return inTransaction(__func__, handle, [&](SQLite::Database& database) {
        require(instanceId != nullptr && jobStatus != nullptr && operationalStatus != nullptr);
        change(database,
               "UPDATE concrete_job SET jobStatus = ?, operationalStatus = ?, percentComplete = ?,"
               " jobState = ?, changedAt = ? WHERE instanceId = ?",
               jobStatus, operationalStatus, percentComplete, jobState, now(), instanceId);
    });
}

int db_get_all_concretejob(SMASH_DB_HANDLE handle, StoredJobRow** rows, int* count) {
    return getRows(__func__, handle, rows, count, storedJobColumns, "WHERE " JOB_IS_KEPT " ORDER BY rowid",
                   {now()});
}

int db_get_concretejob(SMASH_DB_HANDLE handle, const char* instanceId, StoredJobRow** row) {
    return getRow(__func__, handle, row, storedJobColumns, "WHERE " JOB_IS_KEPT " AND instanceId = ?",
                  {now(), instanceId});
}

int db_delete_concretejob(SMASH_DB_HANDLE handle, const char* instanceId) {
    return inTransaction(__func__, handle, [&](SQLite::Database& database) {
        require(instanceId != nullptr);
        if (std::strstr(instanceId, "clp-job") == nullptr)
            change(database, "DELETE FROM concrete_job WHERE " JOB_IS_KEPT " AND instanceId = ?", now(),
                   instanceId);
        SQLite::Statement errors(database, "DELETE FROM job_error WHERE errorSource = ?");
        errors.bind(1, instanceId);
        errors.exec();
    });
}

int db_set_error_info(SMASH_DB_HANDLE handle, const JobErrorRow* error) {
    return inTransaction(__func__, handle, [&](SQLite::Database& database) {
        require(error != nullptr);
        removeOldRows(database);
        replace(database, jobErrorTable, {*error, now()});
    });
}

int db_get_error_info(SMASH_DB_HANDLE handle, const char* instanceId, JobErrorRow** error) {
    return getError(__func__, handle, instanceId, error);
}

int db_get_clp_error_info(SMASH_DB_HANDLE handle, const char* instanceId, JobErrorRow** error) {
    return getError(__func__, handle, instanceId, error);
}
