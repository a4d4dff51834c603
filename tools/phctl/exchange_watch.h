// What happens between the providers and the BMC while a request runs: how far it is, and what goes wrong.
#pragma once

#include "ipmi/commands.h"
#include "log_progress.h"

#include <chrono>
#include <cstdint>
#include <map>
#include <mutex>
#include <set>
#include <span>
#include <string>
#include <thread>

namespace phctl {

class ExchangeWatch {
public:
    using Bytes = std::span<const std::uint8_t>;

    // Shows progress on `out`: of a long log, and that the BMC is waited for.
    ExchangeWatch(std::ostream& out, bool isTerminal) : line_(out, isTerminal), log_(line_), wait_(line_) {}

    // To be called around a request. `begin` forgets what was seen before.
    void begin();
    void end();

    // An exchange; an empty answer is none.
    void exchanged(std::uint8_t netFn, std::uint8_t command, Bytes request, Bytes answer);

    // Tells how many sensors could not be read and why: "2 sensors could not be read: …"; empty when all could.
    // `missing` are those that are known to lack: after a message without an answer a session asks no more.
    std::string unreadableSensors(std::size_t missing) const;
    // Tells what the last refused or unanswered exchange was, or why there was no session; empty when all went
    // well.
    std::string lastFailure() const;
    // Tells whether the BMC left a message unanswered.
    bool hasSilence() const;

private:
    using Reason = int; // completion code, or that there was no answer
    static std::string textOf(Reason reason);

    // Shows how long the BMC is waited for, once that takes more than a moment.
    class Wait {
    public:
        explicit Wait(StatusLine& line) : line_(line) {}
        ~Wait() = default;
        Wait(const Wait&) = delete;
        Wait& operator=(const Wait&) = delete;
        void begin();
        void end() { thread_ = {}; }
        void progress(); // the BMC answered

    private:
        void run(const std::stop_token& stop);

        StatusLine& line_;
        std::mutex mutex_;
        std::chrono::steady_clock::time_point last_;
        std::jthread thread_;
    };

    StatusLine line_;
    LogProgress log_;
    Wait wait_;
    mutable std::mutex mutex_;
    std::map<Reason, std::set<unsigned>> unreadable_; // owner's LUN and number of sensors, by reason
    ipmi::CommandCode failed_{};
    Reason failure_ = 0;
    bool hasSilence_ = false;
};

} // namespace phctl
