// What a method records of its job.
#include "provider_helper/jobs.h"
#include "Utility/back-ends/back_ends.h"
#include "Utility/jobs/running_job.h"
#include "Utility/values/dmtf_values.h"
#include "Utility/values/record_fields.h"

#include <cstdio>

namespace {

constexpr int minutesToKeep = 5;

const char* statusText(int state) {
    return state == ph::JobState::Completed   ? "Completed"
           : state == ph::JobState::Exception ? "Exception"
                                              : "Running";
}

bool hasEnded(int state) {
    return state == ph::JobState::Completed || state == ph::JobState::Exception;
}

// Runs work(handle) on the temporary database. Returns -1 when the work, opening or closing fails, else 0.
template <class Work>
int onTemporaryDatabase(Work work) {
    SMASH_DB_HANDLE handle = nullptr;
    if (PH_CreateTmpDBHandle(&handle) != 0 || handle == nullptr)
        return -1;
    const bool done = work(handle) == 0;
    return PH_CloseDBHandle(handle) == 0 && done ? 0 : -1;
}

int createError(const char* instanceId, std::uint16_t type, CMPIrc code) {
    JobErrorRow row{};
    row.errorType = type;
    row.perceivedSeverity = ph::PerceivedSeverity::DegradedOrWarning;
    row.probableCause = ph::ProbableCause::Unknown;
    ph::copyText(row.errorSource, instanceId);
    row.errorSourceFormat = ph::ErrorSourceFormat::Unknown;
    row.cimStatusCode = code;
    return onTemporaryDatabase([&](SMASH_DB_HANDLE handle) { return db_set_error_info(handle, &row); });
}

} // namespace

int PH_CreateJobInstance(const char* jobName, char* instanceId, int state, const char* operationalStatus) {
    if (jobName == nullptr || instanceId == nullptr || operationalStatus == nullptr)
        return -1;
    ConcreteJobRow row{};
    ph::copyText(row.elementName, jobName);
    ph::copyText(row.kind, "ConcreteJob");
    row.jobState = state;
    ph::copyText(row.jobStatus, statusText(state));
    row.deleteOnCompletion = 1;
    std::snprintf(row.minutesToKeep, sizeof(row.minutesToKeep), "%d", minutesToKeep);
    ph::copyText(row.operationalStatus, operationalStatus);
    row.percentComplete = hasEnded(state) ? 100 : 0;
    return onTemporaryDatabase(
        [&](SMASH_DB_HANDLE handle) { return db_set_concretejob(handle, &row, instanceId); });
}

int PH_ModifyConcreteJob(const char* instanceId, int state, const char* operationalStatus) {
    if (instanceId == nullptr || *instanceId == '\0')
        return -1;
    const int percent = hasEnded(state) ? 100 : 50;
    return onTemporaryDatabase([&](SMASH_DB_HANDLE handle) {
        return db_modify_concretejob(handle, instanceId, statusText(state), operationalStatus, percent,
                                     state);
    });
}

int PH_CreateErrorInstance(const char* instanceId) {
    return instanceId != nullptr && *instanceId != '\0'
               ? createError(instanceId, ph::ErrorType::Unknown, CMPI_RC_ERR_FAILED)
               : -1;
}

namespace ph {

void RunningJob::report(const char* status, int percent) {
    if (percent == percent_ && status == status_)
        return;
    status_ = status;
    percent_ = percent;
    onTemporaryDatabase([&](SMASH_DB_HANDLE handle) {
        return db_modify_concretejob(handle, instanceId_, status, "2", percent, JobState::Running);
    });
}

void RunningJob::complete() const {
    PH_ModifyConcreteJob(instanceId_, JobState::Completed, "17,2");
}

void RunningJob::fail(const char* status, std::uint16_t errorType, CMPIrc code) const {
    onTemporaryDatabase([&](SMASH_DB_HANDLE handle) {
        return db_modify_concretejob(handle, instanceId_, status, "17,6", 100, JobState::Exception);
    });
    createError(instanceId_, errorType, code);
}

} // namespace ph
