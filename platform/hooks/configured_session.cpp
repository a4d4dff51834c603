#include "hooks/configured_session.h"

#include "hooks/session_row.h"

#include <cstdlib>
#include <cstring>
#include <stdexcept>

namespace hooks {
namespace {

struct Closer {
    void operator()(SMASH_DB_HANDLE handle) const { db_close(handle); }
};
struct WipeAndFree { // the password does not outlive its use
    void operator()(IPMISessionInfo* info) const {
        explicit_bzero(info->password, sizeof info->password);
        std::free(info);
    }
};
using SessionInfo = std::unique_ptr<IPMISessionInfo, WipeAndFree>;

SessionInfo readSessionInfo() {
    SMASH_DB_HANDLE handle = nullptr;
    if (db_init(&handle) != 0)
        throw std::runtime_error(db_last_error());
    const std::unique_ptr<SmashDatabase, Closer> database(handle);
    IPMISessionInfo* info = nullptr;
    if (db_get_ipmi_session_info(handle, &info) != 0)
        throw std::runtime_error(db_last_error());
    return SessionInfo(info);
}

} // namespace

std::unique_ptr<ipmi::Transport> openConfiguredSession() {
    return ipmi::openTransport(settingsOf(*readSessionInfo()));
}

} // namespace hooks
