// CIM_AccountManagementService: the one service, which creates accounts.
#include "accounts/account.h"
#include "Utility/engine/hosted_element.h"
#include "Utility/values/dmtf_values.h"
#include "Utility/values/record_fields.h"

constexpr const char* const g_AccountManagementServiceKeyList[4] = {
    "SystemCreationClassName", "CreationClassName", "SystemName", "Name"};

namespace {

using Record = AccountManagementServiceRecord;
using ph::Direction;

constexpr const char* className = "CIM_AccountManagementService";
constexpr const char* serviceName = "Account Management Service";

constexpr ph::Property properties[] = {
    PH_KEY(Record, SystemCreationClassName),
    PH_KEY(Record, CreationClassName),
    PH_KEY(Record, SystemName),
    PH_KEY(Record, Name),
    PH_PROPERTY(Record, ElementName),
    PH_PROPERTY(Record, EnabledState),
    PH_PROPERTY(Record, RequestedState),
};

int enumerate(ph::RecordArray<Record>& services, ph::Detail detail) {
    Record* service = services.append();
    if (service == nullptr)
        return -1;
    ph::copyText(service->SystemCreationClassName, ph::processorClass);
    ph::copyText(service->CreationClassName, className);
    ph::copyText(service->Name, serviceName);
    if (PH_GetSPSystemName(service->SystemName) != 0)
        return -1;
    return detail == ph::Detail::Names ? 0 : PH_Fill_AccountManagementService(service);
}

constexpr ph::Parameter createAccountParameters[] = {
    {"System", CMPI_ref, Direction::In, "CIM_ComputerSystem"},
    {"AccountTemplate", CMPI_instance, Direction::In, "CIM_Account"},
    {"Account", CMPI_ref, Direction::Out, "CIM_Account"},
    {"Identities", CMPI_refA, Direction::Out, "CIM_Identity"}, // none is returned
};
constexpr ph::Method methods[] = {
    {.name = "CreateAccount", .parameters = createAccountParameters, .carryOut = ph::createAccount}};

constexpr ph::ClassDefinition<Record> definition{
    .name = className,
    .superclass = "CIM_SecurityService",
    .source = "one fixed instance; Set User Name, Access and Password",
    .keys = g_AccountManagementServiceKeyList,
    .properties = properties,
    .enumerate = enumerate,
    .methods = methods,
    .invocation = {.keys = ph::Invocation::Keys::None, .unknownMethod = ph::noSuchAccountMethod}};

} // namespace

PH_EXPORT_CLASS_FAMILY(AccountManagementService, Record, definition)

int PH_Fill_AccountManagementService(AccountManagementServiceRecord* record) {
    ph::copyText(record->ElementName, record->Name);
    record->EnabledState = ph::EnabledState::NotApplicable;
    record->RequestedState = ph::RequestedState::NotApplicable;
    return 0;
}

CMPIStatus PH_Create_Account(const CMPIBroker* broker, const CMPIContext* context, const CMPIResult* result,
                             const CMPIObjectPath* ref, const CMPIArgs* in, CMPIArgs* out) {
    CMPIStatus status = ph::success;
    ph::engine::carryOut(
        ph::family_AccountManagementService, methods[0],
        {.broker = broker, .context = context, .result = result, .ref = ref, .in = in, .out = out}, nullptr,
        &status);
    return status;
}
