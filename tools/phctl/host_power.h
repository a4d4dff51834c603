// The power of the host, which its own instance does not tell: CIM_AssociatedPowerManagementService does.
#pragma once

#include "requests.h"

namespace phctl {

// Prints "Power: On" for each of the instances that is the host. It prints nothing where the BMC does not
// tell, and where the user asked for some properties only.
void printHostPower(Requester& requester, const std::vector<broker::Instance>& instances,
                    const broker::PropertyList& wanted);

} // namespace phctl
