// CIM_RoleBasedManagementCapabilities: what the role based authorization service can do.
#include "provider_helper/roles.h"
#include "roles/privilege_levels.h"
#include "Utility/engine/class_family.h"
#include "Utility/values/dmtf_values.h"
#include "Utility/values/record_fields.h"

constexpr const char* const g_RoleBasedManagementCapabilitiesKeyList[1] = {"InstanceID"};

namespace {

using Record = RoleBasedManagementCapabilitiesRecord;
using ph::Property;

constexpr Property properties[] = {
    PH_KEY(Record, InstanceID),
    PH_PROPERTY(Record, ElementName),
    PH_PROPERTY(Record, SharedPrivilegeSupported),
    PH_PROPERTY(Record, ActivitiesSupported),
    PH_PROPERTY(Record, SupportedMethods),
};

int enumerate(ph::RecordArray<Record>& all, ph::Detail) {
    Record* capabilities = all.append();
    if (capabilities == nullptr)
        return -1;
    ph::copyText(capabilities->InstanceID, "RoleBasedManagementCapabilities");
    ph::copyText(capabilities->ElementName, "Role Based Management Capabilities");
    capabilities->SharedPrivilegeSupported = true;
    capabilities->ActivitiesSupported = ph::privilegeActivities;
    ph::setList(capabilities->SupportedMethods,
                {ph::RoleMethods::ShowAccess, ph::RoleMethods::AssignRoles, ph::RoleMethods::ShowRoles});
    return 0;
}

constexpr ph::ClassDefinition<Record> definition{.name = "CIM_RoleBasedManagementCapabilities",
                                                 .superclass = "CIM_PrivilegeManagementCapabilities",
                                                 .source = "one fixed instance",
                                                 .keys = g_RoleBasedManagementCapabilitiesKeyList,
                                                 .properties = properties,
                                                 .enumerate = enumerate};

} // namespace

PH_EXPORT_CLASS_FAMILY(RoleBasedManagementCapabilities, Record, definition)
