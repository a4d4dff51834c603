// A question of a tool's own in the sessions of its providers.
#pragma once

#include "ipmi/transport.h"

namespace ipmi {

// Spares tools a session for a question of their own: `ask` gets each transport that is opened from now on before
// anybody else does. The observer of exchanges is not told of what it asks, and what it throws is passed over. To be
// called before other threads open any.
PH_IPMI_EXPORT void askFirst(std::function<void(Transport& opened)> ask);

} // namespace ipmi
