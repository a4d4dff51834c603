#include "users/bmc_users.h"

#include "hooks/user_table.h"
#include "ipmi/command.h"
#include "ipmi/secret.h"

#include <algorithm>

namespace server {
namespace {

constexpr std::uint8_t testPassword = 3;
constexpr std::uint8_t longForm = 0x80; // with a user ID: the password has 20 bytes
constexpr std::uint8_t wrongSize = 0x81;
constexpr std::size_t shortSize = 16, longSize = 20;

std::uint8_t test(ipmi::Transport& bmc, std::uint8_t user, const std::string& password, std::size_t size) {
    ipmi::SecretBytes<2 + longSize> request;
    request.bytes()[0] = size == longSize ? user | longForm : user;
    request.bytes()[1] = testPassword;
    std::ranges::copy(password, request.bytes().begin() + 2);
    return ipmi::ask(bmc, ipmi::command::setUserPassword, std::span(request.bytes()).first(2 + size)).code();
}

bool fits(ipmi::Transport& bmc, std::uint8_t user, const std::string& password) {
    if (password.size() > longSize || password.find('\0') != std::string::npos)
        return false;
    std::uint8_t code = wrongSize;
    if (password.size() <= shortSize)
        code = test(bmc, user, password, shortSize);
    // One that was stored in the longer form can be tested in that form only.
    if (code == wrongSize)
        code = test(bmc, user, password, longSize);
    return code == ipmi::completion::success;
}

Access accessOf(const hooks::UserAccess& user) {
    enum : std::uint8_t { userLimit = 2, operatorLimit = 3, administratorLimit = 4, oemLimit = 5 };
    constexpr std::uint8_t callbackOnly = 0x40;
    if (user.isDisabled || (user.access & callbackOnly) != 0)
        return Access::None;
    switch (user.access & 0x0F) {
    case userLimit:
        return Access::Read;
    case operatorLimit:
        return Access::Operate;
    case administratorLimit:
    case oemLimit:
        return Access::Administer;
    default:
        return Access::None;
    }
}

} // namespace

Access BmcUsers::check(const std::string& user, const std::string& password) {
    if (user.empty() || user.size() > hooks::userNameSize)
        return Access::None;
    const auto bmc = ipmi::openTransport(settings_());
    const auto maxUsers = hooks::readUserAccess(*bmc, hooks::presentChannel, hooks::firstUser).maxUsers;
    for (std::uint8_t slot = hooks::firstUser; slot <= maxUsers; ++slot) {
        if (hooks::readUserName(*bmc, slot) != user)
            continue;
        const Access access = accessOf(hooks::readUserAccess(*bmc, hooks::presentChannel, slot));
        if (access != Access::None && fits(*bmc, slot, password))
            return access;
    }
    return Access::None;
}

} // namespace server
