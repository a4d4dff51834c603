// Method AssignRoles.
#include "roles/role_members.h"
#include "roles/role_methods.h"
#include "Utility/back-ends/back_ends.h"

#include <algorithm>
#include <cmpimacs.h>
#include <mutex>

namespace ph {
namespace {

// The argument Roles as a privilege limit.
struct Limit {
    std::uint8_t value = noAccessLimit; // of no role
    const char* problem = nullptr;
};

const PrivilegeLevel* roleAt(const CMPIArray* array, CMPICount index) {
    CMPIStatus status = success;
    const CMPIData element = CMGetArrayElementAt(array, index, &status);
    if (status.rc != CMPI_RC_OK || element.type != CMPI_ref || (element.state & CMPI_nullValue) != 0 ||
        element.value.ref == nullptr || !isOfClass(element.value.ref, roleClass))
        return nullptr;
    const char* name = keyText(element.value.ref, "Name");
    return name != nullptr ? findLevel(std::string_view(name)) : nullptr;
}

Limit readLimit(const CMPIArgs* in) {
    const auto roles = argument(in, "Roles");
    if (!roles || roles->type != CMPI_refA || roles->value.array == nullptr)
        return {.problem = "Roles is no array of references"};
    CMPIStatus status = success;
    const CMPICount count = CMGetArrayCount(roles->value.array, &status);
    if (status.rc != CMPI_RC_OK || count > 1)
        return {.problem = "A user has one role at most"};
    if (count == 0)
        return {};
    const PrivilegeLevel* level = roleAt(roles->value.array, 0);
    return level != nullptr ? Limit{.value = level->limit} : Limit{.problem = "There is no such role"};
}

// The channels that a user's role is about. One that was shut out everywhere may still send messages where it
// could before, and a user that never had access gets it on the first channel.
std::vector<ChannelAccess> channelsOf(const RoleMembers& members, std::uint8_t slot) {
    const std::vector<ChannelAccess> all = members.accessOf(slot);
    std::vector<ChannelAccess> own;
    std::ranges::copy_if(all, std::back_inserter(own), [](const ChannelAccess& each) {
        return each.limit() != noAccessLimit || (each.access & mayMessage) != 0;
    });
    if (own.empty() && !all.empty())
        own.push_back(all.front());
    return own;
}

bool isAdministrator(const ChannelAccess& each) {
    return each.limit() == administratorLimit && each.isUsable();
}

// Tells whether nobody else could log in as administrator on a channel. Users that cannot be read do not count.
bool isLastAdministrator(const RoleMembers& members, std::uint8_t slot, std::uint8_t channel) {
    std::vector<PHUserEntry> users;
    members.readUsers(users);
    return std::ranges::none_of(users, [&](const PHUserEntry& user) {
        ChannelAccess other{channel, 0};
        return user.slot != slot &&
               CIM_GetUserAccess(members.session(), user.slot, channel, &other.access, hookTimeout) == 0 &&
               isAdministrator(other);
    });
}

bool setLimit(IPMI20_SESSION_T* session, std::uint8_t slot, std::uint8_t channel, std::uint8_t limit) {
    return CIM_ModUser(session, slot, channel, nullptr, nullptr, 0, limit, CIM_USER_KEEP, CIM_USER_KEEP,
                       CIM_USER_KEEP, hookTimeout) == 0;
}

// The session in which a change failed may be over.
void undo(std::uint8_t slot, std::span<const ChannelAccess> changed) {
    IpmiSession session;
    if (session.open())
        for (const ChannelAccess& each : changed)
            setLimit(session.get(), slot, each.channel, each.limit());
}

bool setLimits(const RoleMembers& members, std::uint8_t slot, std::span<const ChannelAccess> channels,
               std::uint8_t limit) {
    for (std::size_t i = 0; i < channels.size(); ++i)
        if (channels[i].limit() != limit && !setLimit(members.session(), slot, channels[i].channel, limit)) {
            undo(slot, channels.first(i + 1));
            return false;
        }
    return true;
}

} // namespace

MethodAnswer assignRoles(MethodCall& call) {
    const CMPIArgs* const in = call.request.in;
    const CMPIObjectPath* identity = referenceArgument(in, "Identity", identityClass);
    std::uint8_t slot = 0;
    if (identity == nullptr || !parseIdentityName(keyText(identity, "InstanceID"), slot))
        return call.refuse(CMPI_RC_ERR_INVALID_PARAMETER, "Identity is none of a user");
    const Limit limit = readLimit(in);
    if (limit.problem != nullptr)
        return call.refuse(CMPI_RC_ERR_INVALID_PARAMETER, limit.problem);

    // Of two administrators that give up their role at the same time, one is the last.
    static std::mutex turn;
    const std::scoped_lock lock(turn);
    IpmiSession session;
    if (!session.open())
        return call.refuse(CMPI_RC_ERR_FAILED, "There is no session with the BMC");
    const RoleMembers members(session.get());
    PHUserEntry user;
    if (!members.readUser(slot, user))
        return call.refuse(CMPI_RC_ERR_NOT_FOUND, "There is no such user, or it cannot be read");
    const std::vector<ChannelAccess> channels = channelsOf(members, slot);
    if (channels.empty())
        return call.refuse(CMPI_RC_ERR_FAILED, "The BMC does not tell the user's access");
    if (limit.value != administratorLimit && std::ranges::any_of(channels, [&](const ChannelAccess& each) {
            return isAdministrator(each) && isLastAdministrator(members, slot, each.channel);
        }))
        return call.refuse(CMPI_RC_ERR_FAILED, "The last administrator keeps its role");
    if (!setLimits(members, slot, channels, limit.value))
        return call.refuse(CMPI_RC_ERR_FAILED, "The BMC does not take the role");
    return methodDone;
}

} // namespace ph
