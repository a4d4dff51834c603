// Ends a command that takes too long.
#pragma once

#include <chrono>
#include <functional>
#include <string>
#include <thread>

namespace phctl {

// While it lives, exchanges with the BMC end within the time. A provider that is not back a moment later, since it
// sleeps before it tries again, is not waited for: the process ends with status 1 and the reason.
class TimeLimit {
public:
    TimeLimit(unsigned seconds, std::function<std::string()> reason);
    // Throws Failure when the time is over: what came back may be half of it.
    void check() const;
    std::chrono::steady_clock::time_point end() const { return deadline_; }
    ~TimeLimit() = default;
    TimeLimit(const TimeLimit&) = delete;
    TimeLimit& operator=(const TimeLimit&) = delete;

private:
    std::string text() const;

    const unsigned seconds_;
    const std::function<std::string()> reason_;
    const std::chrono::steady_clock::time_point deadline_;
    std::jthread thread_;
};

} // namespace phctl
