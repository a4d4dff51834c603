// From the event pipe to a listener on this machine, event by event.
#include "ipmi/transport.h"
#include "support/alert_machine.h"
#include "support/http_sink.h"

#include <atomic>
#include <benchmark/benchmark.h>

namespace {

constexpr int listener = 1;

bench::HttpSink& sink() {
    static auto* const only = new bench::HttpSink; // the monitor's connection to it stays open
    return *only;
}

void makeMachine(const benchmark::State& state) {
    bench::AlertMachine::only().make(static_cast<int>(state.range(0)),
                                     {"http://127.0.0.1:" + std::to_string(sink().port()) + '/'});
}

// One event at a time: written, delivered, answered.
void deliver(benchmark::State& state) {
    makeMachine(state);
    std::atomic<unsigned> ipmiMessages = 0;
    ipmi::observeExchanges([&](auto...) { ++ipmiMessages; });
    for (auto _ : state) {
        const auto before = sink().requests();
        if (!bench::AlertMachine::only().write(listener, 1) || !sink().await(before + 1)) {
            state.SkipWithError("the event was not delivered");
            break;
        }
    }
    ipmi::observeExchanges({});
    state.SetItemsProcessed(state.iterations());
    state.counters["ipmi"] = benchmark::Counter(ipmiMessages, benchmark::Counter::kAvgIterations);
}

// The part of it that makes the alert.
void describe(benchmark::State& state) {
    makeMachine(state);
    const SelEventMessage message = bench::AlertMachine::event(listener, 1);
    for (auto _ : state) {
        AlertRecord alert{};
        if (SelToAlert(&message, &alert, message.destination, message.channel) != 0)
            state.SkipWithError("no alert");
        benchmark::DoNotOptimize(alert);
    }
}

BENCHMARK(deliver)->Arg(10)->Arg(100)->Arg(500)->Arg(1000)->Unit(benchmark::kMillisecond)->UseRealTime();
BENCHMARK(describe)->Arg(10)->Arg(100)->Arg(500)->Arg(1000)->Unit(benchmark::kMillisecond)->UseRealTime();

} // namespace
