#include "smash-db/job_tables.h"

namespace smash {
namespace {

constexpr std::array jobColumns = {
    SMASH_COLUMN(StoredJobRow, instanceId),
    SMASH_COLUMN_AS(StoredJobRow, job.elementName, "elementName"),
    SMASH_COLUMN_AS(StoredJobRow, job.kind, "kind"),
    SMASH_COLUMN_AS(StoredJobRow, job.jobState, "jobState"),
    SMASH_COLUMN_AS(StoredJobRow, job.jobStatus, "jobStatus"),
    SMASH_COLUMN_AS(StoredJobRow, job.deleteOnCompletion, "deleteOnCompletion"),
    SMASH_COLUMN_AS(StoredJobRow, job.minutesToKeep, "minutesToKeep"),
    SMASH_COLUMN_AS(StoredJobRow, job.operationalStatus, "operationalStatus"),
    SMASH_COLUMN_AS(StoredJobRow, job.percentComplete, "percentComplete"),
};

static_assert(offsetof(JobTableRow, stored) == 0);
constexpr auto tableColumns =
    extend(jobColumns, std::to_array<Column>({SMASH_COLUMN(JobTableRow, changedAt)}));

constexpr std::array sequenceColumns = {SMASH_COLUMN(JobSequenceRow, last)};

constexpr std::array errorColumns = {
    SMASH_COLUMN(JobErrorRow, errorSource),       SMASH_COLUMN(JobErrorRow, errorType),
    SMASH_COLUMN(JobErrorRow, perceivedSeverity), SMASH_COLUMN(JobErrorRow, probableCause),
    SMASH_COLUMN(JobErrorRow, errorSourceFormat), SMASH_COLUMN(JobErrorRow, cimStatusCode),
};

static_assert(offsetof(JobErrorTableRow, error) == 0);
constexpr auto errorTableColumns =
    extend(errorColumns, std::to_array<Column>({SMASH_COLUMN(JobErrorTableRow, storedAt)}));

} // namespace

constexpr TableOf<JobTableRow> jobTable{"concrete_job", tableColumns, 1};
constexpr TableOf<StoredJobRow> storedJobColumns{"concrete_job", jobColumns, 1};
constexpr TableOf<JobSequenceRow> jobSequenceTable{"job_sequence", sequenceColumns, 0};
constexpr TableOf<JobErrorTableRow> jobErrorTable{"job_error", errorTableColumns, 1};
constexpr TableOf<JobErrorRow> storedErrorColumns{"job_error", errorColumns, 1};

} // namespace smash
