// From the event pipe to a listener on this machine: the monitor thread with the libraries that it opens,
// event by event.
#include "broker/broker.h"
#include "broker/object_manager.h"
#include "ipmi/transport.h"
#include "provider_helper/alert_delivery.h"
#include "support/contest.h"
#include "support/http_sink.h"
#include "support/sensor_machine.h"

#include <atomic>
#include <benchmark/benchmark.h>
#include <fcntl.h>
#include <filesystem>
#include <pthread.h>
#include <unistd.h>

namespace {

constexpr int listener = 1;

SelEventMessage event() {
    // An upper critical event of sensor 1, a temperature.
    return {{1, 0, 0x02, 0xC0, 0x2E, 0x32, 0x66, 0x20, 0, 0x04, 1, 1, 0x01, 0x59, 0x50, 0x46},
            listener,
            1,
            SEL_EVENT_TO_CIMXML};
}

// What lasts as long as the process, like the monitor.
struct Machine {
    bench::PrivateRoot root;
    bench::HttpSink sink;
    broker::Broker broker;
    broker::ObjectManager objectManager{broker};
    int pipe = -1;

    Machine() {
        const std::filesystem::path libraries = root.path() + "/usr/local/lib";
        std::filesystem::create_directories(libraries);
        std::filesystem::create_directories(root.path() + "/tmp");
        for (const std::filesystem::path library : {PH_INTEROP, PH_EVENT_DESCRIPTIONS})
            std::filesystem::create_symlink(library, libraries / library.filename());
        PH_Init_Indication();
        pthread_t monitor;
        if (g_InteropLibHandle == nullptr ||
            pthread_create(&monitor, nullptr, ReadSELEvents_And_Deliver, nullptr) != 0)
            throw std::runtime_error("the monitor cannot be started");
        pipe = open((root.path() + SEL_EVENT_PIPE).c_str(), O_WRONLY | O_CLOEXEC);
    }
    ~Machine() { close(pipe); }
    Machine(const Machine&) = delete;
    Machine& operator=(const Machine&) = delete;

    void make(int sensors) const {
        bench::makeSensorMachine(root.path(), sensors);
        SMASH_DB_HANDLE database = nullptr;
        CimxmlDestinationRow row{};
        std::snprintf(row.name, sizeof row.name, "CIMXML-%d", listener);
        std::snprintf(row.destination, sizeof row.destination, "http://127.0.0.1:%d/", sink.port());
        if (db_init(&database) != 0 || db_set_listener_destination(database, &row) != 0)
            throw std::runtime_error(db_last_error());
        db_close(database);
    }
};

// It is never destroyed: the monitor works on it until the process ends.
Machine& machine() {
    static auto* const only = new Machine;
    return *only;
}

// One event at a time: written, delivered, answered.
void deliver(benchmark::State& state) {
    machine().make(static_cast<int>(state.range(0)));
    const SelEventMessage message = event();
    std::atomic<unsigned> ipmiMessages = 0;
    ipmi::observeExchanges([&](auto...) { ++ipmiMessages; });
    for (auto _ : state) {
        const auto before = machine().sink.requests();
        if (write(machine().pipe, &message, sizeof message) != sizeof message ||
            !machine().sink.await(before + 1)) {
            state.SkipWithError("the event was not delivered");
            break;
        }
    }
    ipmi::observeExchanges({});
    state.SetItemsProcessed(state.iterations());
    state.counters["ipmi"] = benchmark::Counter(ipmiMessages, benchmark::Counter::kAvgIterations);
}

// The part of it that depends on the number of sensors.
void describe(benchmark::State& state) {
    machine().make(static_cast<int>(state.range(0)));
    const SelEventMessage message = event();
    for (auto _ : state) {
        AlertRecord alert{};
        if (SelToAlert(&message, &alert, message.destination, message.channel) != 0)
            state.SkipWithError("no alert");
        benchmark::DoNotOptimize(alert);
    }
}

BENCHMARK(deliver)->Arg(10)->Arg(100)->Arg(500)->Unit(benchmark::kMillisecond)->UseRealTime();
BENCHMARK(describe)->Arg(10)->Arg(100)->Arg(500)->Unit(benchmark::kMillisecond)->UseRealTime();

} // namespace
