// CIM_RoleBasedAuthorizationService: the one service, which gives users their roles.
#include "provider_helper/roles.h"
#include "roles/role_methods.h"
#include "Utility/engine/class_family.h"
#include "Utility/engine/hosted_element.h"
#include "Utility/values/dmtf_values.h"

constexpr const char* const g_RoleBasedAuthorizationServiceKeyList[4] = {
    "SystemCreationClassName", "CreationClassName", "SystemName", "Name"};

namespace {

using Record = RoleBasedAuthorizationServiceRecord;
using ph::Direction;
using ph::Parameter;
using ph::Property;

constexpr const char* className = "CIM_RoleBasedAuthorizationService";

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
    ph::setHostedKeys(*service, ph::processorClass, systemName, className);
    ph::copyText(service->Name, "Role Based Authorization Service");
    ph::copyText(service->ElementName, "Role Based Authorization Service");
    service->EnabledState = ph::EnabledState::NotApplicable;
    service->RequestedState = ph::RequestedState::NotApplicable;
    return 0;
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
    .properties = properties,
    .enumerate = enumerate,
    .methods = methods,
    .invocation = {.isLookedUp = true, .missing = ph::noSuchInstance}};

} // namespace

PH_EXPORT_CLASS_FAMILY(RoleBasedAuthorizationService, Record, definition)
