// CIM_IPConfigurationService: applies an assignment to an IP endpoint.
#include "network/ip_assignment.h"
#include "network/lans.h"
#include "provider_helper/network.h"
#include "Utility/engine/processor_service.h"

constexpr const char* const g_IPConfigurationServiceKeyList[4] = {"SystemCreationClassName",
                                                                  "CreationClassName", "SystemName", "Name"};

namespace {

using Record = IPConfigurationServiceRecord;

constexpr const char* className = "CIM_IPConfigurationService";

int enumerate(ph::RecordArray<Record>& services, ph::Detail) {
    Record* service = ph::appendOnProcessor(services, className);
    return service != nullptr ? PH_Fill_IPConfigurationService(service) : -1;
}

constexpr ph::Parameter parameters[] = {
    {"Configuration", CMPI_ref, ph::Direction::In, "CIM_IPAssignmentSettingData"},
    {"Endpoint", CMPI_ref, ph::Direction::In, "CIM_IPProtocolEndpoint"},
    {"Job", CMPI_ref, ph::Direction::Out, "CIM_ConcreteJob"},
};
constexpr ph::Method methods[] = {{.name = "ApplySettingToIPProtocolEndpoint",
                                   .parameters = parameters,
                                   .carryOut = ph::applySetting,
                                   .job = ph::JobReport{.notCreated = {}},
                                   .refusedValue = ph::methodFailed}};

constexpr ph::ClassDefinition<Record> definition{
    .name = className,
    .superclass = "CIM_Service",
    .source = "one fixed instance; Set LAN Configuration Parameters",
    .keys = g_IPConfigurationServiceKeyList,
    .properties = ph::serviceProperties<Record>,
    .enumerate = enumerate,
    .methods = methods,
    .invocation = {.badKeys = {CMPI_RC_ERR_INVALID_PARAMETER, "Invalid Key Properties"},
                   .unknownMethod = {CMPI_RC_ERR_NOT_SUPPORTED, "Invalid Method name"}}};

} // namespace

PH_EXPORT_CLASS_FAMILY(IPConfigurationService, Record, definition)

int PH_Fill_IPConfigurationService(Record* record) {
    ph::copyText(record->SystemCreationClassName, ph::processorClass);
    ph::copyText(record->CreationClassName, className);
    ph::copyText(record->Name, "IPConfigurationService1");
    ph::fillService(*record, "IP Configuration Service");
    return 0;
}

int PH_ApplySettingToIPProtocolEndpoint(const CMPIBroker* broker, const CMPIResult* result,
                                        const CMPIObjectPath* ref, const CMPIContext* context,
                                        const CMPIArgs* in, CMPIArgs* out, CMPIStatus* status) {
    return ph::resultOf(ph::engine::carryOut(
        ph::family_IPConfigurationService, methods[0],
        {.broker = broker, .context = context, .result = result, .ref = ref, .in = in, .out = out}, nullptr,
        status));
}
