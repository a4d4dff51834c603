#include "virtual-bmc/users.h"

#include "virtual-bmc/json_fields.h"
#include "virtual-bmc/state.h"

#include <algorithm>

namespace vbmc {
namespace {

namespace completion = ipmi::completion;

constexpr std::size_t nameSize = 16;

constexpr Choice privileges[] = {{1, "callback"},      {2, "user"}, {3, "operator"},
                                 {4, "administrator"}, {5, "oem"},  {15, "none"}};

// Bits 5:0 of the byte that names a user.
bool isSlot(std::uint8_t id) {
    return id >= 1 && id <= Users::slots;
}

std::uint8_t getUserAccess(State& state, ipmi::Reader request, ipmi::Writer& answer) {
    request.skip(1); // channel: users have the same access on all
    const std::uint8_t id = request.u8() & 0x3F;
    if (!isSlot(id))
        return completion::parameterOutOfRange;
    const auto& users = state.get<Users>();
    const auto count = [&](bool User::*property) {
        return static_cast<std::uint8_t>(std::ranges::count(users.list, true, property));
    };
    const User* const user = users.find(id);
    const bool isEnabled = user != nullptr && user->isEnabled;
    answer.u8(Users::slots)
        .u8(static_cast<std::uint8_t>((isEnabled ? 0x40 : 0x80) | count(&User::isEnabled)))
        .u8(count(&User::isFixedName))
        .u8(user == nullptr
                ? 0x0F
                : static_cast<std::uint8_t>(user->isCallbackOnly << 6 | user->linkAuthentication << 5 |
                                            user->mayMessage << 4 | user->privilege));
    return completion::success;
}

std::uint8_t getUserName(State& state, ipmi::Reader request, ipmi::Writer& answer) {
    const std::uint8_t id = request.u8() & 0x3F;
    if (!isSlot(id))
        return completion::parameterOutOfRange;
    std::uint8_t bytes[nameSize] = {};
    if (const User* const user = state.get<Users>().find(id))
        std::ranges::copy(user->name, bytes);
    answer.bytes(bytes);
    return completion::success;
}

constexpr Command commandTable[] = {
    {ipmi::netFn::app, 0x44, 2, getUserAccess},
    {ipmi::netFn::app, 0x46, 1, getUserName},
};

} // namespace

void User::fields(Fields& fields) {
    fields.required("id", id);
    fields("name", name);
    fields("enabled", isEnabled);
    fields("fixedName", isFixedName);
    fields.choice("privilege", privilege, privileges);
    fields("messaging", mayMessage);
    fields("callbackOnly", isCallbackOnly);
    fields("linkAuthentication", linkAuthentication);
}

void User::check(const Place& place) const {
    if (!isSlot(id))
        fail(Place{&place, "id"},
             std::to_string(id) + " is not allowed: 1 to " + std::to_string(Users::slots));
    if (name.size() > nameSize)
        fail(Place{&place, "name"}, "it has more than " + std::to_string(nameSize) + " bytes");
}

std::span<const Command> Users::commands() {
    return commandTable;
}

void Users::check(const Place& place) const {
    for (const User& user : list)
        if (find(user.id) != &user)
            fail(place, "there are two users " + std::to_string(user.id));
}

const User* Users::find(std::uint8_t id) const {
    const auto found = std::ranges::find(list, id, &User::id);
    return found != list.end() ? &*found : nullptr;
}

Json Users::describe(const State&) const {
    Json json = Json::array();
    for (const User& user : list) {
        Json row = Json::object();
        row["id"] = user.id;
        row["name"] = user.name;
        row["enabled"] = user.isEnabled;
        row["privilege"] = nameOf(privileges, user.privilege);
        json.push_back(std::move(row));
    }
    return json;
}

} // namespace vbmc
