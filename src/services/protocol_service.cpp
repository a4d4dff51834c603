// CIM_ProtocolService: one for each network service of the BMC.
#include "provider_helper/services.h"
#include "services/service_list.h"
#include "Utility/back_ends.h"
#include "Utility/class_family.h"
#include "Utility/record_fields.h"
#include "Utility/request_status.h"
#include "Utility/request_texts.h"

#include <optional>
#include <strings.h>

constexpr const char* const g_ProtocolServiceKeyList[4] = {"SystemCreationClassName", "CreationClassName",
                                                           "SystemName", "Name"};

namespace {

using Record = ProtocolServiceRecord;

constexpr const char* className = "CIM_ProtocolService";
constexpr std::size_t nameKey = 3;

constexpr ph::Property properties[] = {
    PH_KEY(Record, SystemCreationClassName),
    PH_KEY(Record, CreationClassName),
    PH_KEY(Record, SystemName),
    PH_KEY(Record, Name),
    PH_PROPERTY(Record, ElementName),
    PH_PROPERTY(Record, OtherProtocol),
    PH_PROPERTY(Record, Protocol),
    PH_PROPERTY(Record, MaxConnections),
    PH_PROPERTY(Record, RequestedState),
    PH_PROPERTY(Record, EnabledState),
    PH_PROPERTY(Record, HealthState),
    PH_PROPERTY(Record, OperationalStatus),
};

// The session is opened once it is needed: paths and the CLP daemon need none.
class Source {
public:
    bool open() { return PH_GetSPSystemName(systemName_) == 0; }

    int append(ph::RecordArray<Record>& records, const ph::Service& service, ph::Detail detail) {
        Record* record = records.append();
        if (record == nullptr)
            return -1;
        ph::copyText(record->SystemCreationClassName, "CIM_SPComputerSystem");
        ph::copyText(record->CreationClassName, className);
        ph::copyText(record->SystemName, systemName_);
        ph::copyText(record->Name, service.name);
        if (detail == ph::Detail::Names)
            return 0;
        if (!service.isClp() && !session_.has_value() && !session_.emplace().open())
            return -1;
        return PH_Fill_ProtocolService(service.isClp() ? nullptr : session_->get(), record);
    }

private:
    char systemName_[256] = "";
    std::optional<ph::IpmiSession> session_;
};

int enumerate(ph::RecordArray<Record>& records, ph::Detail detail) {
    Source source;
    if (!source.open())
        return -1;
    for (const ph::Service& service : ph::allServices())
        if (source.append(records, service, detail) != 0)
            return -1;
    return 0;
}

int get(ph::RecordArray<Record>& records, CMPIString** keyValues) {
    const char* name = ph::textOf(keyValues[nameKey]);
    const ph::Service* service = name != nullptr ? ph::findService(name) : nullptr;
    Source source;
    return service != nullptr && source.open() ? source.append(records, *service, ph::Detail::All) : -1;
}

CMPIStatus invoke(const ph::Request& request) {
    CMPIStatus status = ph::success;
    CMPIString* keyValues[std::size(g_ProtocolServiceKeyList)] = {};
    if (CheckForValidObjectPath(request.broker, request.ref, g_ProtocolServiceKeyList, keyValues,
                                std::size(g_ProtocolServiceKeyList), &status) != 0)
        return status;
    if (request.method == nullptr || strcasecmp(request.method, ph::requestStateChange.name) != 0)
        return ph::fail(request.broker, CMPI_RC_ERR_METHOD_NOT_FOUND, "No such method available");
    // Another name would switch the web service.
    const char* name = ph::textOf(keyValues[nameKey]);
    if (name == nullptr || ph::findService(name) == nullptr)
        return ph::fail(request.broker, CMPI_RC_ERR_NOT_FOUND, "No such service");
    return PH_ProtocolServiceRequestStateChange(request.broker, request.result, request.ref, request.in,
                                                request.out, keyValues, &status) == 0
               ? ph::success
               : status;
}

constexpr ph::Method methods[] = {ph::requestStateChange};

constexpr ph::ClassDefinition<Record> definition{.name = className,
                                                 .superclass = "CIM_Service",
                                                 .keys = g_ProtocolServiceKeyList,
                                                 .properties = properties,
                                                 .enumerate = enumerate,
                                                 .get = get,
                                                 .invoke = invoke,
                                                 .methods = methods};

struct State {
    bool isKnown;
    bool isEnabled;
    std::uint16_t maxConnections;
};

State readState(IPMI20_SESSION_T* session, const ph::Service& service) {
    if (service.isClp())
        return {true, PH_IsSmashclpdRunning() == 0, 1};
    CIM_ServiceConf conf;
    if (CIM_GetServiceConf(session, service.bit, &conf, ph::hookTimeout) != 0)
        return {false, false, 0};
    return {true, conf.currentState != 0, conf.maxSessions};
}

} // namespace

int PH_Fill_ProtocolService(IPMI20_SESSION_T* session, ProtocolServiceRecord* record) {
    const ph::Service* service = ph::findService(record->Name);
    if (service == nullptr)
        return -1;
    const State state = readState(session, *service);
    ph::copyText(record->ElementName, service->elementName);
    ph::copyText(record->OtherProtocol, service->word);
    record->Protocol = service->protocol;
    record->MaxConnections = state.maxConnections;
    record->RequestedState = 12; // not applicable
    record->EnabledState = state.isEnabled ? 2 : 3;
    record->HealthState = state.isEnabled ? 5 : 0;
    constexpr int unknown = 0, ok = 2, stopped = 10;
    ph::setList(record->OperationalStatus, {state.isEnabled ? ok : state.isKnown ? stopped : unknown});
    return 0;
}

PH_EXPORT_CLASS_FAMILY(ProtocolService, Record, definition)
