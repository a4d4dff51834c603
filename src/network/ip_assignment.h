// The two ways to get an address, as clients name them.
#pragma once

namespace ph {

inline constexpr const char* dhcpAssignment = "IPAssignmentSettingData-DHCP";
inline constexpr const char* staticAssignment = "IPAssignmentSettingData-Static";

} // namespace ph
