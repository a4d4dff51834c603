// CIM_AccountManagementService: the one service, which creates accounts.
#include "accounts/account.h"
#include "Utility/engine/processor_service.h"

constexpr const char* const g_AccountManagementServiceKeyList[4] = {
    "SystemCreationClassName", "CreationClassName", "SystemName", "Name"};

namespace ph::account_management_service {
namespace {

using Record = AccountManagementServiceRecord;

constexpr const char* className = "CIM_AccountManagementService";

// It cannot be switched.
constexpr std::uint16_t enabledState = EnabledState::NotApplicable;

int enumerate(RecordArray<Record>& services, Detail detail) {
    return appendService(services, detail, className, "Account Management Service", enabledState);
}

constexpr Parameter createAccountParameters[] = {
    {"System", CMPI_ref, Direction::In, "CIM_ComputerSystem"},
    {"AccountTemplate", CMPI_instance, Direction::In, "CIM_Account"},
    {"Account", CMPI_ref, Direction::Out, "CIM_Account"},
    {"Identities", CMPI_refA, Direction::Out, "CIM_Identity"}, // none is returned
};
constexpr Method methods[] = {
    {.name = "CreateAccount", .parameters = createAccountParameters, .carryOut = createAccount}};

constexpr ClassDefinition<Record> definition{
    .name = className,
    .superclass = "CIM_SecurityService",
    .source = "one fixed instance; Set User Name, Access and Password",
    .keys = g_AccountManagementServiceKeyList,
    .properties = serviceProperties<Record>,
    .enumerate = enumerate,
    .methods = methods,
    .invocation = {.keys = Invocation::Keys::None, .unknownMethod = noSuchAccountMethod}};

} // namespace
} // namespace ph::account_management_service

PH_EXPORT_CLASS_FAMILY(AccountManagementService, AccountManagementServiceRecord,
                       ph::account_management_service::definition)

int PH_Fill_AccountManagementService(AccountManagementServiceRecord* record) {
    ph::fillService(*record, record->Name, ph::account_management_service::enabledState);
    return 0;
}

CMPIStatus PH_Create_Account(const CMPIBroker* broker, const CMPIContext* context, const CMPIResult* result,
                             const CMPIObjectPath* ref, const CMPIArgs* in, CMPIArgs* out) {
    CMPIStatus status = ph::success;
    ph::engine::carryOut(
        ph::family_AccountManagementService, ph::account_management_service::methods[0],
        {.broker = broker, .context = context, .result = result, .ref = ref, .in = in, .out = out}, nullptr,
        &status);
    return status;
}
