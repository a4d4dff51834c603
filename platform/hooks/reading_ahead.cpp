#include "hooks/reading_ahead.h"

#include <chrono>
#include <csignal>
#include <utility>

namespace hooks {
namespace {

// Starting a thread takes as long as reading some sensors.
constexpr std::size_t fewSensors = 16;
// So many answers wait, beside as many that the caller works on: one who is slower than the BMC gets no old readings.
constexpr std::size_t mostAhead = 16;
// So long the caller looks out for an answer before it sleeps. The scheduler moves processes to a processor that falls idle
// between two answers, those that give them too: each exchange wakes two processors then, and the caller is in their way.
constexpr std::chrono::milliseconds lookout{1};

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
    return sensors > fewSensors;
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
        {
            const std::lock_guard lock(mutex_);
            answers_.push_back(std::move(answer));
        }
        changed_.notify_all();
    }
}

bool ReadingAhead::waitForRoom() {
    std::unique_lock lock(mutex_);
    changed_.wait(lock, [&] { return isStopping_ || answers_.size() < mostAhead; });
    return !isStopping_;
}

void ReadingAhead::fetch() {
    const auto hasNews = [&] { return isFinished_ || !answers_.empty(); };
    const auto end = ipmi::Clock::now() + lookout;
    std::unique_lock lock(mutex_);
    while (!hasNews() && ipmi::Clock::now() < end) {
        lock.unlock();
        std::this_thread::yield();
        lock.lock();
    }
    changed_.wait(lock, hasNews);
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
