// CIM_Identity: who an account is to the BMC, and what it may do there.
#include "provider_helper/roles.h"
#include "roles/role_members.h"
#include "roles/role_records.h"
#include "Utility/back-ends/back_ends.h"
#include "Utility/engine/class_family.h"
#include "Utility/requests/request_texts.h"
#include "Utility/values/record_fields.h"

#include <bitset>
#include <cstdio>

constexpr const char* const g_IdentityKeyList[1] = {"InstanceID"};

namespace ph::identity {
namespace {

using Record = IdentityRecord;

bool knowsSessions(const Record& record) {
    return record.knowsSessions;
}

constexpr Property properties[] = {
    PH_KEY(Record, InstanceID),
    PH_PROPERTY(Record, ElementName),
    PH_PROPERTY(Record, Description),
    PH_PROPERTY_IF(Record, CurrentlyAuthenticated, knowsSessions),
};

// The users that have open sessions.
class LoggedIn {
public:
    explicit LoggedIn(IPMI20_SESSION_T* session) {
        CIM_OpenSession sessions[CIM_MAX_OPEN_SESSIONS] = {};
        std::uint8_t count = 0;
        isKnown_ = CIM_GetOpenSessions != nullptr &&
                   CIM_GetOpenSessions(session, sessions, &count, hookTimeout) == 0;
        for (int i = 0; isKnown_ && i < count && i < CIM_MAX_OPEN_SESSIONS; ++i)
            slots_.set(sessions[i].user);
    }
    bool isKnown() const { return isKnown_; }
    bool includes(std::uint8_t slot) const { return slots_.test(slot); }

private:
    bool isKnown_;
    std::bitset<256> slots_;
};

void describe(Record& record, const std::vector<ChannelAccess>& channels) {
    std::size_t used = 0;
    for (const ChannelAccess& each : channels)
        if (const PrivilegeLevel* level = each.level(); level != nullptr)
            used += std::snprintf(record.Description + used, sizeof(record.Description) - used,
                                  "%s%s on channel %u", used != 0 ? ", " : "", level->name, each.channel);
    if (used == 0)
        copyText(record.Description, "no access");
}

Record* append(RecordArray<Record>& identities, const PHUserEntry& user) {
    Record* record = identities.append();
    if (record == nullptr)
        return nullptr;
    nameIdentity(*record, user.slot);
    record->slot = user.slot;
    return record;
}

void fill(Record& record, const PHUserEntry& user, const RoleMembers& members, const LoggedIn& loggedIn) {
    copyText(record.ElementName, user.userName);
    describe(record, members.accessOf(user.slot));
    record.knowsSessions = loggedIn.isKnown();
    record.CurrentlyAuthenticated = loggedIn.includes(user.slot);
}

int enumerate(RecordArray<Record>& identities, Detail detail) {
    IpmiSession session;
    if (!session.open())
        return -1;
    const RoleMembers members(session.get());
    std::vector<PHUserEntry> users;
    if (!members.readUsers(users))
        return -1;
    const LoggedIn loggedIn(session.get());
    for (const PHUserEntry& user : users) {
        Record* record = append(identities, user);
        if (record == nullptr)
            return -1;
        if (detail == Detail::All)
            fill(*record, user, members, loggedIn);
    }
    return 0;
}

// Reads the one slot that the InstanceID numbers.
int get(RecordArray<Record>& identities, CMPIString** keyValues) {
    std::uint8_t slot = 0;
    IpmiSession session;
    if (!parseIdentityName(textOf(keyValues[0]), slot) || !session.open())
        return -1;
    const RoleMembers members(session.get());
    PHUserEntry user;
    Record* record = members.readUser(slot, user) ? append(identities, user) : nullptr;
    if (record == nullptr)
        return -1;
    fill(*record, user, members, LoggedIn(session.get()));
    return 0;
}

constexpr ClassDefinition<Record> definition{.name = "CIM_Identity",
                                             .superclass = "CIM_ManagedElement",
                                             .source = "Get User Name, Get User Access, Get Session Info",
                                             .keys = g_IdentityKeyList,
                                             .properties = properties,
                                             .enumerate = enumerate,
                                             .get = get};

} // namespace
} // namespace ph::identity

void ph::nameIdentity(IdentityRecord& record, std::uint8_t slot) {
    std::snprintf(record.InstanceID, sizeof(record.InstanceID), "%sIPMI User-%u", identityPrefix, slot);
}

PH_EXPORT_CLASS_FAMILY(Identity, IdentityRecord, ph::identity::definition)
