#include "time_limit.h"

#include "errors.h"
#include "ipmi/transport.h"

#include <unistd.h>

namespace phctl {

TimeLimit::TimeLimit(unsigned seconds, std::function<std::string()> reason)
    : seconds_(seconds),
      reason_(std::move(reason)),
      deadline_(std::chrono::steady_clock::now() + std::chrono::seconds(seconds)) {
    ipmi::endExchangesBy(deadline_);
    thread_ = std::thread([this] {
        constexpr std::chrono::milliseconds moment(500);
        std::unique_lock lock(mutex_);
        if (changed_.wait_until(lock, deadline_ + moment, [this] { return isEnding_; }))
            return;
        complain(text(), failed);
        _exit(failed);
    });
}

TimeLimit::~TimeLimit() {
    {
        const std::lock_guard lock(mutex_);
        isEnding_ = true;
    }
    changed_.notify_all();
    thread_.join();
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
