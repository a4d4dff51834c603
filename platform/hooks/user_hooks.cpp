#include "hooks/session.h"
#include "hooks/user_table.h"
#include "ipmi/command.h"
#include "ipmi/secret.h"

#include <stdexcept>
#include <vector>

namespace {

using ipmi::Transport;

enum PasswordOperation : std::uint8_t { disableUser, enableUser, setPassword, testPassword };

constexpr std::uint8_t lastUser = 63;
constexpr std::uint8_t noAccess = 0x0F;
constexpr std::size_t shortForm = 16;
constexpr std::size_t longForm = 20;

std::uint8_t requireUserId(unsigned user) {
    if (user < hooks::firstUser || user > lastUser)
        throw std::out_of_range("there is no user " + std::to_string(user));
    return static_cast<std::uint8_t>(user);
}

bool isSwitch(std::uint8_t value) {
    return value <= 1 || value == CIM_USER_KEEP;
}

struct AccessSettings {
    std::uint8_t channel;
    std::uint8_t privilegeLimit;
    std::uint8_t messaging;
    std::uint8_t linkAuthentication;

    bool isPrivilegeLimit() const {
        constexpr std::uint8_t highest = 5; // OEM
        return (privilegeLimit >= 1 && privilegeLimit <= highest) || privilegeLimit == noAccess;
    }
    bool keepsAll() const {
        return privilegeLimit == CIM_USER_KEEP && messaging == CIM_USER_KEEP &&
               linkAuthentication == CIM_USER_KEEP;
    }
    void check() const {
        hooks::require(privilegeLimit == CIM_USER_KEEP || isPrivilegeLimit(),
                       "the privilege limit is not allowed");
        hooks::require(isSwitch(messaging) && isSwitch(linkAuthentication),
                       "an access setting is not allowed");
    }
};

void writeUserName(Transport& bmc, std::uint8_t user, std::string_view name) {
    std::array<std::uint8_t, 1 + hooks::userNameSize> request{user};
    std::ranges::copy(name, request.begin() + 1);
    ipmi::run(bmc, ipmi::command::setUserName, request);
}

void writeEnabled(Transport& bmc, std::uint8_t user, bool isEnabled) {
    ipmi::run(bmc, ipmi::command::setUserPassword, {user, isEnabled ? enableUser : disableUser});
}

// `slot` says which form the password has.
void sendPassword(Transport& bmc, std::uint8_t slot, std::uint8_t operation, std::string_view password) {
    ipmi::SecretBytes<2 + longForm> request;
    request.bytes()[0] = slot;
    request.bytes()[1] = operation;
    std::ranges::copy(password, request.bytes().begin() + 2);
    const std::size_t size = 2 + ((slot & CIM_USER_PASSWORD_20) != 0 ? longForm : shortForm);
    ipmi::run(bmc, ipmi::command::setUserPassword, std::span(request.bytes()).first(size));
}

// `access` as hooks::UserAccess has it.
void sendAccess(Transport& bmc, std::uint8_t channel, std::uint8_t user, std::uint8_t access) {
    constexpr std::uint8_t changesBits = 0x80;
    ipmi::run(bmc, ipmi::command::setUserAccess,
              {static_cast<std::uint8_t>(changesBits | (access & 0x70) | channel), user,
               static_cast<std::uint8_t>(access & 0x0F)});
}

void writeAccess(Transport& bmc, std::uint8_t user, const AccessSettings& settings) {
    std::uint8_t access = hooks::readUserAccess(bmc, settings.channel, user).access;
    const auto replace = [&](std::uint8_t value, unsigned mask, unsigned shift) {
        if (value != CIM_USER_KEEP)
            access = static_cast<std::uint8_t>((access & ~mask) | static_cast<unsigned>(value) << shift);
    };
    replace(settings.privilegeLimit, 0x0F, 0);
    replace(settings.messaging, 0x10, 4);
    replace(settings.linkAuthentication, 0x20, 5);
    sendAccess(bmc, settings.channel, user, access);
}

// Holds a user that is being deleted. A BMC may refuse at the last step, which clears the name: a user of a
// fixed name must not have been disabled for it. IPMI commands to a user without a name may be refused too,
// so the name cannot come first.
class Deletion {
public:
    Deletion(Transport& bmc, std::uint8_t user) : bmc_(bmc), user_(user) {
        const auto present = hooks::readUserAccess(bmc, hooks::presentChannel, user);
        wasEnabled_ = !present.isDisabled;
        note(hooks::presentChannel, present);
        try {
            note(firstLan, hooks::readUserAccess(bmc, firstLan, user));
        } catch (const ipmi::CompletionCodeError&) { // there is no such channel
        }
    }

    void run() {
        writeEnabled(bmc_, user_, false);
        try {
            for (const auto& [channel, access] : former_)
                sendAccess(bmc_, channel, user_, (access & ~settings) | noAccess);
            writeUserName(bmc_, user_, "");
        } catch (...) {
            restore();
            throw;
        }
    }

private:
    // Users are created with access on channel 1, whichever channel a request names.
    static constexpr std::uint8_t firstLan = 1;
    static constexpr std::uint8_t settings = 0x3F; // of an access, all but callback only

