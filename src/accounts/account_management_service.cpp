// CIM_AccountManagementService: the one service, which creates accounts.
#include "accounts/account.h"
#include "Utility/engine/processor_service.h"

constexpr const char* const g_AccountManagementServiceKeyList[4] = {
    "SystemCreationClassName", "CreationClassName", "SystemName", "Name"};

namespace {

using Record = AccountManagementServiceRecord;
using ph::Direction;

constexpr const char* className = "CIM_AccountManagementService";

// It cannot be switched.
constexpr std::uint16_t enabledState = ph::EnabledState::NotApplicable;

int enumerate(ph::RecordArray<Record>& services, ph::Detail detail) {
    return ph::appendService(services, detail, className, "Account Management Service", enabledState);
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
    .properties = ph::serviceProperties<Record>,
    .enumerate = enumerate,
    .methods = methods,
    .invocation = {.keys = ph::Invocation::Keys::None, .unknownMethod = ph::noSuchAccountMethod}};

} // namespace

PH_EXPORT_CLASS_FAMILY(AccountManagementService, Record, definition)

int PH_Fill_AccountManagementService(AccountManagementServiceRecord* record) {
    ph::fillService(*record, record->Name, enabledState);
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
