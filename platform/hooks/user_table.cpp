#include "hooks/user_table.h"

#include "ipmi/command.h"

#include <stdexcept>
#include <string>

namespace hooks {
namespace {

constexpr std::uint8_t getUserAccess = 0x44;
constexpr std::uint8_t getUserName = 0x46;
constexpr std::uint8_t presentChannel = 0x0E;
constexpr std::uint8_t firstUser = 1;
constexpr std::size_t nameSize = 16;

struct UserAccess {
    std::uint8_t maxUsers;
    bool isDisabled;
};

UserAccess readUserAccess(ipmi::Transport& bmc, std::uint8_t user) {
    const auto answer = ipmi::run(bmc, ipmi::netFn::app, getUserAccess, {presentChannel, user});
    auto reader = answer.reader();
    const std::uint8_t maxUsers = reader.u8() & 0x3F;
    const unsigned enableStatus =
        reader.u8() >> 6; // 0 unspecified, 1 enabled, 2 disabled by Set User Password
    answer.verify(reader);
    return {maxUsers, enableStatus == 2};
}

// Empty for a slot that is not in use, which BMCs answer with zeros or refuse.
std::string readUserName(ipmi::Transport& bmc, std::uint8_t user) {
    try {
        const auto answer = ipmi::run(bmc, ipmi::netFn::app, getUserName, {user});
        auto reader = answer.reader();
        const auto bytes = reader.bytes(nameSize);
        answer.verify(reader);
        return {bytes.begin(), std::find(bytes.begin(), bytes.end(), 0)};
    } catch (const ipmi::CompletionCodeError&) {
        return {};
    }
}

bool hasUser(ipmi::Transport& bmc, std::string_view name) {
    const auto maxUsers = readUserAccess(bmc, firstUser).maxUsers;
    for (std::uint8_t user = firstUser; user <= maxUsers; ++user)
        if (readUserName(bmc, user) == name)
            return !readUserAccess(bmc, user).isDisabled;
    return false;
}

} // namespace

void requireUser(ipmi::Transport& bmc, std::string_view name) {
    try {
        if (!hasUser(bmc, name))
            throw std::runtime_error("the BMC has no enabled user '" + std::string(name) + "'");
    } catch (const ipmi::CompletionCodeError& error) {
        if (error.code != ipmi::completion::invalidCommand)
            throw;
    }
}

} // namespace hooks
