#include "ipmi-view/metrics_collector.h"

#include <algorithm>
#include <condition_variable>
#include <cstdint>
#include <map>
#include <mutex>
#include <thread>
#include <utility>

namespace view {

using ipmi::Clock;

// It outlives the collector while a collection that did not end in time still uses it.
struct MetricsCollector::State {
    State(Open openBmc, Duration longest) : open(std::move(openBmc)), deadline(longest) {}

    const Open open;
    const Duration deadline;

    std::mutex mutex;
    std::condition_variable ended;
    bool isRunning = false;
    std::uint64_t collections = 0; // that have ended
    Clock::time_point start, end;  // of the one that runs, or ran last; `end` is when it has to be over
    Collection last;
    bool isCounted = false;                        // it was counted as a failure while it ran
    std::map<std::string, std::uint64_t> failures; // by collector

    void run(Clock::time_point begin, Clock::time_point limit) {
        Collection collection;
        try {
            collection = collectMetrics(
                [&] { return open(std::chrono::duration_cast<Duration>(limit - Clock::now())); }, limit);
        } catch (const std::exception& error) {
            collection = collectionWithout(error.what());
        }
        const std::chrono::duration<double> duration = Clock::now() - begin;
        collection.samples.push_back({Metric::ScrapeDuration, {}, duration.count()});
        const std::lock_guard lock(mutex);
        if (!isCounted)
            count(collection);
        last = std::move(collection);
        isRunning = isCounted = false;
        ++collections;
        ended.notify_all();
    }

    void count(const Collection& collection) {
        for (const Failure& failure : collection.failures)
            ++failures[failure.collector];
    }

    Result resultOf(const Collection& collection, MetricsFormat format) const {
        Samples samples = collection.samples;
        for (const Sample& up : collection.samples) {
            if (up.metric != Metric::Up)
                continue;
            const auto failed = failures.find(up.labels.front().value);
            samples.push_back({Metric::ScrapeFailures, up.labels,
                               failed != failures.end() ? static_cast<double>(failed->second) : 0.0});
        }
        return {metricsText(samples, format), collection.failures};
    }
};

MetricsCollector::MetricsCollector(Open open, Duration deadline)
    : state_(std::make_shared<State>(std::move(open), deadline)) {}

MetricsCollector::~MetricsCollector() {
    std::unique_lock lock(state_->mutex);
    state_->ended.wait_until(lock, state_->end, [&] { return !state_->isRunning; });
}

MetricsCollector::Result MetricsCollector::collect(MetricsFormat format, Duration patience) {
    const auto now = Clock::now();
    const Duration longest = std::min(state_->deadline, patience);
    const auto limit = now + longest;
    // What was told until then is to be in the answer.
    const auto lastExchange = limit - longest / 10;
    std::unique_lock lock(state_->mutex);
    if (!state_->isRunning) {
        state_->start = now;
        state_->end = limit;
        std::thread([state = state_, now, lastExchange] { state->run(now, lastExchange); }).detach();
        state_->isRunning = true;
    }
    const std::uint64_t before = state_->collections;
    if (state_->ended.wait_until(lock, limit, [&] { return state_->collections != before; }))
        return state_->resultOf(state_->last, format);
    Collection late = collectionWithout("it did not end in time");
    if (!std::exchange(state_->isCounted, true))
        state_->count(late);
    const std::chrono::duration<double> duration = Clock::now() - state_->start;
    late.samples.push_back({Metric::ScrapeDuration, {}, duration.count()});
    Result result = state_->resultOf(late, format);
    result.isInTime = false;
    return result;
}

} // namespace view
