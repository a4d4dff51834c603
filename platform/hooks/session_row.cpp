#include "hooks/session_row.h"

#include <cstdlib>

namespace hooks {
namespace {

int number(const char* text) {
    return static_cast<int>(std::strtol(text, nullptr, 0));
}

} // namespace

ipmi::SessionSettings settingsOf(const IPMISessionInfo& row) {
    ipmi::SessionSettings settings{.address = row.address,
                                   .port = row.port,
                                   .userName = row.userName,
                                   .password = row.password,
                                   .interfaceType = number(row.interfaceType),
                                   .cipherSuite = number(row.cipherSuite),
                                   .workaroundFlags = number(row.workaroundFlags),
                                   .retransmission = number(row.retransmission)};
    if (const int privilege = number(row.privilegeLevel); privilege != 0)
        settings.privilegeLevel = privilege;
    return settings;
}

} // namespace hooks
