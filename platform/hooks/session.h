// What an IPMI20_SESSION_T holds, and how hook functions end.
#pragma once

#include "ipmi/transport.h"

#include <platform/cim_hooks.h>
#include <platform/support.h>

namespace hooks {

// Puts an open transport into storage of the caller's, whatever that held before.
void store(IPMI20_SESSION_T& session, std::unique_ptr<ipmi::Transport> transport);

// Takes it out again; nothing for a session that is not open.
std::unique_ptr<ipmi::Transport> release(IPMI20_SESSION_T& session);

// The transport of an open session. Throws ipmi::TransportError for any other.
ipmi::Transport& transportOf(const IPMI20_SESSION_T* session);

// The debug log of the CIM hooks.
inline constexpr int debugLog = 134;

// Runs a hook's work: 0, or -1 with a line in the debug log when it throws. Nothing leaves a C function but
// that.
template <class Work>
int guarded(const char* hook, Work&& work) noexcept {
    try {
        work();
        return 0;
    } catch (const std::exception& error) {
        IDBG_LINUXAPP_DbgOut(debugLog, "%s: %s\n", hook, error.what());
    } catch (...) {
        IDBG_LINUXAPP_DbgOut(debugLog, "%s: unknown failure\n", hook);
    }
    return -1;
}

} // namespace hooks
