#include "accounts/user_slots.h"
#include "Utility/back-ends/back_ends.h"
#include "Utility/values/record_fields.h"

#include <charconv>
#include <cstdio>
#include <cstring>
#include <string_view>

namespace ph {
namespace {

constexpr std::uint8_t unknownAccess = 0xFF;
constexpr const char* anonymous = "anonymous";

// Reads one slot's name, which is empty for a free slot.
bool readName(IPMI20_SESSION_T* session, std::uint8_t slot, UserName& name) {
    char bytes[CIM_USER_NAME_SIZE] = "";
    if (CIM_GetUser(session, slot, bytes, hookTimeout) != 0)
        return false;
    bytes[sizeof(bytes) - 1] = '\0';
    decodeUserName(bytes, name);
    return true;
}

Slot readAccess(IPMI20_SESSION_T* session, int mode, std::uint8_t slot, const char* name, PHUserEntry& user) {
    if (name[0] == '\0' && slot != anonymousSlot)
        return Slot::Free;
    user = {};
    copyText(user.userName, slot == anonymousSlot ? anonymous : name);
    user.slot = slot;
    user.access = unknownAccess;
    if (mode != PH_USERS_WITH_ACCESS)
        return Slot::Used;
    if (CIM_GetUserAccess(session, slot, CIM_USER_PRESENT_CHANNEL, &user.access, hookTimeout) != 0)
        return Slot::Omitted;
    user.isEnabled = (user.access & isEnabled) != 0;
    return Slot::Used;
}

// Calls `visit(user, name)` for each used slot until it returns false; `name` is what the slot holds. Leaves
// out slots that cannot be read, and returns -1 when none can.
template <class Visit>
int forEachUser(IPMI20_SESSION_T* session, int slots, int mode, Visit visit) {
    int unreadable = 0;
    for (int i = anonymousSlot; i <= slots; ++i) {
        const auto slot = static_cast<std::uint8_t>(i);
        PHUserEntry user;
        UserName name;
        if (!readName(session, slot, name))
            ++unreadable;
        else if (readAccess(session, mode, slot, name, user) == Slot::Used && !visit(user, name))
            return 0;
    }
    return slots >= 0 && (slots == 0 || unreadable < slots) ? 0 : -1;
}

void append(char* message, const char* text) {
    const std::size_t used = strnlen(message, PH_ACCOUNT_MESSAGE_SIZE - 1);
    std::snprintf(message + used, PH_ACCOUNT_MESSAGE_SIZE - used, "%s", text);
}

} // namespace

Slot readSlot(IPMI20_SESSION_T* session, int mode, std::uint8_t slot, PHUserEntry& user) {
    UserName name;
    return readName(session, slot, name) ? readAccess(session, mode, slot, name, user) : Slot::Failed;
}

int findUser(IPMI20_SESSION_T* session, int slots, int mode, const char* name, PHUserEntry& user) {
    bool isFound = false;
    const int result = forEachUser(session, slots, mode, [&](const PHUserEntry& candidate, const char* held) {
        isFound = std::strcmp(*held != '\0' ? held : anonymous, name) == 0;
        if (isFound)
            user = candidate;
        return !isFound;
    });
    return result == 0 && isFound ? 0 : -1;
}

bool parseAccountName(const char* name, std::uint8_t& slot) {
    constexpr std::string_view prefix = "IPMI User-";
    constexpr std::uint8_t none = 0xFF;
    const std::string_view text(name);
    if (!text.starts_with(prefix))
        return false;
    int number = 0;
    const auto [end, error] = std::from_chars(text.data() + prefix.size(), text.data() + text.size(), number);
    if (error == std::errc::invalid_argument || end != text.data() + text.size())
        return false;
    const bool fits = error == std::errc() && number >= 0 && number < none;
    slot = fits ? static_cast<std::uint8_t>(number) : none;
    return true;
}

} // namespace ph

int PH_Get_Max_Users_Count(IPMI20_SESSION_T* session) {
    std::uint8_t count = 0;
    return CIM_GetMaxNumUsers(session, &count, ph::hookTimeout) == 0 ? count : -1;
}

int PH_Get_All_Users(int mode, PHUserEntry** users, int* count) {
    constexpr std::size_t mostSlots = 0xFF;
    *users = nullptr;
    *count = 0;
    ph::HeapPtr<PHUserEntry> list(static_cast<PHUserEntry*>(std::calloc(mostSlots, sizeof(PHUserEntry))));
    if (list == nullptr)
        return -1;
    int used = 0;
    ph::IpmiSession session;
    if (!session.open())
        return -1;
    const auto keep = [&](const PHUserEntry& user, const char*) {
        list.get()[used++] = user;
        return true;
    };
    if (ph::forEachUser(session.get(), PH_Get_Max_Users_Count(session.get()), mode, keep) != 0)
        return -1;
    *users = list.release();
    *count = used;
    return 0;
}

int PH_Get_User(int mode, const char* name, PHUserEntry* user) {
    ph::IpmiSession session;
    if (!session.open())
        return -1;
    return ph::findUser(session.get(), PH_Get_Max_Users_Count(session.get()), mode, name, *user);
}

int PH_Get_Empty_Slots(IPMI20_SESSION_T* session, char* message) {
    const int slots = PH_Get_Max_Users_Count(session);
    if (slots < 0)
        return -1;
    ph::append(message, ": Available slots - ");
    for (int slot = 1; slot <= slots; ++slot) {
        PHUserEntry user;
        if (ph::readSlot(session, 0, static_cast<std::uint8_t>(slot), user) != ph::Slot::Free)
            continue;
        char number[16];
        std::snprintf(number, sizeof(number), " %d", slot);
        ph::append(message, number);
    }
    return 0;
}
