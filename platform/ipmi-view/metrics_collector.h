// Collects metrics for whoever asks: one collection at a time, and an answer in time whatever the BMC does.
#pragma once

#include "ipmi-view/metrics.h"

#include <chrono>
#include <memory>
#include <string>

namespace view {

class MetricsCollector {
public:
    using Duration = std::chrono::milliseconds;
    // Opens a session whose messages do not wait longer than the given time. It may be called after the collector
    // has gone, if it did not return in time.
    using Open = std::function<std::unique_ptr<ipmi::Transport>(Duration longest)>;

    MetricsCollector(Open open, Duration deadline);
    // Waits for a collection that is under way, no longer than its deadline.
    ~MetricsCollector();
    MetricsCollector(const MetricsCollector&) = delete;
    MetricsCollector& operator=(const MetricsCollector&) = delete;

    struct Result {
        std::string text;
        std::vector<Failure> failures;
        bool isInTime = true; // false: the collection goes on, and what it opened is in use
    };
    // Returns the metrics within the deadline, or within `patience` if that is shorter. Who asks while a collection
    // is under way gets the result of that one. A collection that is not done in time goes on by itself, and no other
    // one begins before its end. Any thread may call it.
    Result collect(MetricsFormat format, Duration patience = Duration::max());

private:
    struct State;
    std::shared_ptr<State> state_;
};

} // namespace view
