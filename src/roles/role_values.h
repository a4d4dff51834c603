// Values of DMTF value maps (CIM schema 2.41).
#pragma once

#include <cstdint>

namespace ph {

namespace RoleCharacteristics { // CIM_Role
enum : std::uint16_t { Static = 2 };
}
namespace Activities { // CIM_Privilege
enum : std::uint16_t { Other = 1, Create = 2, Delete = 3, Detect = 4, Read = 5, Write = 6, Execute = 7 };
}
namespace RoleMethods { // CIM_RoleBasedManagementCapabilities.SupportedMethods
enum : std::uint16_t { ShowAccess = 1, AssignRoles = 6, ShowRoles = 7 };
}

} // namespace ph
