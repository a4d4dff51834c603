#include "time_limit.h"

#include "errors.h"
#include "ipmi/transport.h"

#include <unistd.h>

namespace phctl {

TimeLimit::TimeLimit(unsigned seconds, std::function<std::string()> reason) {
    constexpr std::chrono::milliseconds moment(500);
    const auto deadline = ipmi::Clock::now() + std::chrono::seconds(seconds);
    ipmi::endExchangesBy(deadline);
    thread_ = std::thread([this, end = deadline + moment, seconds, reason = std::move(reason)] {
        std::unique_lock lock(mutex_);
        if (changed_.wait_until(lock, end, [this] { return isEnding_; }))
            return;
        const std::string why = reason();
        complain("no answer within " + std::to_string(seconds) + " s (--timeout)" +
                     (why.empty() ? "" : ": " + why),
                 failed);
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

} // namespace phctl
