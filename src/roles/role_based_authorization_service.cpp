// CIM_RoleBasedAuthorizationService: the one service, which gives users their roles.
#include "provider_helper/roles.h"
#include "roles/role_methods.h"
#include "Utility/engine/processor_service.h"

constexpr const char* const g_RoleBasedAuthorizationServiceKeyList[4] = {
    "SystemCreationClassName", "CreationClassName", "SystemName", "Name"};

namespace {

using Record = RoleBasedAuthorizationServiceRecord;
using ph::Direction;
using ph::Parameter;

constexpr const char* className = "CIM_RoleBasedAuthorizationService";

// It cannot be switched.
int enumerate(ph::RecordArray<Record>& services, ph::Detail detail) {
    return ph::appendService(services, detail, className, "Role Based Authorization Service",
                             ph::EnabledState::NotApplicable);
}

constexpr ph::MethodValue notSupported{1};

// The levels of IPMI are what they are.
ph::MethodAnswer refuse(ph::MethodCall&) {
    return notSupported;
}

constexpr const char* elementClass = "CIM_ManagedElement";
constexpr const char* privilegeClass = "CIM_Privilege";

constexpr Parameter assignRoles[] = {
    {"Identity", CMPI_ref, Direction::In, ph::identityClass},
    {"Roles", CMPI_refA, Direction::In, ph::roleClass},
};
constexpr Parameter showRoles[] = {
    {"Subject", CMPI_ref, Direction::In, ph::identityClass},
    {"Target", CMPI_ref, Direction::In, elementClass},
    {"Roles", CMPI_instanceA, Direction::Out, ph::roleClass},
    {"Privileges", CMPI_instanceA, Direction::Out, privilegeClass},
};
constexpr Parameter showAccess[] = {
    {"Subject", CMPI_ref, Direction::In, elementClass},
    {"Target", CMPI_ref, Direction::In, elementClass},
    {"OutSubjects", CMPI_refA, Direction::Out, elementClass},
    {"OutTargets", CMPI_refA, Direction::Out, elementClass},
    {"Privileges", CMPI_instanceA, Direction::Out, nullptr},
};
constexpr Parameter createRole[] = {
    {"RoleTemplate", CMPI_instance, Direction::In, ph::roleClass},
    {"OwningSystem", CMPI_ref, Direction::In, "CIM_System"},
    {"Privileges", CMPI_instanceA, Direction::In, privilegeClass},
    {"RoleLimitedToTargets", CMPI_refA, Direction::In, elementClass},
    {"Role", CMPI_ref, Direction::Out, ph::roleClass},
};
constexpr Parameter modifyRole[] = {
    {"Privileges", CMPI_instanceA, Direction::In, privilegeClass},
    {"RoleLimitedToTargets", CMPI_refA, Direction::In, elementClass},
    {"Role", CMPI_ref, Direction::In, ph::roleClass},
};
constexpr Parameter deleteRole[] = {{"Role", CMPI_ref, Direction::In, ph::roleClass}};

constexpr ph::Method methods[] = {
    {.name = "AssignRoles", .parameters = assignRoles, .carryOut = ph::assignRoles},
    {.name = "ShowRoles", .parameters = showRoles, .carryOut = ph::showRoles},
    {.name = "ShowAccess", .parameters = showAccess, .carryOut = ph::showAccess},
    {.name = "CreateRole", .parameters = createRole, .carryOut = refuse},
    {.name = "ModifyRole", .parameters = modifyRole, .carryOut = refuse},
    {.name = "DeleteRole", .parameters = deleteRole, .carryOut = refuse},
};

constexpr ph::ClassDefinition<Record> definition{
    .name = className,
    .superclass = "CIM_PrivilegeManagementService",
    .source = "one fixed instance; Get and Set User Access",
    .keys = g_RoleBasedAuthorizationServiceKeyList,
    .properties = ph::serviceProperties<Record>,
    .enumerate = enumerate,
    .methods = methods,
    .invocation = {.isLookedUp = true, .missing = ph::noSuchInstance}};

} // namespace

PH_EXPORT_CLASS_FAMILY(RoleBasedAuthorizationService, Record, definition)
