// Switching the host's power.
#pragma once

#include "Utility/back-ends/back_ends.h"

namespace ph {

using PowerHook = int (*)(IPMI20_SESSION_T* session, int timeout);

// Calls a hook on a session of its own. Returns 0 or -1.
inline int switchPower(PowerHook hook) {
    IpmiSession session;
    return session.open() && hook(session.get(), hookTimeout) == 0 ? 0 : -1;
}

} // namespace ph
