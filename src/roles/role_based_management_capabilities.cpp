// CIM_RoleBasedManagementCapabilities: what the role based authorization service can do.
#include "provider_helper/roles.h"
#include "roles/privilege_levels.h"
#include "Utility/engine/class_family.h"
#include "Utility/values/dmtf_values.h"
#include "Utility/values/record_fields.h"

constexpr const char* const g_RoleBasedManagementCapabilitiesKeyList[1] = {"InstanceID"};

namespace ph::role_based_management_capabilities {
namespace {

using Record = RoleBasedManagementCapabilitiesRecord;

constexpr Property properties[] = {
    PH_KEY(Record, InstanceID),
    PH_PROPERTY(Record, ElementName),
    PH_PROPERTY(Record, SharedPrivilegeSupported),
    PH_PROPERTY(Record, ActivitiesSupported),
    PH_PROPERTY(Record, SupportedMethods),
};

int enumerate(RecordArray<Record>& all, Detail) {
    Record* capabilities = all.append();
    if (capabilities == nullptr)
        return -1;
    copyText(capabilities->InstanceID, "RoleBasedManagementCapabilities");
    copyText(capabilities->ElementName, "Role Based Management Capabilities");
    capabilities->SharedPrivilegeSupported = true;
    capabilities->ActivitiesSupported = privilegeActivities;
    setList(capabilities->SupportedMethods,
            {RoleMethods::ShowAccess, RoleMethods::AssignRoles, RoleMethods::ShowRoles});
    return 0;
}

constexpr ClassDefinition<Record> definition{.name = "CIM_RoleBasedManagementCapabilities",
                                             .superclass = "CIM_PrivilegeManagementCapabilities",
                                             .source = "one fixed instance",
                                             .keys = g_RoleBasedManagementCapabilitiesKeyList,
                                             .properties = properties,
                                             .enumerate = enumerate};

} // namespace
} // namespace ph::role_based_management_capabilities

PH_EXPORT_CLASS_FAMILY(RoleBasedManagementCapabilities, RoleBasedManagementCapabilitiesRecord,
                       ph::role_based_management_capabilities::definition)
