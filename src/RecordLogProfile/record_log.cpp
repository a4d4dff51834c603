// CIM_RecordLog: the BMC's system event log, and its method ClearLog.
#include "provider_helper/record_log.h"

#include "RecordLogProfile/record_log_id.h"
#include "Utility/back_ends.h"
#include "Utility/class_family.h"
#include "Utility/method_job.h"
#include "Utility/record_fields.h"
#include "Utility/request_status.h"
#include "Utility/request_texts.h"

#include <cstdio>
#include <cstring>
#include <string_view>
#include <strings.h>

constexpr const char* const g_RecordLogKeyList[1] = {"InstanceID"};

namespace ph {

bool writeLogInstanceId(char* text, std::size_t size) {
    char name[256] = "";
    if (PH_GetSPSystemName(name) != 0)
        return false;
    std::snprintf(text, size, "IPMI:%s SEL Log", name);
    return true;
}

} // namespace ph

namespace {

using Record = RecordLogRecord;
using ph::Property;

constexpr const char* notThisLog = "ObjectPath is not valid";

constexpr Property properties[] = {
    PH_KEY(Record, InstanceID),
    PH_PROPERTY(Record, MaxNumberOfRecords),
    PH_PROPERTY(Record, CurrentNumberOfRecords),
    PH_PROPERTY(Record, HealthState),
    PH_PROPERTY(Record, RequestedState),
    PH_PROPERTY(Record, EnabledState),
    PH_PROPERTY(Record, LogState),
    PH_PROPERTY(Record, OverwritePolicy),
    PH_PROPERTY(Record, ElementName),
    PH_PROPERTY(Record, OperationalStatus),
};

// DMTF values of a log with this SEL policy.
void fillPolicy(Record& log, std::uint8_t policy) {
    constexpr std::uint8_t wraps = 1;
    log.EnabledState = 2; // enabled
    if (policy == wraps) {
        log.OverwritePolicy = 2; // wraps when full
        log.LogState = 2;        // normal
        return;
    }
    log.OverwritePolicy = 7; // never overwrites
    log.LogState = 4;        // not applicable
    if (log.CurrentNumberOfRecords == log.MaxNumberOfRecords)
        log.EnabledState = 6; // enabled but offline
}

int enumerate(ph::RecordArray<Record>& logs, ph::Detail detail) {
    Record* log = logs.append();
    if (log == nullptr)
        return -1;
    if (detail == ph::Detail::Names)
        return ph::writeLogInstanceId(log->InstanceID, sizeof(log->InstanceID)) ? 0 : -1;
    return PH_Fill_RecordLog(log);
}

// There is one log. While the service processor's name cannot be read it is told by the form of its name.
bool namesThisLog(const CMPIBroker* broker, const CMPIObjectPath* ref) {
    CMPIStatus keyStatus = ph::success;
    CMPIString* key = nullptr;
    if (CheckForValidObjectPath(broker, ref, g_RecordLogKeyList, &key, 1, &keyStatus) != 0)
        return false;
    const char* text = ph::textOf(key);
    char own[sizeof(Record::InstanceID)];
    if (text == nullptr || ph::writeLogInstanceId(own, sizeof(own)))
        return text != nullptr && std::strcmp(text, own) == 0;
    return std::string_view(text).starts_with("IPMI:") && std::string_view(text).ends_with(" SEL Log");
}

bool eraseLog() {
    ph::IpmiSession session;
    return session.open() && CIM_ClearSEL(session.get(), ph::hookTimeout) == 0;
}

CMPIStatus invoke(const ph::Request& request) {
    CMPIStatus status = ph::success;
    if (request.method == nullptr || strcasecmp(request.method, "ClearLog") != 0)
        return ph::fail(request.broker, CMPI_RC_ERR_METHOD_NOT_FOUND, "No such method available");
    PH_ClearLog(request.broker, request.context, request.result, request.ref, request.out, &status);
    return status;
}

constexpr ph::Parameter clearLogParameters[] = {
    {"Job", CMPI_ref, ph::Direction::Out, "CIM_ConcreteJob"},
};
constexpr ph::Method methods[] = {{"ClearLog", clearLogParameters}};

constexpr ph::ClassDefinition<Record> definition{.name = "CIM_RecordLog",
                                                 .superclass = "CIM_Log",
                                                 .keys = g_RecordLogKeyList,
                                                 .properties = properties,
                                                 .enumerate = enumerate,
                                                 .invoke = invoke,
                                                 .methods = methods};

} // namespace

int PH_Fill_RecordLog(Record* record) {
    ph::IpmiSession session;
    std::uint16_t current = 0;
    std::uint16_t maximum = 0;
    std::uint8_t policy = 0;
    if (!session.open() || CIM_GetNumOfSELEntries(session.get(), &current, ph::hookTimeout) != 0 ||
        CIM_GetMaxPossibleSELEntries(session.get(), &maximum, ph::hookTimeout) != 0)
        return -1;
    record->CurrentNumberOfRecords = current;
    record->MaxNumberOfRecords = maximum;
    record->HealthState = 5;     // OK
    record->RequestedState = 12; // not applicable
    ph::copyText(record->ElementName, ph::logName);
    ph::parseList(record->OperationalStatus, "2"); // OK
    if (CIM_GetSELPolicy(session.get(), &policy, ph::hookTimeout) == 0)
        fillPolicy(*record, policy);
    return ph::writeLogInstanceId(record->InstanceID, sizeof(record->InstanceID)) ? 0 : -1;
}

int PH_ClearLog(const CMPIBroker* broker, const CMPIContext* /*context*/, const CMPIResult* result,
                const CMPIObjectPath* ref, CMPIArgs* out, CMPIStatus* status) {
    if (!namesThisLog(broker, ref)) {
        ph::fail(broker, status, CMPI_RC_ERR_INVALID_PARAMETER, notThisLog);
        return -1;
    }
    ph::MethodJob job;
    if (!job.makePath(broker, ref)) {
        ph::fail(broker, status, CMPI_RC_ERR_FAILED, ph::noJobPath);
        return -1;
    }
    const auto outcome = job.carryOut("RecordLog_ClearLog", eraseLog);
    if (outcome == ph::MethodJob::Outcome::NoJob) {
        ph::fail(broker, status, CMPI_RC_ERR_FAILED, ph::noJobPath);
        return -1;
    }
    const bool isDone = job.returnReference(out) && outcome == ph::MethodJob::Outcome::Done;
    ph::returnValue(result, isDone ? ph::methodDone : ph::methodFailed);
    return 0;
}

PH_EXPORT_CLASS_FAMILY(RecordLog, Record, definition)
