// CIM_ConcreteJob: what became of a method that changes the BMC's state.
#include "provider_helper/jobs.h"
#include "Utility/back-ends/back_ends.h"
#include "Utility/engine/class_family.h"
#include "Utility/jobs/clp_jobs.h"
#include "Utility/requests/request_status.h"
#include "Utility/requests/request_texts.h"
#include "Utility/values/record_fields.h"

#include <cstdio>
#include <cstdlib>

constexpr const char* const g_ConcreteJobKeyList[1] = {"InstanceID"};

namespace ph::concrete_job {
namespace {

using Record = ConcreteJobRecord;

constexpr Property properties[] = {
    PH_KEY(Record, InstanceID),
    PH_PROPERTY(Record, ElementName),
    PH_PROPERTY(Record, Name),
    PH_PROPERTY(Record, JobState),
    PH_PROPERTY(Record, JobStatus),
    PH_PROPERTY(Record, PercentComplete),
    PH_PROPERTY(Record, DeleteOnCompletion),
    PH_DATETIME(Record, TimeBeforeRemoval),
    PH_PROPERTY(Record, OperationalStatus),
};

int enumerate(RecordArray<Record>& jobs, Detail detail) {
    Rows<StoredJobRow> rows;
    if (!rows.read(db_get_all_concretejob, PH_CreateTmpDBHandle))
        return -1;
    for (const StoredJobRow& row : rows.all())
        if (appendJob(jobs, row, detail) != 0)
            return -1;
    return clp::appendAll(jobs, detail);
}

int get(RecordArray<Record>& jobs, CMPIString** keyValues) {
    const char* instanceId = CMGetCharsPtr(keyValues[0], nullptr);
    if (clp::isJob(instanceId))
        return clp::append(jobs, instanceId);
    const auto row = storedRow(db_get_concretejob, instanceId, PH_CreateTmpDBHandle);
    return row != nullptr ? appendJob(jobs, *row, Detail::All) : -1;
}

bool removeJob(const char* instanceId) {
    const bool isDaemons = clp::isJob(instanceId);
    if (isDaemons && PH_Delete_CLPJob(instanceId) != 0)
        return false;
    Database database;
    const bool isRemoved =
        database.open(PH_CreateTmpDBHandle) && db_delete_concretejob(database.get(), instanceId) == 0;
    return isRemoved || isDaemons; // of whose job only the error is here
}

// Clients know this failure by the words of a modify request.
CMPIStatus remove(const Request& request) {
    KeyValues keyValues;
    if (!keyValues.areRead(request.broker, request.ref, g_ConcreteJobKeyList) || keyValues[0] == nullptr ||
        !removeJob(textOf(keyValues[0])))
        return fail(request.broker, "SetInstance Failed");
    return success;
}

// ---- GetErrors

// The job's errors as an array of instances: one, or none for a job that has not failed.
CMPIArray* errorArray(const CMPIBroker* broker, const CMPIContext* context, const CMPIObjectPath* ref,
                      const JobErrorRow* row) {
    CMPIStatus status = success;
    CMPIArray* array = CMNewArray(broker, row != nullptr ? 1 : 0, CMPI_instance, &status);
    if (array == nullptr || status.rc != CMPI_RC_OK || row == nullptr)
        return array;
    ErrorRecord record{};
    CMPIValue value{};
    if (PH_Fill_Error_Data(row, &record) == 0)
        value.inst = PH_MakeInst_Error(broker, context, ref, nullptr, &record, 0, 0, nullptr);
    if (value.inst != nullptr && CMSetArrayElementAt(array, 0, &value, CMPI_instance).rc == CMPI_RC_OK)
        return array;
    CMRelease(array);
    return nullptr;
}

struct JobError {
    bool isRead = false;
    HeapPtr<JobErrorRow> row; // nullptr: the job has none
};

JobError readError(const char* instanceId) {
    Database database;
    if (!database.open(PH_CreateTmpDBHandle))
        return {};
    JobErrorRow* row = nullptr;
    const int result = clp::isJob(instanceId) ? db_get_clp_error_info(database.get(), instanceId, &row)
                                              : db_get_error_info(database.get(), instanceId, &row);
    return {result == 0, HeapPtr<JobErrorRow>(row)};
}

bool exists(CMPIString** keyValues) {
    Record* job = nullptr;
    const bool known = PH_Get_ConcreteJob(&job, keyValues) == 0;
    PH_Clean_ConcreteJob(&job, known ? 1 : 0);
    return known;
}

MethodAnswer getErrors(MethodCall& call) {
    const Request& request = call.request;
    // No job has a key that is a number, which the key check lets pass without a value.
    const char* const instanceId = call.key(0);
    const JobError error =
        instanceId != nullptr ? readError(instanceId) : JobError{.isRead = true, .row = {}};
    // A job without an error must be told apart from one that does not exist any more.
    if (error.isRead && error.row == nullptr && !exists(call.keys))
        return call.refuse(CMPI_RC_ERR_FAILED, "Given instance does not exist");
    CMPIValue value{};
    if (error.isRead)
        value.array = errorArray(request.broker, request.context, request.ref, error.row.get());
    if (value.array == nullptr || CMAddArg(request.out, "Errors", &value, CMPI_instanceA).rc != CMPI_RC_OK)
        return call.refuse(CMPI_RC_ERR_FAILED, "Failed to Get Errors");
    return methodDone;
}

constexpr Parameter getErrorsParameters[] = {
    {"Errors", CMPI_instanceA, Direction::Out, "CIM_Error"},
};
constexpr Method methods[] = {
    {.name = "GetErrors", .parameters = getErrorsParameters, .carryOut = getErrors}};

constexpr ClassDefinition<Record> definition{
    .name = "CIM_ConcreteJob",
    .superclass = "CIM_Job",
    .source = "table concrete_job of the temporary database; the CLP daemon",
    .keys = g_ConcreteJobKeyList,
    .properties = properties,
    .enumerate = enumerate,
    .get = get,
    .remove = remove,
    .methods = methods,
    .invocation = {.keys = Invocation::Keys::AfterName}};

} // namespace
} // namespace ph::concrete_job

