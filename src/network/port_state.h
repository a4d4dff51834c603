// The state that clients last asked of a port.
#pragma once

namespace ph {

// 0 when none was asked for.
int readRequestedState(const char* interfaceName);

} // namespace ph
