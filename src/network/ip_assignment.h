// The two ways to get an address, as clients name them, and the method that applies one.
#pragma once

#include "Utility/engine/method.h"

namespace ph {

inline constexpr const char* dhcpAssignment = "IPAssignmentSettingData-DHCP";
inline constexpr const char* staticAssignment = "IPAssignmentSettingData-Static";

// ApplySettingToIPProtocolEndpoint of CIM_IPConfigurationService.
MethodAnswer applySetting(MethodCall& call);

} // namespace ph
