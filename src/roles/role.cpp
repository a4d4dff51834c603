// CIM_Role: one for each privilege level of IPMI.
#include "provider_helper/roles.h"
#include "roles/role_records.h"
#include "Utility/engine/class_family.h"
#include "Utility/values/dmtf_values.h"
#include "Utility/values/record_fields.h"

constexpr const char* const g_RoleKeyList[2] = {"CreationClassName", "Name"};

namespace ph::role {
namespace {

using Record = RoleRecord;

constexpr const char* className = "CIM_Role";

constexpr Property properties[] = {
    PH_KEY(Record, CreationClassName),        PH_KEY(Record, Name),
    PH_PROPERTY(Record, CommonName),          PH_PROPERTY(Record, ElementName),
    PH_PROPERTY(Record, RoleCharacteristics),
};

int enumerate(RecordArray<Record>& roles, Detail) {
    for (const PrivilegeLevel& level : privilegeLevels()) {
        Record* role = roles.append();
        if (role == nullptr)
            return -1;
        *role = roleOf(level);
    }
    return 0;
}

constexpr ClassDefinition<Record> definition{.name = className,
                                             .superclass = "CIM_Collection",
                                             .source = "the privilege levels of IPMI 2.0, 6.8",
                                             .keys = g_RoleKeyList,
                                             .properties = properties,
                                             .enumerate = enumerate};

} // namespace
} // namespace ph::role

RoleRecord ph::roleOf(const PrivilegeLevel& level) {
    RoleRecord role{};
    copyText(role.CreationClassName, ph::role::className);
    copyText(role.Name, level.name);
    copyText(role.CommonName, level.name);
    copyText(role.ElementName, level.title);
    setList(role.RoleCharacteristics, {RoleCharacteristics::Static});
    role.level = level.limit;
    return role;
}

PH_EXPORT_CLASS_FAMILY(Role, RoleRecord, ph::role::definition)
