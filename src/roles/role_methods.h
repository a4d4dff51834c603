// Methods of CIM_RoleBasedAuthorizationService.
#pragma once

#include "Utility/engine/method.h"

namespace ph {

inline constexpr const char* identityClass = "CIM_Identity";
inline constexpr const char* roleClass = "CIM_Role";

MethodAnswer assignRoles(MethodCall& call);
MethodAnswer showRoles(MethodCall& call);
MethodAnswer showAccess(MethodCall& call);

} // namespace ph
