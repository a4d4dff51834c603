// CIM_RoleBasedAuthorizationService: the one service, which gives users their roles.
#include "provider_helper/roles.h"
#include "roles/role_methods.h"
#include "Utility/engine/processor_service.h"

constexpr const char* const g_RoleBasedAuthorizationServiceKeyList[4] = {
    "SystemCreationClassName", "CreationClassName", "SystemName", "Name"};

namespace ph::role_based_authorization_service {
namespace {

using Record = RoleBasedAuthorizationServiceRecord;

constexpr const char* className = "CIM_RoleBasedAuthorizationService";

// It cannot be switched.
int enumerate(RecordArray<Record>& services, Detail detail) {
    return appendService(services, detail, className, "Role Based Authorization Service",
                         EnabledState::NotApplicable);
}

constexpr MethodValue notSupported{1};

// The levels of IPMI are what they are.
MethodAnswer refuse(MethodCall&) {
    return notSupported;
}

constexpr const char* elementClass = "CIM_ManagedElement";
constexpr const char* privilegeClass = "CIM_Privilege";

constexpr Parameter assignRoles[] = {
    {"Identity", CMPI_ref, Direction::In, identityClass},
    {"Roles", CMPI_refA, Direction::In, roleClass},
};
constexpr Parameter showRoles[] = {
    {"Subject", CMPI_ref, Direction::In, identityClass},
    {"Target", CMPI_ref, Direction::In, elementClass},
    {"Roles", CMPI_instanceA, Direction::Out, roleClass},
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
    {"RoleTemplate", CMPI_instance, Direction::In, roleClass},
    {"OwningSystem", CMPI_ref, Direction::In, "CIM_System"},
    {"Privileges", CMPI_instanceA, Direction::In, privilegeClass},
    {"RoleLimitedToTargets", CMPI_refA, Direction::In, elementClass},
    {"Role", CMPI_ref, Direction::Out, roleClass},
};
constexpr Parameter modifyRole[] = {
    {"Privileges", CMPI_instanceA, Direction::In, privilegeClass},
    {"RoleLimitedToTargets", CMPI_refA, Direction::In, elementClass},
    {"Role", CMPI_ref, Direction::In, roleClass},
};
constexpr Parameter deleteRole[] = {{"Role", CMPI_ref, Direction::In, roleClass}};

constexpr Method methods[] = {
    {.name = "AssignRoles", .parameters = assignRoles, .carryOut = ph::assignRoles},
    {.name = "ShowRoles", .parameters = showRoles, .carryOut = ph::showRoles},
    {.name = "ShowAccess", .parameters = showAccess, .carryOut = ph::showAccess},
    {.name = "CreateRole", .parameters = createRole, .carryOut = refuse},
    {.name = "ModifyRole", .parameters = modifyRole, .carryOut = refuse},
    {.name = "DeleteRole", .parameters = deleteRole, .carryOut = refuse},
};

constexpr ClassDefinition<Record> definition{.name = className,
                                             .superclass = "CIM_PrivilegeManagementService",
                                             .source = "one fixed instance; Get and Set User Access",
                                             .keys = g_RoleBasedAuthorizationServiceKeyList,
                                             .properties = serviceProperties<Record>,
                                             .enumerate = enumerate,
                                             .methods = methods,
                                             .invocation = {.isLookedUp = true, .missing = noSuchInstance}};

} // namespace
} // namespace ph::role_based_authorization_service

PH_EXPORT_CLASS_FAMILY(RoleBasedAuthorizationService, RoleBasedAuthorizationServiceRecord,
                       ph::role_based_authorization_service::definition)
