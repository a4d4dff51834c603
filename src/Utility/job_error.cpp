// CIM_Error: why a job failed.
#include "provider_helper/jobs.h"
#include "Utility/back_ends.h"
#include "Utility/class_family.h"
#include "Utility/clp_jobs.h"
#include "Utility/method_job.h"
#include "Utility/record_fields.h"
#include "Utility/request_status.h"
#include "Utility/request_texts.h"

namespace {

using Record = ErrorRecord;
using ph::Property;

constexpr Property properties[] = {
    PH_PROPERTY(Record, ErrorSource),       PH_PROPERTY(Record, ErrorType),
    PH_PROPERTY(Record, PerceivedSeverity), PH_PROPERTY(Record, ProbableCause),
    PH_PROPERTY(Record, ErrorSourceFormat), PH_PROPERTY(Record, CIMStatusCode),
};

constexpr ph::ClassDefinition<Record> definition{
    .name = "CIM_Error", .superclass = nullptr, .keys = {}, .properties = properties};

// The job's errors as an array of instances: one, or none for a job that has not failed.
CMPIArray* errorArray(const CMPIBroker* broker, const CMPIContext* context, const CMPIObjectPath* ref,
                      const JobErrorRow* row) {
    CMPIStatus status = ph::success;
    CMPIArray* array = CMNewArray(broker, row != nullptr ? 1 : 0, CMPI_instance, &status);
    if (array == nullptr || status.rc != CMPI_RC_OK || row == nullptr)
        return array;
    Record record{};
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
    ph::HeapPtr<JobErrorRow> row; // nullptr: the job has none
};

JobError readError(const char* instanceId) {
    ph::Database database;
    if (!database.open(PH_CreateTmpDBHandle))
        return {};
    JobErrorRow* row = nullptr;
    const int result = ph::clp::isJob(instanceId) ? db_get_clp_error_info(database.get(), instanceId, &row)
                                                  : db_get_error_info(database.get(), instanceId, &row);
    return {result == 0, ph::HeapPtr<JobErrorRow>(row)};
}

bool exists(CMPIString** jobKeys) {
    ConcreteJobRecord* job = nullptr;
    const bool known = PH_Get_ConcreteJob(&job, jobKeys) == 0;
    PH_Clean_ConcreteJob(&job, known ? 1 : 0);
    return known;
}

} // namespace

int PH_Fill_Error_Data(const JobErrorRow* row, Record* record) {
    if (row == nullptr || record == nullptr)
        return -1;
    ph::copyText(record->ErrorSource, row->errorSource);
    record->ErrorType = static_cast<uint16_t>(row->errorType);
    record->PerceivedSeverity = static_cast<uint16_t>(row->perceivedSeverity);
    record->ProbableCause = static_cast<uint16_t>(row->probableCause);
    record->ErrorSourceFormat = static_cast<uint16_t>(row->errorSourceFormat);
    record->CIMStatusCode = static_cast<uint32_t>(row->cimStatusCode);
    return 0;
}

int PH_GetErrors(const CMPIBroker* broker, const CMPIContext* context, const CMPIResult* result,
                 const CMPIObjectPath* ref, CMPIArgs* out, CMPIStatus* status) {
    CMPIString* keyValues[1] = {};
    if (CheckForValidObjectPath(broker, ref, g_ConcreteJobKeyList, keyValues, 1, status) != 0)
        return -1;
    // No job has a key that is a number, which the key check lets pass without a value.
    const char* const instanceId = ph::textOf(keyValues[0]);
    const JobError error =
        instanceId != nullptr ? readError(instanceId) : JobError{.isRead = true, .row = {}};
    // A job without an error is told from one that is not, or no longer, there.
    if (error.isRead && error.row == nullptr && !exists(keyValues)) {
        ph::fail(broker, status, CMPI_RC_ERR_FAILED, "Given instance does not exist");
        return -1;
    }
    CMPIValue value{};
    if (error.isRead)
        value.array = errorArray(broker, context, ref, error.row.get());
    if (value.array == nullptr || CMAddArg(out, "Errors", &value, CMPI_instanceA).rc != CMPI_RC_OK) {
        ph::fail(broker, status, CMPI_RC_ERR_FAILED, "Failed to Get Errors");
        return -1;
    }
    ph::returnValue(result, ph::methodDone);
    return 0;
}

PH_EXPORT_EMBEDDED_CLASS_FAMILY(Error, Record, definition)
