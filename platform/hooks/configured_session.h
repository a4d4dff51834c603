// The session that the SMASH database describes, for hooks that are called without one.
#pragma once

#include "ipmi/transport.h"

namespace hooks {

// Throws when the database has no session row.
std::unique_ptr<ipmi::Transport> openConfiguredSession();

} // namespace hooks
