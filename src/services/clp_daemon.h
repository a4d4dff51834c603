// The CLP daemon's clients.
#pragma once

#include <cstdint>
#include <vector>

namespace ph {

// Appends the process IDs of the clients on terminals. Returns -1 when the processes cannot be listed.
int listClpClients(std::vector<std::uint32_t>& processes);

} // namespace ph
