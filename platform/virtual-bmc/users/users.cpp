#include "virtual-bmc/users/users.h"

#include "virtual-bmc/pef/mail.h"
#include "virtual-bmc/state/json_fields.h"
#include "virtual-bmc/state/state.h"
#include "virtual-bmc/users/password.h"

#include <algorithm>

namespace vbmc {
namespace {

namespace completion = ipmi::completion;

constexpr std::size_t userNameSize = 16;

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
    std::uint8_t bytes[userNameSize] = {};
    if (const User* const user = state.get<Users>().find(id))
        std::ranges::copy(user->name, bytes);
    answer.bytes(bytes);
    return completion::success;
}

std::uint8_t setUserAccess(State& state, ipmi::Reader request, ipmi::Writer&) {
    constexpr unsigned changesBits = 0x80;
    const std::uint8_t access = request.u8(); // and the channel: users have the same access on all
    const std::uint8_t id = request.u8() & 0x3F;
    const std::uint8_t privilege = request.u8() & 0x0F;
    if (!isSlot(id))
        return completion::parameterOutOfRange;
    if (nameOf(privileges, privilege) == nullptr)
        return completion::invalidDataField;
    User& user = state.edit<Users>().slot(id);
    user.privilege = privilege;
    if ((access & changesBits) != 0) {
        user.isCallbackOnly = (access & 0x40) != 0;
        user.linkAuthentication = (access & 0x20) != 0;
        user.mayMessage = (access & 0x10) != 0;
    }
    return completion::success;
}

std::uint8_t setUserName(State& state, ipmi::Reader request, ipmi::Writer&) {
    const std::uint8_t id = request.u8() & 0x3F;
    const auto bytes = request.bytes(userNameSize);
    const std::string name(bytes.begin(), std::ranges::find(bytes, 0));
    if (!isSlot(id))
        return completion::parameterOutOfRange;
    const User* const former = state.get<Users>().find(id);
    if (!isUtf8(name) || (former != nullptr && former->isFixedName))
        return completion::invalidDataField;
    auto& users = state.edit<Users>();
    if (name.empty())
        std::erase_if(users.list, [&](const User& user) { return user.id == id; });
    else
        users.slot(id).name = name;
    return completion::success;
}

enum PasswordOperation : std::uint8_t { disableUser, enableUser, setPassword, testPassword };

std::uint8_t comparePassword(const User* user, std::span<const std::uint8_t> password) {
    constexpr std::uint8_t mismatch = 0x80, wrongSize = 0x81; // codes of Set User Password
    if (user == nullptr || user->passwordHash.empty())
        return mismatch;
    if (user->passwordSize != password.size())
        return wrongSize;
    return isPassword(user->passwordHash, password) ? completion::success : mismatch;
}

std::uint8_t setUserPassword(State& state, ipmi::Reader request, ipmi::Writer&) {
    constexpr unsigned longForm = 0x80;
    const std::uint8_t slot = request.u8();
    const std::uint8_t id = slot & 0x3F;
    const auto operation = static_cast<PasswordOperation>(request.u8() & 0x03);
    if (!isSlot(id))
        return completion::parameterOutOfRange;
    if (operation == disableUser || operation == enableUser) {
        state.edit<Users>().slot(id).isEnabled = operation == enableUser;
        return completion::success;
    }
    const std::uint8_t size = (slot & longForm) != 0 ? 20 : 16;
    const auto password = request.bytes(size);
    if (!request.ok())
        return completion::requestLengthInvalid;
    if (operation == testPassword)
        return comparePassword(state.get<Users>().find(id), password);
    User& user = state.edit<Users>().slot(id);
    user.passwordHash = hashPassword(password);
    user.passwordSize = size;
    return completion::success;
}

} // namespace

void User::fields(Fields& fields) {
    fields.required("id", id);
    fields("name", name);
    fields("enabled", isEnabled);
    fields("fixedName", isFixedName);
    fields.choice("privilege", privilege, privileges);
    fields("messaging", mayMessage);
    fields("email", email);
    fields("callbackOnly", isCallbackOnly);
    fields("linkAuthentication", linkAuthentication);
    fields("passwordHash", passwordHash);
    fields.number("passwordSize", passwordSize, 16, 20);
}

void User::check(const Place& place) const {
    if (!isSlot(id))
        fail(Place{&place, "id"},
             std::to_string(id) + " is not allowed: 1 to " + std::to_string(Users::slots));
    if (name.size() > userNameSize)
        fail(Place{&place, "name"}, "it has more than " + std::to_string(userNameSize) + " bytes");
    checkMailText(Place{&place, "email"}, email, ipmi::oem::userAddress);
}

std::span<const Command> Users::commands() {
    static constexpr Command table[] = {
        {ipmi::command::setUserAccess, 3, setUserAccess},
        {ipmi::command::getUserAccess, 2, getUserAccess},
        {ipmi::command::setUserName, 17, setUserName},
        {ipmi::command::getUserName, 1, getUserName},
        {ipmi::command::setUserPassword, 2, setUserPassword},
    };
    return table;
}

void Users::check(const Place& place) {
    std::ranges::stable_sort(list, {}, &User::id);
    for (const User& user : list)
        if (find(user.id) != &user)
            fail(place, "there are two users " + std::to_string(user.id));
}

const User* Users::find(std::uint8_t id) const {
    const auto found = std::ranges::find(list, id, &User::id);
    return found != list.end() ? &*found : nullptr;
}

bool Users::letsIn(std::string_view userName, std::string_view password) const {
    constexpr std::uint8_t noAccess = 15;
    const auto user = std::ranges::find(list, userName, &User::name);
    if (user == list.end() || !user->isEnabled || !user->mayMessage || user->privilege == noAccess)
        return false;
    std::vector<std::uint8_t> padded(password.begin(), password.end());
    padded.resize(std::max<std::size_t>(padded.size(), user->passwordSize));
    const bool isRight = comparePassword(&*user, padded) == completion::success;
    explicit_bzero(padded.data(), padded.size());
    return isRight;
}

User& Users::slot(std::uint8_t id) {
    const auto place = std::ranges::lower_bound(list, id, {}, &User::id);
    if (place != list.end() && place->id == id)
        return *place;
    return *list.insert(place, {.id = id,
                                .name = {},
                                .isEnabled = false,
                                .privilege = 15, // none
                                .mayMessage = false,
                                .email = {},
                                .passwordHash = {}});
}

Json Users::describe(const State&) const {
    Json json = Json::array();
    for (const User& user : list) {
        Json row = Json::object();
        row["id"] = user.id;
        row["name"] = user.name;
        row["enabled"] = user.isEnabled;
        row["privilege"] = nameOf(privileges, user.privilege);
        row["email"] = user.email;
        json.push_back(std::move(row));
    }
    return json;
}

} // namespace vbmc
