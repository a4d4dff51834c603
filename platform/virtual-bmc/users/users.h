// The user table (IPMI 2.0 22.26 to 22.30).
#pragma once

#include "virtual-bmc/state/part.h"

#include <string>
#include <string_view>
#include <vector>

namespace vbmc {

struct User {
    std::uint8_t id = 0;
    std::string name;
    bool isEnabled = true;
    bool isFixedName = false;
    std::uint8_t privilege = 4; // limit: 1 callback, 2 user, 3 operator, 4 administrator, 5 OEM, 15 none
    bool mayMessage = true;     // IPMI messaging
    std::string email;
    bool isCallbackOnly = false;
    bool linkAuthentication = false;
    std::string passwordHash;       // see password.h; empty: none was set
    std::uint8_t passwordSize = 16; // of its form: 16 or 20 bytes

    void fields(Fields& fields);
    void check(const Place& place) const;
};

struct Users {
    static constexpr std::uint8_t slots = 16; // user IDs 1 to 16

    std::vector<User> list; // by user ID

    static constexpr const char* name = "users";
    static std::span<const Command> commands();
    void check(const Place& place);
    Json describe(const State& state) const;

    const User* find(std::uint8_t id) const; // null for a slot that is not in use
    // Tells whether RMCP+ would let somebody in with this name and password, who must be an enabled user with
    // access.
    bool letsIn(std::string_view name, std::string_view password) const;
    User& slot(std::uint8_t id); // one that was not in use has a user without access then
};

} // namespace vbmc
