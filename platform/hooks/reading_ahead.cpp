#include "hooks/reading_ahead.h"

#include <algorithm>
#include <chrono>
#include <csignal>
#include <utility>

namespace hooks {
namespace {

// Waking the other thread takes as long as making an instance: it is woken for so many answers at once, and for fewer near
// the end, where little is left to do after the last answer.
constexpr std::size_t readingsHandedOver = 16;
std::size_t batchOf(std::size_t remaining) {
    return std::clamp<std::size_t>(remaining / 4, 1, readingsHandedOver);
}
// Before it sleeps, the caller looks out for the next answer so long. A processor that falls idle between readings draws
// the processes to it that answer: they are farther from the reader then, and in the way of the caller when it wakes.
constexpr std::chrono::milliseconds lookout{1};
// A BMC that needs longer for a batch is waited for answer by answer.
constexpr std::chrono::milliseconds patience{20};
// A caller who is slower than the BMC finds readings no older than those that he works on.
constexpr std::size_t mostAhead = 2 * readingsHandedOver;

// Threads that are made meanwhile leave signals to those of the program.
class BlockedSignals {
public:
    BlockedSignals() {
        sigset_t all;
        sigfillset(&all);
        pthread_sigmask(SIG_SETMASK, &all, &before_);
    }
    ~BlockedSignals() { pthread_sigmask(SIG_SETMASK, &before_, nullptr); }
    BlockedSignals(const BlockedSignals&) = delete;
    BlockedSignals& operator=(const BlockedSignals&) = delete;

private:
    sigset_t before_{};
};

} // namespace

bool ReadingAhead::isWorth(std::size_t sensors) {
    return sensors > readingsHandedOver;
}

ReadingAhead::ReadingAhead(Session& session, std::vector<std::uint8_t> sensors, int timeout)
    : session_(session), sensors_(std::move(sensors)), timeout_(timeout) {
    const BlockedSignals blocked;
    thread_ = std::thread([this] { run(); });
}

ReadingAhead::~ReadingAhead() {
    {
        const std::lock_guard lock(mutex_);
        isStopping_ = true;
    }
    changed_.notify_all();
    thread_.join();
}

void ReadingAhead::run() {
    std::exception_ptr failure;
    try {
        read();
    } catch (...) {
        failure = std::current_exception();
    }
    {
        const std::lock_guard lock(mutex_);
        failure_ = std::move(failure);
        isFinished_ = true;
    }
    changed_.notify_all();
}

void ReadingAhead::read() {
    for (const std::uint8_t sensor : sensors_) {
        if (!waitForRoom())
            return;
        session_.begin(timeout_);
        auto answer = ipmi::ask(session_, ipmi::command::getSensorReading, std::span(&sensor, 1));
        std::unique_lock lock(mutex_);
        answers_.push_back(std::move(answer));
        const bool isEnough = answers_.size() == wanted_;
        lock.unlock();
        if (isEnough)
            changed_.notify_all();
    }
}

bool ReadingAhead::waitForRoom() {
    std::unique_lock lock(mutex_);
    changed_.wait(lock, [&] { return isStopping_ || answers_.size() < mostAhead; });
    return !isStopping_;
}

bool ReadingAhead::hasNews() {
    const std::lock_guard lock(mutex_);
    return isFinished_ || !answers_.empty();
}

void ReadingAhead::fetch() {
    const auto end = ipmi::Clock::now() + lookout;
    while (!hasNews() && ipmi::Clock::now() < end)
        std::this_thread::yield();
    std::unique_lock lock(mutex_);
    if (answers_.empty()) {
        const auto isEnough = [&] { return isFinished_ || answers_.size() >= wanted_; };
        wanted_ = batchOf(sensors_.size() - taken_);
        if (!changed_.wait_for(lock, patience, isEnough)) {
            wanted_ = 1;
            changed_.wait(lock, isEnough);
        }
    }
    batch_.swap(answers_);
    if (batch_.empty() && failure_ != nullptr)
        std::rethrow_exception(std::exchange(failure_, nullptr));
    lock.unlock();
    changed_.notify_all();
}

std::optional<ipmi::Answer> ReadingAhead::take(std::uint8_t sensor) {
    if (taken_ == sensors_.size() || sensors_[taken_] != sensor)
        return std::nullopt;
    if (batch_.empty())
        fetch();
    if (batch_.empty())
        return std::nullopt;
    ++taken_;
    std::optional<ipmi::Answer> answer = std::move(batch_.front());
    batch_.pop_front();
    return answer;
}

} // namespace hooks
