// CIM_RecordLog: the BMC's system event log, and its method ClearLog.
#include "provider_helper/record_log.h"

#include "RecordLogProfile/record_log_id.h"
#include "Utility/back-ends/back_ends.h"
#include "Utility/engine/class_family.h"
#include "Utility/requests/request_status.h"
#include "Utility/requests/request_texts.h"
#include "Utility/values/dmtf_values.h"
#include "Utility/values/record_fields.h"

#include <cstdio>
#include <cstring>
#include <string_view>

constexpr const char* const g_RecordLogKeyList[1] = {"InstanceID"};

namespace ph {

bool writeLogInstanceId(char* text, std::size_t size) {
    char name[256] = "";
    if (PH_GetSPSystemName(name) != 0)
        return false;
    std::snprintf(text, size, "IPMI:%s SEL Log", name);
    return true;
}

bool eraseLog() {
    IpmiSession session;
    return session.open() && CIM_ClearSEL(session.get(), hookTimeout) == 0;
}

} // namespace ph

namespace ph::record_log {
namespace {

using Record = RecordLogRecord;

constexpr Refusal notThisLog{CMPI_RC_ERR_INVALID_PARAMETER, "ObjectPath is not valid"};

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
    log.EnabledState = EnabledState::Enabled;
    if (policy == wraps) {
        log.OverwritePolicy = OverwritePolicy::WrapsWhenFull;
        log.LogState = LogState::Normal;
        return;
    }
    log.OverwritePolicy = OverwritePolicy::NeverOverwrites;
    log.LogState = LogState::NotApplicable;
    if (log.CurrentNumberOfRecords == log.MaxNumberOfRecords)
        log.EnabledState = EnabledState::EnabledButOffline;
}

int enumerate(RecordArray<Record>& logs, Detail detail) {
    Record* log = logs.append();
    if (log == nullptr)
        return -1;
    if (detail == Detail::Names)
        return writeLogInstanceId(log->InstanceID, sizeof(log->InstanceID)) ? 0 : -1;
    return PH_Fill_RecordLog(log);
}

// There is one log. While the service processor's name cannot be read it is told by the form of its name.
bool namesThisLog(CMPIString* const* keyValues) {
    const char* instanceId = textOf(keyValues[0]);
    if (instanceId == nullptr)
        return false;
    char own[sizeof(Record::InstanceID)];
    if (writeLogInstanceId(own, sizeof(own)))
        return std::strcmp(instanceId, own) == 0;
    return std::string_view(instanceId).starts_with("IPMI:") &&
           std::string_view(instanceId).ends_with(" SEL Log");
}

MethodAnswer clearLog(MethodCall& call) {
    return call.report("RecordLog_ClearLog", eraseLog);
}

constexpr Parameter clearLogParameters[] = {
    {"Job", CMPI_ref, Direction::Out, "CIM_ConcreteJob"},
};
constexpr Method methods[] = {{.name = "ClearLog",
                               .parameters = clearLogParameters,
                               .carryOut = clearLog,
                               .job = JobReport{.notCreated = {CMPI_RC_ERR_FAILED, noJobPath}}}};

constexpr ClassDefinition<Record> definition{
    .name = "CIM_RecordLog",
    .superclass = "CIM_Log",
    .source = "Get SEL Info, Get SEL Allocation Info, Clear SEL; what a full log does (OEM)",
    .keys = g_RecordLogKeyList,
    .properties = properties,
    .enumerate = enumerate,
    .methods = methods,
    .invocation = {.keys = Invocation::Keys::AfterName,
                   .badKeys = notThisLog,
                   .exists = namesThisLog,
                   .missing = notThisLog}};

} // namespace
} // namespace ph::record_log

PH_EXPORT_CLASS_FAMILY(RecordLog, RecordLogRecord, ph::record_log::definition)

int PH_Fill_RecordLog(RecordLogRecord* record) {
    ph::IpmiSession session;
    std::uint16_t current = 0;
    std::uint16_t maximum = 0;
    std::uint8_t policy = 0;
    if (!session.open() || CIM_GetNumOfSELEntries(session.get(), &current, ph::hookTimeout) != 0 ||
        CIM_GetMaxPossibleSELEntries(session.get(), &maximum, ph::hookTimeout) != 0)
        return -1;
    record->CurrentNumberOfRecords = current;
    record->MaxNumberOfRecords = maximum;
    record->HealthState = ph::HealthState::OK;
    record->RequestedState = ph::RequestedState::NotApplicable;
    ph::copyText(record->ElementName, ph::logName);
    ph::setList(record->OperationalStatus, {ph::OperationalStatus::OK});
    if (CIM_GetSELPolicy(session.get(), &policy, ph::hookTimeout) == 0)
        ph::record_log::fillPolicy(*record, policy);
    return ph::writeLogInstanceId(record->InstanceID, sizeof(record->InstanceID)) ? 0 : -1;
}

int PH_ClearLog(const CMPIBroker* broker, const CMPIContext* /*context*/, const CMPIResult* result,
                const CMPIObjectPath* ref, CMPIArgs* out, CMPIStatus* status) {
    return ph::engine::carryOut(ph::family_RecordLog, ph::record_log::methods[0],
                                {.broker = broker, .result = result, .ref = ref, .out = out}, nullptr, status)
                   .has_value()
               ? 0
               : -1;
}
