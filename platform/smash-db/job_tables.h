// Jobs and their errors.
#pragma once

#include "smash-db/table.h"

#include <platform/smash_db_jobs.h>

namespace smash {

struct JobTableRow {
    StoredJobRow stored;
    std::int64_t endedAt; // seconds since 1970, 0 while it runs
};
extern const TableOf<JobTableRow> jobTable;
extern const TableOf<StoredJobRow> storedJobColumns; // of the same table, what its readers get

struct JobSequenceRow {
    std::int64_t last; // number of the youngest job ever
};
extern const TableOf<JobSequenceRow> jobSequenceTable;

extern const TableOf<JobErrorRow> jobErrorTable;

} // namespace smash
