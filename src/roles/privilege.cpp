// CIM_Privilege: what a role allows.
#include "provider_helper/roles.h"
#include "roles/role_records.h"
#include "Utility/engine/class_family.h"
#include "Utility/values/record_fields.h"

#include <cstdio>

constexpr const char* const g_PrivilegeKeyList[1] = {"InstanceID"};

namespace ph::privilege {
namespace {

using Record = PrivilegeRecord;

constexpr Property properties[] = {
    PH_KEY(Record, InstanceID),
    PH_PROPERTY(Record, ElementName),
    PH_PROPERTY(Record, PrivilegeGranted),
    PH_PROPERTY(Record, Activities),
    PH_PROPERTY(Record, RepresentsAuthorizationRights),
};

int enumerate(RecordArray<Record>& privileges, Detail) {
    for (const PrivilegeLevel& level : privilegeLevels()) {
        Record* privilege = privileges.append();
        if (privilege == nullptr)
            return -1;
        *privilege = privilegeOf(level);
    }
    return 0;
}

constexpr ClassDefinition<Record> definition{.name = "CIM_Privilege",
                                             .superclass = "CIM_ManagedElement",
                                             .source = "the privilege levels of IPMI 2.0, 6.8",
                                             .keys = g_PrivilegeKeyList,
                                             .properties = properties,
                                             .enumerate = enumerate};

} // namespace
} // namespace ph::privilege

PrivilegeRecord ph::privilegeOf(const PrivilegeLevel& level) {
    PrivilegeRecord privilege{};
    std::snprintf(privilege.InstanceID, sizeof(privilege.InstanceID), "Privilege:%s", level.name);
    copyText(privilege.ElementName, level.title);
    privilege.PrivilegeGranted = true;
    privilege.Activities = level.activities;
    return privilege;
}

PH_EXPORT_CLASS_FAMILY(Privilege, PrivilegeRecord, ph::privilege::definition)
