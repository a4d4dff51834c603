#include "smash-db/sync/power_services.h"

namespace smash {

std::span<const PowerServiceRow> powerServices() {
    static constexpr PowerServiceRow rows[] = {
        {"Host Power Management Service", "Host Power Management Service", "2", 5, 2, 12, 1},
        {"SP Power Management Service", "SP Power Management Service", "2", 5, 2, 12, 1},
    };
    return rows;
}

// The host does what Chassis Control has; a controller only restarts.
std::span<const PowerCapabilitiesRow> powerCapabilities() {
    static constexpr PowerCapabilitiesRow rows[] = {
        {"HostPowerManagementCapabilities", "Host Power Management Capabilities", "3,4,6,7,8",
         "2,5,6,8,9,10,11", "2,5,6,8,9,10,11"},
        {"SPPowerManagementCapabilities", "SP Power Management Capabilities", "3,4", "5", "5"},
    };
    return rows;
}

} // namespace smash
