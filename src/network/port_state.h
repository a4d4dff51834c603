// The state that clients last asked of a port.
#pragma once

namespace ph {

// Returns 0 when no state was asked for.
int readRequestedState(const char* interfaceName);

} // namespace ph
