// A session with the virtual BMC.
#pragma once

#include "ipmi/transport.h"

namespace vbmc {

// `settings.address` is the state file; an empty one means the default. Throws ipmi::TransportError.
std::unique_ptr<ipmi::Transport> openTransport(const ipmi::SessionSettings& settings);

} // namespace vbmc
