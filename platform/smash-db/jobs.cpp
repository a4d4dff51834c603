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
constexpr int exceptionState = 10; // DMTF JobState: the first of those that end a job badly
constexpr int completedState = 7;

// Of a job that is kept, at time `?`.
#define JOB_IS_KEPT                                                                                          \
    "(endedAt = 0 OR deleteOnCompletion = 0 OR endedAt + 60 * CAST(minutesToKeep AS INTEGER) > ?)"

std::int64_t now() {
    return std::time(nullptr);
}

std::int64_t endOf(int jobState) {
    return jobState == completedState || jobState >= exceptionState ? now() : 0;
}

void removeOldJobs(SQLite::Database& database) {
    SQLite::Statement jobs(database, "DELETE FROM concrete_job WHERE NOT " JOB_IS_KEPT);
    jobs.bind(1, now());
    if (jobs.exec() > 0)
        database.exec("DELETE FROM job_error WHERE errorSource NOT LIKE '%clp-job%' AND"
                      " errorSource NOT IN (SELECT instanceId FROM concrete_job)");
}

std::int64_t nextNumber(SQLite::Database& database) {
    const auto known = read(select(database, jobSequenceTable), jobSequenceTable);
    const JobSequenceRow next{known.count > 0 ? known.records->last + 1 : 1};
    replace(database, jobSequenceTable, next);
    return next.last;
}

int getError(const char* function, SMASH_DB_HANDLE handle, const char* instanceId, JobErrorRow** error) {
    return getRow(function, handle, error, jobErrorTable, NoRow::IsSuccess, "WHERE errorSource = ?",
                  instanceId);
}

} // namespace

int db_set_concretejob(SMASH_DB_HANDLE handle, const ConcreteJobRow* job, char* instanceId) {
    return inTransaction(__func__, handle, [&](SQLite::Database& database) {
        require(job != nullptr && instanceId != nullptr);
        removeOldJobs(database);
        JobTableRow row{};
        row.stored.job = *job;
        row.endedAt = endOf(job->jobState);
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
               " jobState = ?, endedAt = ? WHERE instanceId = ?",
               jobStatus, operationalStatus, percentComplete, jobState, endOf(jobState), instanceId);
    });
}

int db_get_all_concretejob(SMASH_DB_HANDLE handle, StoredJobRow** rows, int* count) {
    return getRows(__func__, handle, rows, count, storedJobColumns, "WHERE " JOB_IS_KEPT " ORDER BY rowid",
                   now());
}

int db_get_concretejob(SMASH_DB_HANDLE handle, const char* instanceId, StoredJobRow** row) {
    return getRow(__func__, handle, row, storedJobColumns, "WHERE " JOB_IS_KEPT " AND instanceId = ?", now(),
                  instanceId);
}

int db_delete_concretejob(SMASH_DB_HANDLE handle, const char* instanceId) {
    return inTransaction(__func__, handle, [&](SQLite::Database& database) {
        require(instanceId != nullptr);
        change(database, "DELETE FROM concrete_job WHERE instanceId = ?", instanceId);
        SQLite::Statement errors(database, "DELETE FROM job_error WHERE errorSource = ?");
        errors.bind(1, instanceId);
        errors.exec();
    });
}

int db_set_error_info(SMASH_DB_HANDLE handle, const JobErrorRow* error) {
    return setRow(__func__, handle, error, jobErrorTable);
}

int db_get_error_info(SMASH_DB_HANDLE handle, const char* instanceId, JobErrorRow** error) {
    return getError(__func__, handle, instanceId, error);
}

int db_get_clp_error_info(SMASH_DB_HANDLE handle, const char* instanceId, JobErrorRow** error) {
    return getError(__func__, handle, instanceId, error);
}
