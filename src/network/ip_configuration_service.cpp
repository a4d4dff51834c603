// CIM_IPConfigurationService: applies an assignment to an IP endpoint.
#include "network/lans.h"
#include "provider_helper/network.h"
#include "Utility/class_family.h"
#include "Utility/method_job.h"
#include "Utility/record_fields.h"
#include "Utility/request_status.h"

#include <strings.h>

constexpr const char* const g_IPConfigurationServiceKeyList[4] = {"SystemCreationClassName",
                                                                  "CreationClassName", "SystemName", "Name"};

namespace {

using Record = IPConfigurationServiceRecord;
using ph::Property;

constexpr const char* className = "CIM_IPConfigurationService";
constexpr const char* methodName = "ApplySettingToIPProtocolEndpoint";

constexpr Property properties[] = {
    PH_KEY(Record, SystemCreationClassName),
    PH_KEY(Record, CreationClassName),
    PH_KEY(Record, SystemName),
    PH_KEY(Record, Name),
    PH_PROPERTY(Record, ElementName),
    PH_PROPERTY(Record, EnabledState),
    PH_PROPERTY(Record, RequestedState),
};

int enumerate(ph::RecordArray<Record>& services, ph::Detail) {
    char systemName[256] = "";
    Record* service = PH_GetSPSystemName(systemName) == 0 ? services.append() : nullptr;
    if (service == nullptr)
        return -1;
    ph::copyText(service->SystemName, systemName);
    return PH_Fill_IPConfigurationService(service);
}

CMPIStatus invoke(const ph::Request& request) {
    CMPIStatus status = ph::success;
    CMPIString* keyValues[4] = {};
    if (CheckForValidObjectPath(request.broker, request.ref, g_IPConfigurationServiceKeyList, keyValues, 4,
                                &status) != 0)
        return ph::fail(request.broker, CMPI_RC_ERR_INVALID_PARAMETER, "Invalid Key Properties");
    if (request.method == nullptr || strcasecmp(request.method, methodName) != 0)
        return ph::fail(request.broker, CMPI_RC_ERR_NOT_SUPPORTED, "Invalid Method name");
    PH_ApplySettingToIPProtocolEndpoint(request.broker, request.result, request.ref, request.context,
                                        request.in, request.out, &status);
    return status;
}

constexpr ph::Parameter parameters[] = {
    {"Configuration", CMPI_ref, ph::Direction::In, "CIM_IPAssignmentSettingData"},
    {"Endpoint", CMPI_ref, ph::Direction::In, "CIM_IPProtocolEndpoint"},
    {"Job", CMPI_ref, ph::Direction::Out, "CIM_ConcreteJob"},
};
constexpr ph::Method methods[] = {{methodName, parameters}};

constexpr ph::ClassDefinition<Record> definition{.name = className,
                                                 .superclass = "CIM_Service",
                                                 .keys = g_IPConfigurationServiceKeyList,
                                                 .properties = properties,
                                                 .enumerate = enumerate,
                                                 .invoke = invoke,
                                                 .methods = methods};

} // namespace

int PH_Fill_IPConfigurationService(Record* record) {
    ph::copyText(record->SystemCreationClassName, ph::systemClassName);
    ph::copyText(record->CreationClassName, className);
    ph::copyText(record->Name, "IPConfigurationService1");
    ph::copyText(record->ElementName, "IP Configuration Service");
    record->EnabledState = 2;    // enabled
    record->RequestedState = 12; // not applicable
    return 0;
}

PH_EXPORT_CLASS_FAMILY(IPConfigurationService, Record, definition)
