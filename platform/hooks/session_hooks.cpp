#include "hooks/session.h"
#include "hooks/user_table.h"

#include <stdexcept>

namespace {

using ipmi::SessionSettings;

void open(IPMI20_SESSION_T* session, const SessionSettings& settings, const char* onBehalfOf = nullptr) {
    auto opened = std::make_unique<hooks::Session>(ipmi::openTransport(settings));
    opened->begin(settings.timeout);
    if (onBehalfOf != nullptr)
        hooks::requireUser(*opened, onBehalfOf);
    hooks::store(*session, std::move(opened));
}

// The session is closed when opening fails, whatever its storage held before.
void clear(IPMI20_SESSION_T* session) {
    hooks::require(session != nullptr);
    hooks::store(*session, nullptr);
}

std::string text(const char* argument) {
    return argument != nullptr ? argument : "";
}

} // namespace

int CIM_Create_IPMI20_Session(IPMI20_SESSION_T* session, const char* address, uint16_t port,
                              const char* userName, const char* password, int interfaceType, int cipherSuite,
                              int workaroundFlags, int retransmission, int privilegeLevel, int timeout) {
    return hooks::guarded(__func__, [&] {
        clear(session);
        open(session, {.address = text(address),
                       .port = port,
                       .userName = text(userName),
                       .password = text(password),
                       .interfaceType = interfaceType,
                       .cipherSuite = cipherSuite,
                       .workaroundFlags = workaroundFlags,
                       .retransmission = retransmission,
                       .privilegeLevel = privilegeLevel,
                       .timeout = timeout});
    });
}

// The request's user has authenticated to the object manager, so there is no password here: the local
// interfaces need none, and RMCP+ is none of them. The controller's own user table decides whether the user
// is known.
int CIM_Create_IPMI20_Session_Ext(IPMI20_SESSION_T* session, const char* userName, const uint8_t* address,
                                  int interfaceType, int privilegeLevel, int /*flags*/, int timeout) {
    return hooks::guarded(__func__, [&] {
        clear(session);
        if (userName == nullptr || *userName == '\0' || address == nullptr)
            throw std::invalid_argument("no requesting user or address given");
        if (interfaceType == SessionSettings::Lan)
            throw ipmi::TransportError("an RMCP+ session of user '" + std::string(userName) +
                                       "' needs a password, which a request does not have");
        SessionSettings settings;
        settings.interfaceType = interfaceType;
        settings.privilegeLevel = privilegeLevel;
        settings.timeout = timeout;
        open(session, settings, userName);
    });
}

int CIM_Close_Session(IPMI20_SESSION_T* session) {
    return hooks::guarded(__func__, [&] {
        hooks::require(session != nullptr);
        hooks::release(*session);
    });
}
