// CIM_ProtocolService: one for each network service of the BMC.
#include "provider_helper/services.h"
#include "services/service_list.h"
#include "Utility/back-ends/back_ends.h"
#include "Utility/engine/class_family.h"
#include "Utility/engine/hosted_element.h"
#include "Utility/requests/request_status.h"
#include "Utility/requests/request_texts.h"
#include "Utility/values/dmtf_values.h"
#include "Utility/values/record_fields.h"

#include <cstdio>
#include <optional>

constexpr const char* const g_ProtocolServiceKeyList[4] = {"SystemCreationClassName", "CreationClassName",
                                                           "SystemName", "Name"};

namespace ph::protocol_service {
namespace {

using Record = ProtocolServiceRecord;

constexpr const char* className = "CIM_ProtocolService";
constexpr std::size_t nameKey = 3;

// A service whose state the BMC does not tell is not disabled: it has no state.
bool isKnown(const Record& service) {
    return service.OperationalStatus[0] != OperationalStatus::Unknown;
}

constexpr Property properties[] = {
    PH_KEY(Record, SystemCreationClassName),
    PH_KEY(Record, CreationClassName),
    PH_KEY(Record, SystemName),
    PH_KEY(Record, Name),
    PH_PROPERTY(Record, ElementName),
    PH_PROPERTY(Record, OtherProtocol),
    PH_PROPERTY(Record, Protocol),
    PH_PROPERTY_IF(Record, MaxConnections, isKnown),
    PH_PROPERTY(Record, RequestedState),
    PH_PROPERTY_IF(Record, EnabledState, isKnown),
    PH_PROPERTY(Record, HealthState),
    PH_PROPERTY(Record, OperationalStatus),
};

// The session is opened once it is needed: paths and the CLP daemon need none.
class Source {
public:
    bool open() { return PH_GetSPSystemName(systemName_) == 0; }

