// Who has which role: the access of the BMC's users on its channels.
#pragma once

#include "accounts/user_slots.h"
#include "roles/privilege_levels.h"

#include <vector>

namespace ph {

struct ChannelAccess {
    std::uint8_t channel;
    std::uint8_t access; // CIM_GetUserAccess

    std::uint8_t limit() const { return access & 0x0F; }
    const PrivilegeLevel* level() const { return findLevel(limit()); }
    // Tells whether the user can log in with what its limit allows.
    bool isUsable() const { return (access & isEnabled) != 0 && (access & mayMessage) != 0; }
};

// The users and channels of a BMC, in an open session.
class RoleMembers {
public:
    explicit RoleMembers(IPMI20_SESSION_T* session);

    // The users that have an account; false when none can be read.
    bool readUsers(std::vector<PHUserEntry>& users) const;
    // The user of a slot, if it has an account.
    bool readUser(std::uint8_t slot, PHUserEntry& user) const;

    // The user's access on each channel; channels that the BMC does not tell of are left out.
    std::vector<ChannelAccess> accessOf(std::uint8_t slot) const;

    IPMI20_SESSION_T* session() const { return session_; }

private:
    IPMI20_SESSION_T* session_;
    std::vector<std::uint8_t> channels_;
};

// An identity is named after its account: "Identity:IPMI User-3".
inline constexpr const char* identityPrefix = "Identity:";
// Reads the slot out of such a name; false for any other text.
bool parseIdentityName(const char* name, std::uint8_t& slot);

} // namespace ph
