#include "roles/role_members.h"

#include "Utility/back-ends/back_ends.h"

#include <algorithm>
#include <cstring>

namespace ph {

RoleMembers::RoleMembers(IPMI20_SESSION_T* session) : session_(session) {
    std::uint8_t count = 0;
    std::uint8_t lans[CIM_MAX_LANS] = {};
    if (CIM_GetLANCount(session, &count, lans, hookTimeout) != 0)
        count = 0;
    std::for_each_n(lans, std::min<std::size_t>(count, CIM_MAX_LANS), [&](std::uint8_t lan) {
        std::uint8_t channel = 0;
        if (CIM_GetChannelNum(session, lan, &channel, hookTimeout) == 0)
            channels_.push_back(channel);
    });
    if (channels_.empty())
        channels_.push_back(CIM_USER_PRESENT_CHANNEL);
}

bool RoleMembers::readUsers(std::vector<PHUserEntry>& users) const {
    const int slots = PH_Get_Max_Users_Count(session_);
    int unreadable = 0;
    for (int slot = anonymousSlot; slot <= slots; ++slot) {
        PHUserEntry user;
        const Slot state = readSlot(session_, PH_USERS_WITH_ACCESS, static_cast<std::uint8_t>(slot), user);
        if (state == Slot::Used)
            users.push_back(user);
        unreadable += state == Slot::Failed;
    }
    return slots >= 0 && (slots == 0 || unreadable < slots);
}

bool RoleMembers::readUser(std::uint8_t slot, PHUserEntry& user) const {
    return slot >= anonymousSlot && slot <= PH_Get_Max_Users_Count(session_) &&
           readSlot(session_, PH_USERS_WITH_ACCESS, slot, user) == Slot::Used;
}

std::vector<ChannelAccess> RoleMembers::accessOf(std::uint8_t slot) const {
    std::vector<ChannelAccess> all;
    for (const std::uint8_t channel : channels_) {
        ChannelAccess each{channel, 0};
        if (CIM_GetUserAccess(session_, slot, channel, &each.access, hookTimeout) == 0)
            all.push_back(each);
    }
    return all;
}

bool parseIdentityName(const char* name, std::uint8_t& slot) {
    const std::size_t length = std::strlen(identityPrefix);
    return name != nullptr && std::strncmp(name, identityPrefix, length) == 0 &&
           parseAccountName(name + length, slot);
}

} // namespace ph
