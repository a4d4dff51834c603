// The BMC's user slots.
#pragma once

#include "provider_helper/accounts.h"

#include <cstdint>

namespace ph {

inline constexpr std::uint8_t anonymousSlot = 1;
inline constexpr std::uint8_t lastDefaultSlot = 2; // slots 1 and 2 cannot be deleted

// CIM_GetUserAccess
inline constexpr std::uint8_t mayMessage = 0x10;
inline constexpr std::uint8_t isEnabled = 0x40;

enum class Slot {
    Used,
    Free,
    Omitted, // its access cannot be read
    Failed
};

// Reads one slot; `user` is filled for a used one.
Slot readSlot(IPMI20_SESSION_T* session, int mode, std::uint8_t slot, PHUserEntry& user);

// Does what PH_Get_User does, in an open session with a BMC that has this number of slots.
int findUser(IPMI20_SESSION_T* session, int slots, int mode, const char* name, PHUserEntry& user);

// Turns a BMC's user name into a text of CIM. Bytes that are no UTF-8 are read as ISO 8859-1, as IPMI's other
// texts are; control characters become '_'.
using UserName = char[2 * CIM_USER_NAME_SIZE];
void decodeUserName(const char* bytes, UserName& name);

// Reads the number behind "IPMI User-"; false when the text has another form. Numbers that no slot has,
// negative ones too, become 255, which no BMC has.
bool parseAccountName(const char* name, std::uint8_t& slot);

} // namespace ph
