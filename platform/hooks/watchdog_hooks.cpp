#include "hooks/session.h"
#include "ipmi/command.h"
#include "ipmi/watchdog_timer.h"

#include <stdexcept>

namespace {

namespace completion = ipmi::completion;
namespace watchdog = ipmi::watchdog;

CIM_WatchdogTimer read(const ipmi::Answer& answer) {
    CIM_WatchdogTimer timer{};
    auto reader = answer.reader();
    const std::uint8_t use = reader.u8();
    const std::uint8_t actions = reader.u8();
    timer.isSupported = 1;
    timer.isRunning = (use & watchdog::isRunning) != 0;
    timer.doesNotLog = (use & watchdog::dontLog) != 0;
    timer.use = use & watchdog::useMask;
    timer.action = actions & watchdog::actionMask;
    timer.interrupt = (actions & watchdog::interruptMask) >> watchdog::interruptShift;
    timer.interruptSeconds = reader.u8();
    timer.expired = reader.u8() & watchdog::expirationMask;
    timer.interval = reader.u16();
    answer.verify(reader);
    timer.remaining = reader.u16(); // which some leave out: 0
    return timer;
}

void write(ipmi::Transport& bmc, const CIM_WatchdogTimer& timer) {
    std::array<std::uint8_t, 6> storage;
    ipmi::Writer request(storage);
    request
        .u8(static_cast<std::uint8_t>(timer.use | (timer.doesNotLog != 0 ? watchdog::dontLog : 0) |
                                      (timer.isRunning != 0 ? watchdog::keepRunning : 0)))
        .u8(static_cast<std::uint8_t>(timer.action | timer.interrupt << watchdog::interruptShift))
        .u8(timer.interruptSeconds)
        .u8(0) // clears no expiration flag
        .u16(timer.interval);
    ipmi::run(bmc, ipmi::command::setWatchdogTimer, request.written());
}

} // namespace

int CIM_GetWatchdogTimer(IPMI20_SESSION_T* session, CIM_WatchdogTimer* timer, int timeout) {
    return hooks::guarded(__func__, [&] {
        hooks::require(timer != nullptr);
        *timer = {};
        const auto answer =
            ipmi::ask(hooks::sessionOf(session, timeout), ipmi::command::getWatchdogTimer, {});
        if (answer.code() == completion::success)
            *timer = read(answer);
        else if (answer.code() != completion::invalidCommand &&
                 answer.code() != completion::invalidCommandForLun)
            throw ipmi::CompletionCodeError(ipmi::command::getWatchdogTimer, answer.code());
    });
}

int CIM_SetWatchdogTimer(IPMI20_SESSION_T* session, const CIM_WatchdogTimer* timer, int timeout) {
    return hooks::guarded(__func__, [&] {
        if (timer == nullptr || timer->use > watchdog::useMask || timer->action > watchdog::actionMask ||
            timer->interrupt > (watchdog::interruptMask >> watchdog::interruptShift))
            throw std::invalid_argument("these are no settings of a watchdog timer");
        write(hooks::sessionOf(session, timeout), *timer);
    });
}

int CIM_ResetWatchdogTimer(IPMI20_SESSION_T* session, int timeout) {
    return hooks::guarded(
        __func__, [&] { ipmi::run(hooks::sessionOf(session, timeout), ipmi::command::resetWatchdogTimer); });
}
