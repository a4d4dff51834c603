#include "time_limit.h"

#include "errors.h"
#include "ipmi/transport.h"

#include <condition_variable>
#include <mutex>
#include <unistd.h>

namespace phctl {

TimeLimit::TimeLimit(unsigned seconds, std::function<std::string()> reason)
    : seconds_(seconds),
      reason_(std::move(reason)),
      deadline_(std::chrono::steady_clock::now() + std::chrono::seconds(seconds)) {
    ipmi::endExchangesBy(deadline_);
    thread_ = std::jthread([this](const std::stop_token& stop) {
        constexpr std::chrono::milliseconds moment(500);
        std::mutex mutex;
        std::condition_variable_any never;
        std::unique_lock lock(mutex);
        never.wait_until(lock, stop, deadline_ + moment, [] { return false; });
        if (stop.stop_requested())
            return;
        complain(text(), failed);
        _exit(failed);
    });
}

void TimeLimit::check() const {
    if (std::chrono::steady_clock::now() >= deadline_)
        throw Failure(text());
}

std::string TimeLimit::text() const {
    const std::string reason = reason_();
    return "there was not enough time: the command may take " + std::to_string(seconds_) + " s (--timeout)" +
           (reason.empty() ? "" : "; " + reason);
}

} // namespace phctl
