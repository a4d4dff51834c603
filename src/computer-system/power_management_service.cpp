// CIM_PowerManagementService: switches the host's power, or restarts the service processor.
#include "computer-system/computer_system.h"
#include "platform/sysroot.h"
#include "Utility/back-ends/shell.h"
#include "Utility/engine/processor_service.h"
#include "Utility/requests/request_texts.h"
#include "Utility/values/record_fields.h"

#include <cstdio>
#include <cstring>
#include <memory>
#include <optional>

constexpr const char* const g_PowerManagementServiceKeyList[4] = {"SystemCreationClassName",
                                                                  "CreationClassName", "SystemName", "Name"};

namespace ph::power_management_service {
namespace {

using Record = PowerManagementServiceRecord;

constexpr const char* className = "CIM_PowerManagementService";
constexpr int nameKey = 3; // its place in the key list

constexpr Parameter requestPowerStateChangeParameters[] = {
    {"PowerState", CMPI_uint16},      {"ManagedElement", CMPI_ref, Direction::In, "CIM_ManagedElement"},
    {"Time", CMPI_dateTime},          {"Job", CMPI_ref, Direction::Out, "CIM_ConcreteJob"},
    {"TimeoutPeriod", CMPI_dateTime},
};
constexpr const char* methodName = "RequestPowerStateChange";

int append(RecordArray<Record>& services, const PowerServiceRow& row, const char* systemName, Detail detail) {
    Record* service = services.append();
    if (service == nullptr)
        return -1;
    setHostedKeys(*service, processorClass, systemName, className);
    copyText(service->Name, row.name);
    return detail == Detail::Names ? 0 : PH_Fill_PowerManagementService(&row, service);
}

int enumerate(RecordArray<Record>& services, Detail detail) {
    char systemName[256] = "";
    Rows<PowerServiceRow> rows;
    if (PH_GetSPSystemName(systemName) != 0 || !rows.read(db_get_all_power_mgt_service))
        return -1;
    for (const PowerServiceRow& row : rows.all())
        if (append(services, row, systemName, detail) != 0)
            return -1;
    return 0;
}

int get(RecordArray<Record>& services, CMPIString** keyValues) {
    char systemName[256] = "";
    if (PH_GetSPSystemName(systemName) != 0)
        return -1;
    const auto row = storedRow(db_get_power_mgt_service, CMGetCharsPtr(keyValues[nameKey], nullptr));
    return row != nullptr ? append(services, *row, systemName, Detail::All) : -1;
}

// ---- RequestPowerStateChange

// What a request asks for, once it is known to be complete.
struct PowerRequest {
    const char* serviceName;
    const CMPIObjectPath* managedElement;
    std::uint16_t powerState;
};

// Without a value, the call is refused.
std::optional<PowerRequest> read(MethodCall& call) {
    const auto refuse = [&](CMPIrc code, const char* message) {
        call.refuse(code, message);
        return std::nullopt;
    };
    const CMPIArgs* const in = call.request.in;
    if (in == nullptr || CMGetArgCount(in, nullptr) == 0)
        return refuse(CMPI_RC_ERR_INVALID_PARAMETER, "Invalid or Empty Input");
    const char* serviceName = keyText(call.request.ref, "Name");
    if (serviceName == nullptr)
        return refuse(CMPI_RC_ERR_FAILED, "Key Property Missing");
    const auto powerState = argument(in, "PowerState");
    if (!powerState)
        return refuse(CMPI_RC_ERR_INVALID_PARAMETER, "CMPI_RC_ERR_INVALID_PARAMETER");
    const auto element = argument(in, "ManagedElement");
    if (!element || element->type != CMPI_ref || element->value.ref == nullptr)
        return refuse(CMPI_RC_ERR_INVALID_PARAMETER, "ManagedElement Param is Missing");
    std::uint16_t state = 0;
    if (keyText(element->value.ref, "Name") == nullptr || GetUINT16Value(*powerState, &state) != 0)
        return refuse(CMPI_RC_ERR_TYPE_MISMATCH, "PowerState Parameter is mismatched");
    return PowerRequest{serviceName, element->value.ref, state};
}

bool restartProcessor(std::uint16_t powerState) {
    return powerState == PowerState::PowerCycleOffSoft && runCommand("reboot") == 0;
}

bool change(MethodCall& call, const PowerRequest& request) {
    const bool isProcessor = std::strcmp(request.serviceName, "SP Power Management Service") == 0;
    if (!isOfClass(request.managedElement, isProcessor ? processorClass : hostClass)) {
        call.refuse(CMPI_RC_ERR_TYPE_MISMATCH, "ManagedElement Param is Missing or incorrect");
        return false;
    }
    return isProcessor ? restartProcessor(request.powerState)
                       : PH_SetPowerState(call.keys, request.powerState) == 0;
}

// The file tells the state to what starts after the change. A full flash must not turn a change that was made
// into a failure.
void writePowerState(std::uint16_t powerState) {
    char path[4096];
    if (PH_SysrootPath("/conf/PowerState.ini", path, sizeof(path)) != 0)
        return;
    const std::unique_ptr<std::FILE, int (*)(std::FILE*)> file(std::fopen(path, "we"), std::fclose);
    if (file != nullptr)
        std::fprintf(file.get(), "RequestedPowerState  %d", powerState);
}

MethodAnswer changePowerState(MethodCall& call) {
    const auto request = read(call);
    if (!request)
        return std::nullopt;
    char jobName[64];
    std::snprintf(jobName, sizeof(jobName), "%s_%s", request->serviceName, methodName);
    return call.report(
        jobName, [&] { return change(call, *request); }, [&] { writePowerState(request->powerState); });
}

constexpr Method methods[] = {{.name = methodName,
                               .parameters = requestPowerStateChangeParameters,
                               .carryOut = changePowerState,
                               .job = JobReport{.handsOutUnrecorded = false},
                               .refusedValue = methodDone,
                               .valueType = CMPI_sint32}};

constexpr ClassDefinition<Record> definition{.name = className,
                                             .superclass = "CIM_Service",
                                             .source = "table power_service; Chassis Control",
                                             .keys = g_PowerManagementServiceKeyList,
                                             .properties = serviceProperties<Record>,
                                             .enumerate = enumerate,
                                             .get = get,
                                             .methods = methods};

} // namespace
} // namespace ph::power_management_service

PH_EXPORT_CLASS_FAMILY(PowerManagementService, PowerManagementServiceRecord,
                       ph::power_management_service::definition)

int PH_Fill_PowerManagementService(const PowerServiceRow* row, PowerManagementServiceRecord* record) {
    ph::copyText(record->ElementName, row->elementName);
    ph::parseList(record->OperationalStatus, row->operationalStatus);
    record->HealthState = row->healthState;
    record->EnabledState = row->enabledState;
    record->RequestedState = row->requestedState;
    record->Started = row->started != 0;
    return 0;
}

int PH_RequestPowerStateChange(const CMPIBroker* broker, const CMPIResult* result, const CMPIObjectPath* ref,
                               const CMPIArgs* in, CMPIArgs* out, CMPIString** keyValues,
                               CMPIStatus* status) {
    return ph::resultOf(ph::engine::carryOut(
        ph::family_PowerManagementService, ph::power_management_service::methods[0],
        {.broker = broker, .result = result, .ref = ref, .in = in, .out = out}, keyValues, status));
}
