// Alerts for listeners of which some take long, hang or are dead: what the good one gets, and when.
//
//   alert_receivers [EVENTS]     10000 by default, up to 65536 (record IDs), for each of the four in turn
//
// Exit status 1 when the good or the slow listener missed an alert, or got them in another order; 2 for what is no number
// of events.
#include "support/alert_machine.h"
#include "support/count.h"
#include "support/http_sink.h"

#include <chrono>
#include <cstdio>
#include <cstdlib>
#include <silent_port.h>
#include <unistd.h>

namespace {

using Clock = std::chrono::steady_clock;

std::string url(int port) {
    return "http://127.0.0.1:" + std::to_string(port) + '/';
}

double since(Clock::time_point begin) {
    return std::chrono::duration<double>(Clock::now() - begin).count();
}

// A listener that answers, and what it was told.
class Receiver {
public:
    explicit Receiver(std::chrono::milliseconds delay)
        : sink_(delay, [this](const std::string& body) { take(body); }) {}

    int port() const { return sink_.port(); }
    // Waits for all alerts of this listener. Returns whether they came in order.
    bool await(std::size_t count) {
        for (auto seen = sink_.requests(); !sink_.await(count); seen = sink_.requests())
            if (sink_.requests() == seen && ++idle_ > patience_)
                return false;
        return isInOrder_;
    }
    std::size_t requests() const { return sink_.requests(); }
    double longestPause() const { return longestPause_; } // seconds

private:
    void take(const std::string& body) {
        constexpr std::string_view before = "NAME=\"EventID\" TYPE=\"string\"><VALUE>";
        const std::size_t at = body.find(before);
        const long id = at != body.npos ? std::strtol(body.c_str() + at + before.size(), nullptr, 16) : -1;
        isInOrder_ = isInOrder_ && id > lastId_;
        lastId_ = id;
        longestPause_ = std::max(longestPause_, since(lastTime_));
        lastTime_ = Clock::now();
    }

    const int patience_ = 3; // of ten seconds each
    int idle_ = 0;
    bool isInOrder_ = true;
    long lastId_ = -1;
    double longestPause_ = 0;
    Clock::time_point lastTime_ = Clock::now();
    bench::HttpSink sink_;
};

} // namespace

int main(int argc, char** argv) {
    constexpr int usualEvents = 10'000, mostEvents = 0x10000;
    const auto count = argc > 1 ? bench::readCount(argv[1], mostEvents) : usualEvents;
    if (!count) {
        std::fprintf(stderr, "%s: expected a number of events instead of %s\n", argv[0], argv[1]);
        return 2;
    }
    const int events = *count;
    constexpr std::chrono::milliseconds slowness{5};
    Receiver good({}), slow(slowness);
    const SilentPort hanging(SilentPort::Hanging), dead(SilentPort::Dead);
    constexpr int listeners = 4;
    const auto& machine = bench::AlertMachine::only();
    machine.make(100, {url(good.port()), url(slow.port()), url(hanging.port()), url(dead.port())});

    const auto begin = Clock::now();
    for (int i = 0; i < events; ++i)
        if (!machine.write(1 + i % listeners, static_cast<std::uint16_t>(i)))
            return 1;
    const auto share = [&](int listener) {
        return static_cast<std::size_t>((events + listeners - listener) / listeners);
    };
    const bool isGood = good.await(share(1)) && slow.await(share(2));
    const double seconds = since(begin);
    std::printf("%d events in %.1f s, %.0f a second\n", events, seconds, events / seconds);
    std::printf("good: %zu of %zu, longest pause %.1f s\n", good.requests(), share(1), good.longestPause());
    std::printf("slow (%d ms): %zu of %zu\n", static_cast<int>(slowness.count()), slow.requests(), share(2));
    std::fflush(stdout);
    _exit(isGood ? 0 : 1); // the monitor goes on
}