PH_EXPORT_CLASS_FAMILY(ConcreteJob, ConcreteJobRecord, ph::concrete_job::definition)

namespace ph {

int appendJob(RecordArray<ConcreteJobRecord>& jobs, const StoredJobRow& row, Detail detail) {
    ConcreteJobRecord* job = jobs.append();
    if (job == nullptr)
        return -1;
    copyText(job->InstanceID, row.instanceId);
    return detail == Detail::Names ? 0 : PH_Fill_ConcreteJob(&row, job);
}

} // namespace ph

int PH_Fill_ConcreteJob(const StoredJobRow* row, ConcreteJobRecord* record) {
    const ConcreteJobRow& job = row->job;
    ph::copyText(record->ElementName, job.elementName);
    ph::copyText(record->Name, job.kind);
    record->JobState = static_cast<uint16_t>(job.jobState);
    ph::copyText(record->JobStatus, job.jobStatus);
    record->PercentComplete = static_cast<uint16_t>(job.percentComplete);
    record->DeleteOnCompletion = job.deleteOnCompletion != 0;
    const auto minutes = static_cast<unsigned int>(std::strtoul(job.minutesToKeep, nullptr, 10) % 1'000'000);
    // ddddddddhhmmss.mmmmmm:000
    std::snprintf(record->TimeBeforeRemoval, sizeof(record->TimeBeforeRemoval), "%08u%02u%02u00.000000:000",
                  minutes / 1440, minutes / 60 % 24, minutes % 60);
    ph::parseList(record->OperationalStatus, job.operationalStatus);
    return 0;
}

int PH_GetErrors(const CMPIBroker* broker, const CMPIContext* context, const CMPIResult* result,
                 const CMPIObjectPath* ref, CMPIArgs* out, CMPIStatus* status) {
    return ph::resultOf(ph::engine::carryOut(
        ph::family_ConcreteJob, ph::concrete_job::methods[0],
        {.broker = broker, .context = context, .result = result, .ref = ref, .out = out}, nullptr, status));
}
