// CIM_NumericSensor enumerated on the virtual BMC: what a sensor costs, whatever their number.
#include "broker/broker.h"
#include "provider_helper/sensors.h"
#include "support/contest.h"
#include "support/sensor_machine.h"

#include <benchmark/benchmark.h>

namespace {

void enumerate(benchmark::State& state) {
    const bench::PrivateRoot root;
    const auto count = static_cast<int>(state.range(0));
    bench::makeSensorMachine(root.path(), count);
    const broker::Broker broker;
    std::size_t enumerated = 0;
    for (auto _ : state) {
        broker::Scope request(broker);
        CMPIStatus status{CMPI_RC_OK, nullptr};
        const CMPIObjectPath* ref = request.make(broker::parseObjectPath("root/cimv2:CIM_NumericSensor"));
        CMPIResult* result = request.makeResult();
        PH_EI_NumericSensor(broker.handle(), request.makeContext(), ref, nullptr, result, &status);
        enumerated = broker::toReply(result).instances.size();
        if (enumerated != static_cast<std::size_t>(count)) {
            state.SkipWithError("not every sensor was enumerated");
            break;
        }
    }
    state.counters["per_sensor"] =
        benchmark::Counter(static_cast<double>(count),
                           benchmark::Counter::kIsIterationInvariantRate | benchmark::Counter::kInvert);
}

BENCHMARK(enumerate)->Arg(10)->Arg(100)->Arg(1000)->Unit(benchmark::kMillisecond);

} // namespace
