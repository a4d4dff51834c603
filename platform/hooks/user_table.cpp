#include "hooks/user_table.h"

#include "ipmi/command.h"

#include <stdexcept>

namespace hooks {
namespace {

namespace completion = ipmi::completion;

bool hasUser(ipmi::Transport& bmc, std::string_view name) {
    const auto maxUsers = readUserAccess(bmc, presentChannel, firstUser).maxUsers;
    for (std::uint8_t user = firstUser; user <= maxUsers; ++user)
        if (readUserName(bmc, user) == name)
            return !readUserAccess(bmc, presentChannel, user).isDisabled;
    return false;
}

} // namespace

UserAccess readUserAccess(ipmi::Transport& bmc, std::uint8_t channel, std::uint8_t user) {
    const auto answer = ipmi::run(bmc, ipmi::command::getUserAccess, {channel, user});
    auto reader = answer.reader();
    const std::uint8_t maxUsers = reader.u8() & 0x3F;
    const unsigned enableStatus =
        reader.u8() >> 6; // 0 unspecified, 1 enabled, 2 disabled by Set User Password
    reader.skip(1);       // number of users with fixed names
    const std::uint8_t access = reader.u8() & 0x7F;
    answer.verify(reader);
    return {maxUsers, enableStatus == 2, access};
}

std::string readUserName(ipmi::Transport& bmc, std::uint8_t user) {
    const auto answer = ipmi::ask(bmc, ipmi::command::getUserName, std::span(&user, 1));
    if (completion::meansAbsent(answer.code()))
        return {};
    if (answer.code() != completion::success)
        throw ipmi::CompletionCodeError(ipmi::command::getUserName, answer.code());
    auto reader = answer.reader();
    const auto bytes = reader.bytes(userNameSize);
    answer.verify(reader);
    return {bytes.begin(), std::find(bytes.begin(), bytes.end(), 0)};
}

void requireUser(ipmi::Transport& bmc, std::string_view name) {
    try {
        if (!hasUser(bmc, name))
            throw std::runtime_error("the BMC has no enabled user '" + std::string(name) + "'");
    } catch (const ipmi::CompletionCodeError& error) {
        if (error.code != completion::invalidCommand)
            throw;
    }
}

} // namespace hooks
