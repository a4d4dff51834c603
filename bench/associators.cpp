// The host's sensors by CIM_SystemDevice: what an associated instance, and its path, cost, whatever their
// number.
#include "broker/broker.h"
#include "support/contest.h"
#include "support/sensor_machine.h"

#include <benchmark/benchmark.h>
#include <filesystem>

namespace {

using Ask = std::size_t (*)(broker::Broker& broker, const broker::ObjectPath& host);

void associate(benchmark::State& state, Ask ask) {
    const bench::PrivateRoot root;
    const auto count = static_cast<int>(state.range(0));
    bench::makeSensorMachine(root.path(), count);
    std::filesystem::create_symlink(PH_LIBRARY, root.path() + "/usr/local/lib/libProviderHelper.so");
    broker::Broker broker;
    broker.loadProvider(PH_PROVIDER_MODULE, "ProviderHelper");
    const auto hosts =
        broker.enumerateInstanceNames(broker::parseObjectPath("root/cimv2:CIM_HostComputerSystem")).paths;
    for (auto _ : state)
        if (hosts.empty() ||
            ask(broker, hosts[0]) < static_cast<std::size_t>(count)) { // a host has other devices, too
            state.SkipWithError("not every sensor was found");
            break;
        }
    state.counters["per_sensor"] =
        benchmark::Counter(static_cast<double>(count),
                           benchmark::Counter::kIsIterationInvariantRate | benchmark::Counter::kInvert);
}

void associators(benchmark::State& state) {
    associate(state, [](broker::Broker& broker, const broker::ObjectPath& host) {
        return broker
            .associators(host, {.assocClass = "CIM_SystemDevice", .resultClass = "CIM_NumericSensor"})
            .instances.size();
    });
}

void associatorNames(benchmark::State& state) {
    associate(state, [](broker::Broker& broker, const broker::ObjectPath& host) {
        return broker
            .associatorNames(host, {.assocClass = "CIM_SystemDevice", .resultClass = "CIM_NumericSensor"})
            .paths.size();
    });
}

void referenceNames(benchmark::State& state) {
    associate(state, [](broker::Broker& broker, const broker::ObjectPath& host) {
        return broker.referenceNames(host, {.resultClass = "CIM_SystemDevice"}).paths.size();
    });
}

BENCHMARK(associators)->Arg(10)->Arg(100)->Arg(1000)->Unit(benchmark::kMillisecond);
BENCHMARK(associatorNames)->Arg(10)->Arg(100)->Arg(1000)->Unit(benchmark::kMillisecond);
BENCHMARK(referenceNames)->Arg(10)->Arg(100)->Arg(1000)->Unit(benchmark::kMillisecond);

} // namespace
