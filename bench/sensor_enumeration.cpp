// CIM_NumericSensor enumerated on the virtual BMC: what a sensor costs, whatever their number.
#include "broker/broker.h"
#include "provider_helper/sensors.h"
#include "smash-db/sync/sync.h"
#include "support/contest.h"
#include "virtual-bmc/virtual_bmc.h"

#include <benchmark/benchmark.h>
#include <string>

namespace {

constexpr char stateFolder[] = "/var/lib/virtual-bmc";
constexpr int numbers = 254; // sensor numbers that IPMI has; more SDRs than that share them

std::string model(int count) {
    std::string sensors;
    for (int i = 0; i < count; ++i)
        sensors +=
            std::string(i == 0 ? "" : ",") + R"({"number": )" + std::to_string(1 + i % numbers) +
            R"(, "name": "Temp )" + std::to_string(i) +
            R"(", "type": "Temperature", "entity": 7, "analog": {"format": "unsigned", "unit": "degrees C"},)"
            R"( "thresholds": {"upperNonCritical": 80, "upperCritical": 90}, "reading": )" +
            std::to_string(20 + i % 50) + "}";
    return R"({"device": {}, "sensors": [)" + sensors + "]}";
}

void prepare(const bench::PrivateRoot& root, int count) {
    const std::string state = root.path() + stateFolder + "/bmc.state";
    vbmc::createFromText(state, model(count), "benchmark");
    const auto transport = ipmi::openTransport({.address = state,
                                                .userName = {},
                                                .password = {},
                                                .interfaceType = ipmi::SessionSettings::VirtualBmc});
    smash::sync(*transport);
    SMASH_DB_HANDLE database = nullptr;
    IPMISessionInfo session{};
    session.interfaceType[0] = '0' + ipmi::SessionSettings::VirtualBmc;
    if (db_init(&database) != 0 || db_set_ipmi_session_info(database, &session) != 0)
        throw std::runtime_error(db_last_error());
    db_close(database);
}

void enumerate(benchmark::State& state) {
    const bench::PrivateRoot root;
    const auto count = static_cast<int>(state.range(0));
    prepare(root, count);
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
