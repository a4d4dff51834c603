#include "hooks/session.h"

#include <utility>

namespace hooks {

void store(IPMI20_SESSION_T& session, std::unique_ptr<ipmi::Transport> transport) {
    session.platform.handle = transport.release();
}

std::unique_ptr<ipmi::Transport> release(IPMI20_SESSION_T& session) {
    return std::unique_ptr<ipmi::Transport>(
        static_cast<ipmi::Transport*>(std::exchange(session.platform.handle, nullptr)));
}

ipmi::Transport& transportOf(const IPMI20_SESSION_T* session) {
    if (session == nullptr || session->platform.handle == nullptr)
        throw ipmi::TransportError("the IPMI session is not open");
    return *static_cast<ipmi::Transport*>(session->platform.handle);
}

} // namespace hooks
