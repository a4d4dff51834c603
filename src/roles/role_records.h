// The records of a user and of a privilege level.
#pragma once

#include "provider_helper/roles.h"
#include "roles/privilege_levels.h"

namespace ph {

// Sets the identity's key.
void nameIdentity(IdentityRecord& record, std::uint8_t slot);
RoleRecord roleOf(const PrivilegeLevel& level);
PrivilegeRecord privilegeOf(const PrivilegeLevel& level);

} // namespace ph
