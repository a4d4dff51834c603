#include "Utility/jobs/method_job.h"

#include "provider_helper/jobs.h"
#include "Utility/requests/request_texts.h"
#include "Utility/values/dmtf_values.h"

#include <cmpimacs.h>
#include <cstdio>

namespace ph {
namespace {

bool modify(const char* instanceId, std::int32_t state, int first, int second) {
    char operationalStatus[32];
    std::snprintf(operationalStatus, sizeof(operationalStatus), "%d,%d", first, second);
    return PH_ModifyConcreteJob(instanceId, state, operationalStatus) == 0;
}

} // namespace

bool MethodJob::makePath(const CMPIBroker* broker, const CMPIObjectPath* ref) {
    CMPIStatus status{CMPI_RC_OK, nullptr};
    const char* nameSpace = textOf(CMGetNameSpace(ref, &status));
    if (nameSpace == nullptr || status.rc != CMPI_RC_OK)
        return false;
    CMPIObjectPath* const path = CMNewObjectPath(broker, nameSpace, "CIM_ConcreteJob", &status);
    path_ = status.rc == CMPI_RC_OK ? path : nullptr;
    return hasPath();
}

bool MethodJob::create(const char* name) {
    return PH_CreateJobInstance(name, instanceId_, JobState::Running, "2") == 0; // OK
}

bool MethodJob::complete() const {
    return modify(instanceId_, JobState::Completed, OperationalStatus::Completed, OperationalStatus::OK);
}

bool MethodJob::fail() const {
    const bool modified =
        modify(instanceId_, JobState::Exception, OperationalStatus::Completed, OperationalStatus::Error);
    return PH_CreateErrorInstance(instanceId_) == 0 && modified;
}

bool MethodJob::returnReference(CMPIArgs* out) const {
    CMPIValue value{};
    value.ref = path_;
    return CMAddKey(path_, "InstanceID", reinterpret_cast<const CMPIValue*>(instanceId_), CMPI_chars).rc ==
               CMPI_RC_OK &&
           CMAddArg(out, "Job", &value, CMPI_ref).rc == CMPI_RC_OK;
}

std::optional<CMPIData> argument(const CMPIArgs* in, const char* name) {
    if (in == nullptr)
        return std::nullopt;
    CMPIStatus status{CMPI_RC_OK, nullptr};
    const CMPIData data = CMGetArg(in, name, &status);
    if (status.rc != CMPI_RC_OK || (data.state & (CMPI_nullValue | CMPI_notFound)) != 0)
        return std::nullopt;
    return data;
}

const CMPIObjectPath* referenceArgument(const CMPIArgs* in, const char* name, const char* className) {
    const auto data = argument(in, name);
    return data && data->type == CMPI_ref && data->value.ref != nullptr &&
                   isOfClass(data->value.ref, className)
               ? data->value.ref
               : nullptr;
}

void returnValue(const CMPIResult* result, std::uint32_t value, CMPIType type) {
    CMPIValue data{};
    data.uint32 = value;
    CMReturnData(result, &data, type);
}

} // namespace ph
