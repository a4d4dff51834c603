// CIM_LogEntry enumerated on the virtual BMC: what a record costs, whatever their number.
#include "support/contest.h"
#include "support/log_benchmark.h"
#include "virtual-bmc/virtual_bmc.h"

#include <benchmark/benchmark.h>

namespace {

void enumerate(benchmark::State& state) {
    const bench::PrivateRoot root;
    const auto records = static_cast<std::size_t>(state.range(0));
    vbmc::VirtualBmc(bench::makeLogBmc(root.path())).fillSel(records);
    const broker::Broker broker;
    while (state.KeepRunning())
        if (bench::countLogEntries(broker) != records) {
            state.SkipWithError("not every record was enumerated");
            break;
        }
    state.counters["per_record"] =
        benchmark::Counter(static_cast<double>(records),
                           benchmark::Counter::kIsIterationInvariantRate | benchmark::Counter::kInvert);
}

BENCHMARK(enumerate)->Arg(1000)->Arg(8000)->Arg(65535)->Unit(benchmark::kMillisecond);

} // namespace
