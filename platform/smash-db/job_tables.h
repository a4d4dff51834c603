// Jobs and their errors.
#pragma once

#include "smash-db/table.h"

#include <platform/smash_db_jobs.h>

namespace smash {

struct JobTableRow {
    StoredJobRow stored;
    std::int64_t changedAt; // seconds since boot
};
extern const TableOf<JobTableRow> jobTable;
extern const TableOf<StoredJobRow> storedJobColumns; // of the same table, what its readers get

struct JobSequenceRow {
    std::int64_t last; // number of the youngest job ever
};
extern const TableOf<JobSequenceRow> jobSequenceTable;

struct JobErrorTableRow {
    JobErrorRow error;
    std::int64_t storedAt; // seconds since boot
};
extern const TableOf<JobErrorTableRow> jobErrorTable;
extern const TableOf<JobErrorRow> storedErrorColumns; // of the same table

} // namespace smash