    int append(RecordArray<Record>& records, const Service& service, Detail detail) {
        Record* record = records.append();
        if (record == nullptr)
            return -1;
        setHostedKeys(*record, processorClass, systemName_, className);
        copyText(record->Name, service.name);
        if (detail == Detail::Names)
            return 0;
        if (!service.isClp() && !session_.has_value() && !session_.emplace().open())
            return -1;
        return PH_Fill_ProtocolService(service.isClp() ? nullptr : session_->get(), record);
    }

private:
    char systemName_[256] = "";
    std::optional<IpmiSession> session_;
};

int enumerate(RecordArray<Record>& records, Detail detail) {
    Source source;
    if (!source.open())
        return -1;
    for (const Service& service : allServices())
        if (source.append(records, service, detail) != 0)
            return -1;
    return 0;
}

int get(RecordArray<Record>& records, CMPIString** keyValues) {
    const char* name = textOf(keyValues[nameKey]);
    const Service* service = name != nullptr ? findService(name) : nullptr;
    Source source;
    return service != nullptr && source.open() ? source.append(records, *service, Detail::All) : -1;
}

// ---- RequestStateChange

// Any other name would switch the web service.
bool exists(CMPIString* const* keyValues) {
    const char* name = textOf(keyValues[nameKey]);
    return name != nullptr && findService(name) != nullptr;
}

bool isCarriedOut(std::uint16_t state) {
    using namespace RequestedState;
    return state == Enabled || state == Disabled || state == Reset;
}

MethodAnswer changeState(MethodCall& call) {
    const CMPIArgs* const in = call.request.in;
    const char* const serviceName = call.key(nameKey);
    if (serviceName == nullptr)
        return call.refuse(CMPI_RC_ERR_INVALID_PARAMETER, "Key Value Missing");
    if (in == nullptr || CMGetArgCount(in, nullptr) == 0)
        return call.refuse(CMPI_RC_ERR_INVALID_PARAMETER, "Input Parameter is empty");
    const auto requested = argument(in, "RequestedState");
    if (!requested)
        return call.refuse(CMPI_RC_ERR_INVALID_PARAMETER, "RequestedState Parameter is Invalid");
    std::uint16_t state = 0;
    if (GetUINT16Value(*requested, &state) != 0)
        return call.refuse(CMPI_RC_ERR_INVALID_PARAMETER, "RequestedState parameter value is invalid");

    char jobName[64];
    std::snprintf(jobName, sizeof(jobName), "%.40s_RequestStateChange", serviceName);
    char message[PH_SERVICE_MESSAGE_SIZE] = "Unable to record how the job ended."; // unless the change fails
    const MethodAnswer answer = call.report(jobName, [&] {
        return isCarriedOut(state)
                   ? PH_RequestStateChange_DB(state, serviceName, message) == 0
                   : explain(message, PH_SERVICE_MESSAGE_SIZE, "Invalid Parameter value") == 0;
    });
    if (answer == methodFailed)
        call.refuse(isCarriedOut(state) ? CMPI_RC_ERR_FAILED : CMPI_RC_ERR_INVALID_PARAMETER, message);
    return answer;
}

constexpr Method methods[] = {{.name = requestStateChange,
                               .parameters = requestStateChangeParameters,
                               .carryOut = changeState,
                               .job = JobReport{},
                               .refusedValue = methodDone}};

constexpr ClassDefinition<Record> definition{
    .name = className,
    .superclass = "CIM_Service",
    .source = "Get Service Configuration (OEM); for CLPProtocolService the processes of smashclpd",
    .keys = g_ProtocolServiceKeyList,
    .properties = properties,
    .enumerate = enumerate,
    .get = get,
    .methods = methods,
    .invocation = {.exists = exists, .missing = {CMPI_RC_ERR_NOT_FOUND, "No such service"}}};

struct State {
    bool isKnown;
    bool isEnabled;
    std::uint16_t maxConnections;
};

State readState(IPMI20_SESSION_T* session, const Service& service) {
    if (service.isClp())
        return {true, PH_IsSmashclpdRunning() == 0, 1};
    CIM_ServiceConf conf;
    if (CIM_GetServiceConf(session, service.bit, &conf, hookTimeout) != 0)
        return {false, false, 0};
    return {true, conf.currentState != 0, conf.maxSessions};
}

} // namespace
} // namespace ph::protocol_service

PH_EXPORT_CLASS_FAMILY(ProtocolService, ProtocolServiceRecord, ph::protocol_service::definition)

int PH_Fill_ProtocolService(IPMI20_SESSION_T* session, ProtocolServiceRecord* record) {
    const ph::Service* service = ph::findService(record->Name);
    if (service == nullptr)
        return -1;
    const ph::protocol_service::State state = ph::protocol_service::readState(session, *service);
    ph::copyText(record->ElementName, service->elementName);
    ph::copyText(record->OtherProtocol, service->word);
    record->Protocol = service->protocol;
    record->MaxConnections = state.maxConnections;
    record->RequestedState = ph::RequestedState::NotApplicable;
    record->EnabledState = state.isEnabled ? ph::EnabledState::Enabled : ph::EnabledState::Disabled;
    record->HealthState = state.isEnabled ? ph::HealthState::OK : ph::HealthState::Unknown;
    ph::setList(record->OperationalStatus, {state.isEnabled ? ph::OperationalStatus::OK
                                            : state.isKnown ? ph::OperationalStatus::Stopped
                                                            : ph::OperationalStatus::Unknown});
    return 0;
}

int PH_ProtocolServiceRequestStateChange(const CMPIBroker* broker, const CMPIResult* result,
                                         const CMPIObjectPath* ref, const CMPIArgs* in, CMPIArgs* out,
                                         CMPIString** keyValues, CMPIStatus* status) {
    return ph::resultOf(ph::engine::carryOut(
        ph::family_ProtocolService, ph::protocol_service::methods[0],
        {.broker = broker, .result = result, .ref = ref, .in = in, .out = out}, keyValues, status));
}
