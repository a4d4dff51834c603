// The BMC's user table (IPMI 2.0, 22.26 to 22.30).
#pragma once

#include "ipmi/transport.h"

#include <string>
#include <string_view>

namespace hooks {

inline constexpr std::uint8_t presentChannel = 0x0E;
inline constexpr std::uint8_t firstUser = 1;
inline constexpr std::size_t userNameSize = 16;

struct UserAccess {
    std::uint8_t maxUsers;
    bool isDisabled;
    std::uint8_t access; // bit 6 callback only, 5 link authentication, 4 IPMI messaging, 3:0 privilege limit
};

UserAccess readUserAccess(ipmi::Transport& bmc, std::uint8_t channel, std::uint8_t user);

// The name is empty for a slot that is not in use, which BMCs answer with zeros or refuse.
std::string readUserName(ipmi::Transport& bmc, std::uint8_t user);

// Throws std::runtime_error unless the BMC has an enabled user of this name. A BMC that has no user table
// knows no users that it could refuse.
void requireUser(ipmi::Transport& bmc, std::string_view name);

} // namespace hooks
