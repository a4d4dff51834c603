// What an IPMI20_SESSION_T holds, and how hook functions begin and end.
#pragma once

#include "ipmi/transport.h"

#include <platform/cim_hooks.h>
#include <platform/support.h>

#include <optional>
#include <stdexcept>
#include <vector>

namespace hooks {

class ReadingAhead;

// An open session: its transport, the deadline of the hook call that uses it, and what is read of a BMC once.
class Session final : public ipmi::Transport {
public:
    explicit Session(std::unique_ptr<ipmi::Transport> transport) : transport_(std::move(transport)) {}

    // Begins a call that may take so many seconds, however many messages it sends.
    void begin(int timeout);

    // Throws ipmi::DeadlineError when the call's time is over. An answer that was lost is the end of the
    // session: from then on each exchange throws at once, because a BMC that fell silent would cost every
    // further call its whole time.
    std::size_t exchange(std::uint8_t netFn, std::uint8_t command, std::span<const std::uint8_t> request,
                         std::span<std::uint8_t> answer) override;
    bool waits() const override { return transport_->waits(); }

    // The channels of medium 802.3 LAN in order: the nth has LAN index n. Throws when the BMC does not tell
    // of each channel whether it is one.
    const std::vector<std::uint8_t>& lanChannels();

    // Tells whether docs/oem-commands.md describes this BMC.
    bool hasOemCommands();

private:
    std::unique_ptr<ipmi::Transport> transport_;
    ipmi::Clock::time_point deadline_;
    bool isDead_ = false;
    std::optional<std::vector<std::uint8_t>> lanChannels_;
    std::optional<bool> hasOemCommands_;

public:
    // Sensors that are read over this session by a thread, until something else is asked: it ends with them. It is the
    // last member, and goes first.
    std::shared_ptr<ReadingAhead> readingAhead;
};

// Puts an open session into storage of the caller's, whatever that held before.
void store(IPMI20_SESSION_T& session, std::unique_ptr<Session> open);

// Takes the session out again; nothing when it is not open.
std::unique_ptr<Session> release(IPMI20_SESSION_T& session);

// Returns an open session as it is. Throws ipmi::TransportError for one that is not open.
Session& openSession(const IPMI20_SESSION_T* session);

// Returns an open session, for a hook call that begins now. Throws likewise.
Session& sessionOf(const IPMI20_SESSION_T* session, int timeout);

// The debug log of the CIM hooks.
inline constexpr int debugLog = 134;

// Throws std::invalid_argument where a call lacks what it needs, or has what is not allowed.
inline void require(bool condition, const char* problem = "an argument is missing") {
    if (!condition)
        throw std::invalid_argument(problem);
}

template <class T>
T& required(T* argument) {
    require(argument != nullptr);
    return *argument;
}

// Runs a hook's work and returns 0. When it throws, the result is -1 and the debug log has a line: no
// exception leaves a C function.
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
