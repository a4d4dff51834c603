// CIM_ConcreteJob: what became of a method that changes the BMC's state.
#include "provider_helper/jobs.h"
#include "Utility/back_ends.h"
#include "Utility/class_family.h"
#include "Utility/clp_jobs.h"
#include "Utility/record_fields.h"
#include "Utility/request_status.h"

#include <cstdio>
#include <cstdlib>
#include <strings.h>

constexpr const char* const g_ConcreteJobKeyList[1] = {"InstanceID"};

namespace {

using Record = ConcreteJobRecord;
using ph::Property;

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

int enumerate(ph::RecordArray<Record>& jobs, ph::Detail detail) {
    ph::Rows<StoredJobRow> rows;
    if (!rows.read(db_get_all_concretejob, PH_CreateTmpDBHandle))
        return -1;
    for (const StoredJobRow& row : rows.all())
        if (ph::appendJob(jobs, row, detail) != 0)
            return -1;
    return ph::clp::appendAll(jobs, detail);
}

int get(ph::RecordArray<Record>& jobs, CMPIString** keyValues) {
    const char* instanceId = CMGetCharsPtr(keyValues[0], nullptr);
    if (ph::clp::isJob(instanceId))
        return ph::clp::append(jobs, instanceId);
    const auto row = ph::storedRow(db_get_concretejob, instanceId, PH_CreateTmpDBHandle);
    return row != nullptr ? ph::appendJob(jobs, *row, ph::Detail::All) : -1;
}

bool removeJob(const char* instanceId) {
    const bool isDaemons = ph::clp::isJob(instanceId);
    if (isDaemons && PH_Delete_CLPJob(instanceId) != 0)
        return false;
    ph::Database database;
    const bool isRemoved =
        database.open(PH_CreateTmpDBHandle) && db_delete_concretejob(database.get(), instanceId) == 0;
    return isRemoved || isDaemons; // of whose job only the error is here
}

// Clients know this failure by the words of a modify request.
CMPIStatus remove(const ph::Request& request) {
    CMPIStatus ignored = ph::success;
    CMPIString* keyValues[1] = {};
    if (CheckForValidObjectPath(request.broker, request.ref, g_ConcreteJobKeyList, keyValues, 1, &ignored) !=
            0 ||
        keyValues[0] == nullptr || !removeJob(CMGetCharsPtr(keyValues[0], nullptr)))
        return ph::fail(request.broker, CMPI_RC_ERR_FAILED, "SetInstance Failed");
    return ph::success;
}

CMPIStatus invoke(const ph::Request& request) {
    CMPIStatus status = ph::success;
    if (request.method == nullptr || strcasecmp(request.method, "GetErrors") != 0)
        return ph::fail(request.broker, CMPI_RC_ERR_METHOD_NOT_FOUND, "No such method available");
    PH_GetErrors(request.broker, request.context, request.result, request.ref, request.out, &status);
    return status;
}

constexpr ph::Parameter getErrorsParameters[] = {
    {"Errors", CMPI_instanceA, ph::Direction::Out, "CIM_Error"},
};
constexpr ph::Method methods[] = {{"GetErrors", getErrorsParameters}};

constexpr ph::ClassDefinition<Record> definition{.name = "CIM_ConcreteJob",
                                                 .superclass = "CIM_Job",
                                                 .keys = g_ConcreteJobKeyList,
                                                 .properties = properties,
                                                 .enumerate = enumerate,
                                                 .get = get,
                                                 .remove = remove,
                                                 .invoke = invoke,
                                                 .methods = methods};

} // namespace

namespace ph {

int appendJob(RecordArray<ConcreteJobRecord>& jobs, const StoredJobRow& row, Detail detail) {
    Record* job = jobs.append();
    if (job == nullptr)
        return -1;
    copyText(job->InstanceID, row.instanceId);
    return detail == Detail::Names ? 0 : PH_Fill_ConcreteJob(&row, job);
}

} // namespace ph

int PH_Fill_ConcreteJob(const StoredJobRow* row, Record* record) {
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

PH_EXPORT_CLASS_FAMILY(ConcreteJob, Record, definition)
