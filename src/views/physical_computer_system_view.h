// The view of the host: what fills it, and its methods.
#pragma once

#include "provider_helper/views.h"
#include "Utility/engine/method.h"

namespace ph::view {

// Fills all but the key. Returns 0 or -1, see views.h.
int fill(PhysicalComputerSystemViewRecord& view);

MethodAnswer clearLog(MethodCall& call);
MethodAnswer installSoftware(MethodCall& call);
MethodAnswer modifyBootOrder(MethodCall& call);
MethodAnswer setBootSource(MethodCall& call);

} // namespace ph::view
