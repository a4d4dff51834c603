// The power of the host, which its own instance does not tell: CIM_AssociatedPowerManagementService does.
#pragma once

#include "requests.h"

namespace phctl {

// Prints a line for each of the instances that is the host: "Power: On". None where nobody knows, and for an
// answer that leaves properties out.
void printHostPower(Requester& requester, const std::vector<broker::Instance>& instances,
                    const broker::PropertyList& wanted);

} // namespace phctl
