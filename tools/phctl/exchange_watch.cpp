#include "exchange_watch.h"

#include "ipmi/command.h"
#include "ipmi_commands.h"

#include <algorithm>
#include <condition_variable>

namespace phctl {
namespace {

constexpr int noAnswer = -1, shortAnswer = -2;
constexpr std::size_t shortestReading = 3; // completion code, reading, flags
constexpr std::chrono::seconds mostSilence(2);
constexpr std::chrono::seconds period(1);

} // namespace

void ExchangeWatch::Wait::begin() {
    end();
    last_ = std::chrono::steady_clock::now();
    thread_ = std::jthread([this](const std::stop_token& stop) { run(stop); });
}

void ExchangeWatch::Wait::progress() {
    const std::lock_guard lock(mutex_);
    last_ = std::chrono::steady_clock::now();
}

void ExchangeWatch::Wait::run(const std::stop_token& stop) {
    bool isShown = false;
    std::condition_variable_any never;
    for (std::unique_lock lock(mutex_);;) {
        never.wait_for(lock, stop, period, [] { return false; });
        if (stop.stop_requested())
            break;
        const auto waited =
            std::chrono::floor<std::chrono::seconds>(std::chrono::steady_clock::now() - last_);
        const bool isWaiting = waited >= mostSilence;
        if (line_.isTerminal && isWaiting)
            line_.show("Waiting for the BMC: " + std::to_string(waited.count()) + " s");
        else if (isWaiting && !isShown)
            line_.show("Waiting for the BMC");
        else if (isShown && !isWaiting)
            line_.clear();
        isShown = isWaiting;
    }
}

void ExchangeWatch::begin() {
    {
        const std::lock_guard lock(mutex_);
        unreadable_.clear();
        failure_ = 0;
        hasSilence_ = false;
    }
    wait_.begin();
}

void ExchangeWatch::end() {
    wait_.end();
    line_.clear();
}

void ExchangeWatch::exchanged(std::uint8_t netFn, std::uint8_t command, Bytes request, Bytes answer) {
    const bool isReading = ipmi::CommandCode{netFn, command} == ipmi::command::getSensorReading;
    const Reason reason = answer.empty()                                                   ? noAnswer
                          : answer[0] == 0 && isReading && answer.size() < shortestReading ? shortAnswer
                                                                                           : answer[0];
    if (reason == 0) {
        wait_.progress();
        log_.exchanged(netFn, command, request, answer);
        return;
    }
    // So a BMC says that it has no such channel, which is an answer to whoever looks for its LANs.
    if (ipmi::CommandCode{netFn, command} == ipmi::command::getChannelInfo &&
        ipmi::completion::meansAbsent(static_cast<std::uint8_t>(reason)))
        return;
    const std::lock_guard lock(mutex_);
    failed_ = {netFn, command};
    failure_ = reason;
    hasSilence_ = hasSilence_ || reason == noAnswer;
    if (isReading && !request.empty())
        unreadable_[reason].insert(request[0]);
}

std::string ExchangeWatch::textOf(Reason reason) {
    if (reason == noAnswer)
        return "the BMC did not answer";
    if (reason == shortAnswer)
        return "the BMC's answer was too short";
    char code[12];
    std::snprintf(code, sizeof code, "%02Xh", static_cast<unsigned>(reason));
    return std::string("completion code ") + code + ", " +
           ipmi::completionCodeText(static_cast<std::uint8_t>(reason));
}

std::string ExchangeWatch::unreadableSensors(std::size_t missing) const {
    const std::lock_guard lock(mutex_);
    std::size_t count = 0;
    std::string reasons;
    for (const auto& [reason, sensors] : unreadable_) {
        count += sensors.size();
        reasons += (reasons.empty() ? "" : "; ") +
                   (unreadable_.size() > 1 ? std::to_string(sensors.size()) + " with " : std::string()) +
                   textOf(reason);
    }
    count = std::max(count, missing);
    if (count == 0)
        return {};
    if (reasons.empty())
        reasons = hasSilence_ ? textOf(noAnswer) : "the BMC says nothing of them";
    return std::to_string(count) + (count == 1 ? " sensor" : " sensors") + " could not be read and " +
           (count == 1 ? "is" : "are") + " left out: " + reasons;
}

std::string ExchangeWatch::lastFailure() const {
    const std::lock_guard lock(mutex_);
    return failure_ == 0 ? ipmi::lastOpenFailure() : toText(failed_) + ": " + textOf(failure_);
}

bool ExchangeWatch::hasSilence() const {
    const std::lock_guard lock(mutex_);
    return hasSilence_;
}

} // namespace phctl