    void note(std::uint8_t channel, const hooks::UserAccess& user) {
        if ((user.access & settings) != noAccess)
            former_.push_back({channel, user.access});
    }

    // Undoes as much as the BMC allows: after a step that fails, the others are tried all the same.
    void restore() {
        for (const Access& each : former_)
            hooks::guarded("CIM_DelUser", [&] { sendAccess(bmc_, each.channel, user_, each.access); });
        if (wasEnabled_)
            hooks::guarded("CIM_DelUser", [&] { writeEnabled(bmc_, user_, true); });
    }

    struct Access {
        std::uint8_t channel;
        std::uint8_t access;
    };

    Transport& bmc_;
    std::uint8_t user_;
    bool wasEnabled_ = false;
    std::vector<Access> former_;
};

} // namespace

int CIM_GetMaxNumUsers(IPMI20_SESSION_T* session, uint8_t* count, int timeout) {
    return hooks::guarded(__func__, [&] {
        hooks::required(count) =
            hooks::readUserAccess(hooks::sessionOf(session, timeout), hooks::presentChannel, hooks::firstUser)
                .maxUsers;
    });
}

int CIM_GetUser(IPMI20_SESSION_T* session, uint8_t slot, char* name, int timeout) {
    return hooks::guarded(__func__, [&] {
        hooks::required(name) = '\0';
        const auto text = hooks::readUserName(hooks::sessionOf(session, timeout), requireUserId(slot));
        name[text.copy(name, CIM_USER_NAME_SIZE - 1)] = '\0';
    });
}

int CIM_GetUserAccess(IPMI20_SESSION_T* session, uint8_t slot, uint8_t channel, uint8_t* access,
                      int timeout) {
    return hooks::guarded(__func__, [&] {
        const auto user =
            hooks::readUserAccess(hooks::sessionOf(session, timeout), channel & 0x0F, requireUserId(slot));
        hooks::required(access) = static_cast<uint8_t>((user.access & 0x3F) | (user.isDisabled ? 0 : 0x40) |
                                                       (user.access & 0x40) << 1);
    });
}

int CIM_ModUser(IPMI20_SESSION_T* session, uint8_t slot, uint8_t channel, const char* name,
                const char* password, uint8_t operation, uint8_t privilegeLimit, uint8_t messaging,
                uint8_t linkAuthentication, uint8_t enable, int timeout) {
    return hooks::guarded(__func__, [&] {
        const std::uint8_t user = requireUserId(slot & ~CIM_USER_PASSWORD_20);
        const AccessSettings access{static_cast<std::uint8_t>(channel & 0x0F), privilegeLimit, messaging,
                                    linkAuthentication};
        access.check();
        hooks::require(isSwitch(enable), "a user is enabled or disabled");
        hooks::require(name == nullptr || (*name != '\0' && std::strlen(name) <= hooks::userNameSize),
                       "a user name has 1 to 16 bytes");
        hooks::require(password == nullptr || std::strlen(password) <=
                                                  ((slot & CIM_USER_PASSWORD_20) != 0 ? longForm : shortForm),
                       "the password is too long");
        hooks::require(password == nullptr || operation == setPassword || operation == testPassword,
                       "a password is set or tested");

        auto& bmc = hooks::sessionOf(session, timeout);
        if (enable == 0)
            writeEnabled(bmc, user, false);
        if (name != nullptr)
            writeUserName(bmc, user, name);
        if (password != nullptr)
            sendPassword(bmc, slot, operation, password);
        if (!access.keepsAll())
            writeAccess(bmc, user, access);
        if (enable == 1)
            writeEnabled(bmc, user, true);
    });
}

int CIM_DelUser(IPMI20_SESSION_T* session, uint8_t slot, int timeout) {
    return hooks::guarded(__func__, [&] {
        const std::uint8_t user = requireUserId(slot);
        Deletion(hooks::sessionOf(session, timeout), user).run();
    });
}

// The sessions have numbers from 1 on, and each answer tells how many there are.
int CIM_GetOpenSessions(IPMI20_SESSION_T* session, CIM_OpenSession* sessions, uint8_t* count, int timeout) {
    return hooks::guarded(__func__, [&] {
        hooks::required(count) = 0;
        hooks::required(sessions);
        auto& bmc = hooks::sessionOf(session, timeout);
        std::uint8_t open = 1;
        for (std::uint8_t number = 1; number <= open; ++number) {
            const auto answer = ipmi::ask(bmc, ipmi::command::getSessionInfo, std::span(&number, 1));
            if (number > 1 && ipmi::completion::meansAbsent(answer.code()))
                break;
            if (answer.code() != ipmi::completion::success)
                throw ipmi::CompletionCodeError(ipmi::command::getSessionInfo, answer.code());
            auto reader = answer.reader();
            const bool isThere = reader.u8() != 0; // its handle
            reader.skip(1);                        // how many there may be
            open = reader.u8() & 0x3F;
            if (isThere) {
                const std::uint8_t user = reader.u8() & 0x3F;
                const std::uint8_t privilege = reader.u8() & 0x0F;
                const std::uint8_t channel = reader.u8() & 0x0F;
                answer.verify(reader);
                sessions[(*count)++] = {user, privilege, channel};
            }
            answer.verify(reader);
        }
    });
}
