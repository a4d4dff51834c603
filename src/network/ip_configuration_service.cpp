// CIM_IPConfigurationService: applies an assignment to an IP endpoint.
#include "network/ip_assignment.h"
#include "network/lans.h"
#include "provider_helper/network.h"
#include "Utility/engine/processor_service.h"

constexpr const char* const g_IPConfigurationServiceKeyList[4] = {"SystemCreationClassName",
                                                                  "CreationClassName", "SystemName", "Name"};

namespace ph::ip_configuration_service {
namespace {

using Record = IPConfigurationServiceRecord;

constexpr const char* className = "CIM_IPConfigurationService";

int enumerate(RecordArray<Record>& services, Detail) {
    Record* service = appendOnProcessor(services, className);
    return service != nullptr ? PH_Fill_IPConfigurationService(service) : -1;
}

constexpr Parameter parameters[] = {
    {"Configuration", CMPI_ref, Direction::In, "CIM_IPAssignmentSettingData"},
    {"Endpoint", CMPI_ref, Direction::In, "CIM_IPProtocolEndpoint"},
    {"Job", CMPI_ref, Direction::Out, "CIM_ConcreteJob"},
};
constexpr Method methods[] = {{.name = "ApplySettingToIPProtocolEndpoint",
                               .parameters = parameters,
                               .carryOut = applySetting,
                               .job = JobReport{.notCreated = {}},
                               .refusedValue = methodFailed}};

constexpr ClassDefinition<Record> definition{
    .name = className,
    .superclass = "CIM_Service",
    .source = "one fixed instance; Set LAN Configuration Parameters",
    .keys = g_IPConfigurationServiceKeyList,
    .properties = serviceProperties<Record>,
    .enumerate = enumerate,
    .methods = methods,
    .invocation = {.badKeys = {CMPI_RC_ERR_INVALID_PARAMETER, "Invalid Key Properties"},
                   .unknownMethod = {CMPI_RC_ERR_NOT_SUPPORTED, "Invalid Method name"}}};

} // namespace
} // namespace ph::ip_configuration_service

PH_EXPORT_CLASS_FAMILY(IPConfigurationService, IPConfigurationServiceRecord,
                       ph::ip_configuration_service::definition)

int PH_Fill_IPConfigurationService(IPConfigurationServiceRecord* record) {
    ph::copyText(record->SystemCreationClassName, ph::processorClass);
    ph::copyText(record->CreationClassName, ph::ip_configuration_service::className);
    ph::copyText(record->Name, "IPConfigurationService1");
    ph::fillService(*record, "IP Configuration Service");
    return 0;
}

int PH_ApplySettingToIPProtocolEndpoint(const CMPIBroker* broker, const CMPIResult* result,
                                        const CMPIObjectPath* ref, const CMPIContext* context,
                                        const CMPIArgs* in, CMPIArgs* out, CMPIStatus* status) {
    return ph::resultOf(ph::engine::carryOut(
        ph::family_IPConfigurationService, ph::ip_configuration_service::methods[0],
        {.broker = broker, .context = context, .result = result, .ref = ref, .in = in, .out = out}, nullptr,
        status));
}
