// The power of the host, which its own instance does not tell: CIM_AssociatedPowerManagementService does.
#pragma once

#include "requests.h"

namespace phctl {

bool isHost(const broker::ObjectPath& path);

// Prints "Power: On". It prints nothing where the BMC does not tell.
void printHostPower(Requester& requester, const broker::ObjectPath& host);

} // namespace phctl
