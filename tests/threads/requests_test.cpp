// Requests of several threads on the whole road, while the monitor delivers alerts, the log is followed and the
// cache of instance arrays is on. Under ThreadSanitizer (preset `threads`) each race ends the program.
#include "bmc_session.h"
#include "cim_values.h"
#include "ipmi/command.h"
#include "ipmi/commands.h"
#include "paths.h"
#include "virtual-bmc/virtual_bmc.h"

#include <platform/sel_event_message.h>
#include <platform/support.h>

#include <atomic>
#include <barrier>
#include <fcntl.h>
#include <gmock/gmock.h>
#include <map>
#include <server_script.h>
#include <set>
#include <sysroot_fixture.h>
#include <thread>
#include <unistd.h>

// In place of the platform's and libc's.
#pragma GCC visibility push(default)
extern "C" {
int RetrieveCoreFeatures(CoreFeatures* features) {
    *features = {};
    features->words[CORE_FEATURE_INSTANCE_ARRAY_CACHE] = 1;
    return 0;
}
// While it runs fast, what the cache of instance arrays keeps is too old for every request.
static std::atomic<bool> runsFast = false;
time_t time(time_t* place) {
    static std::atomic<time_t> more = 0;
    timespec now{};
    clock_gettime(CLOCK_REALTIME, &now);
    const time_t result = now.tv_sec + (runsFast ? more += 200 : more.load());
    if (place != nullptr)
        *place = result;
    return result;
}
// The log is looked at once a second.
int GetMacrodefine_getint(const char*, int) {
    return 1;
}
}
#pragma GCC visibility pop

namespace {

using broker::Broker;
using broker::Instance;
using broker::ObjectPath;
using broker::Reply;
using testing::IsEmpty;

constexpr const char* classes[] = {
#define PH_CLASS(name) "CIM_" #name,
#include "classes.inc"
};
// Threads make and delete instances of these, or the log grows meanwhile.
const std::set<std::string> changing{"CIM_ConcreteJob", "CIM_ListenerDestinationCIMXML", "CIM_LogEntry"};

// What is the same whoever asks, and whoever asks beside: code and number of objects, by request.
using Answers = std::map<std::string, std::string>;

std::string answerOf(const Reply& reply) {
    return broker::codeName(reply.code) + ' ' + std::to_string(reply.instances.size() + reply.paths.size());
}
std::vector<std::string> difference(const Answers& answers, const Answers& expected) {
    std::vector<std::string> lines;
    for (const auto& [request, answer] : expected)
        if (const auto found = answers.find(request); found == answers.end() || found->second != answer)
            lines.push_back(request + ": " + (found != answers.end() ? found->second : "nothing") +
                            " instead of " + answer);
    return lines;
}

// The monitor works on it until the process ends.
Broker& keptBroker() {
    static auto& broker = *new Broker;
    return broker;
}

class Threads : public SysrootFixture {
protected:
    void SetUp() override {
        for (const std::filesystem::path library :
             {paths::library, paths::interopLibrary, paths::eventTexts}) {
            const std::string name = library.filename();
            std::filesystem::create_symlink(
                library, sysroot.place("/usr/local/lib/" + name.substr(0, name.find(".so") + 3)));
        }
        sysroot.standInForCommands();
        vbmc::create(stateFile, paths::sampleServer);
        synchronise(stateFile);
        broker.loadProvider(paths::providerModule, "ProviderHelper");
        broker.setIndicationHandler([this](const auto&, const auto&) { ++indications; });
        const auto hosts = broker.enumerateInstanceNames(path("CIM_HostComputerSystem")).paths;
        ASSERT_EQ(hosts.size(), 1U);
        host = hosts[0];
    }

    // What the cache is for, and every class, read in each way.
    Answers readEverything() {
        Answers answers;
        const char* const devices = "CIM_SystemDevice";
        answers.emplace("associators", answerOf(broker.associators(host, {.assocClass = devices})));
        answers.emplace("reference names", answerOf(broker.referenceNames(host, {.resultClass = devices})));
        for (const std::string name : classes) {
            const Reply instances = broker.enumerateInstances(path(name));
            if (changing.contains(name))
                continue;
            answers.emplace(name, answerOf(instances));
            answers.emplace(name + " names", answerOf(broker.enumerateInstanceNames(path(name))));
            if (!instances.instances.empty())
                answers.emplace(name + " get", answerOf(broker.getInstance(instances.instances.back().path)));
        }
        return answers;
    }
    // Database, BMC and jobs.
    void changeEverything(unsigned number) {
        const auto modify = [&](const ObjectPath& object, const char* property, broker::Value value) {
            const Reply reply =
                broker.modifyInstance(object, {object, {{property, std::move(value)}}}, {{property}});
            EXPECT_TRUE(reply.ok()) << object.className << ": " << reply.message;
        };
        modify(broker.enumerateInstanceNames(path("CIM_IndicationService")).paths.at(0),
               "DeliveryRetryInterval", ::number(20 + number, CMPI_uint32));
        const ObjectPath account = broker.enumerateInstanceNames(path("CIM_Account")).paths.back();
        modify(account, "UserID", text("user" + std::to_string(number)));

        ObjectPath destination = account;
        destination.className = "CIM_ListenerDestinationCIMXML";
        broker::set(destination.keys, "CreationClassName", text(destination.className));
        broker::set(destination.keys, "Name", text("CIMXML-" + std::to_string(100 + number)));
        Instance made{destination, destination.keys};
        broker::set(made.properties, "Destination", text("http://192.0.2.1:5988/"));
        const Reply created = broker.createInstance(destination, made);
        EXPECT_TRUE(created.ok()) << created.message;
        EXPECT_TRUE(broker.deleteInstance(destination).ok());

        const Reply called =
            broker.invokeMethod(host, "RequestStateChange", {{"RequestedState", ::number(2)}});
        EXPECT_TRUE(called.ok()) << called.message;
    }

    const std::filesystem::path stateFile = sysroot.place("/var/lib/virtual-bmc/bmc.state");
    Broker& broker = keptBroker();
    ObjectPath host;
    std::atomic<unsigned> indications = 0;
};

TEST_F(Threads, replaceWhatTheCacheKeeps) {
    const auto sensors = [&] {
        return answerOf(broker.associatorNames(
            host, {.assocClass = "CIM_SystemDevice", .resultClass = "CIM_NumericSensor"}));
    };
    const std::string expected = sensors();
    std::vector<std::thread> threads;
    runsFast = true;
    for (int i = 0; i < 4; ++i)
        threads.emplace_back([&] {
            for (int round = 0; round < 10; ++round)
                EXPECT_EQ(sensors(), expected);
        });
    for (std::thread& thread : threads)
        thread.join();
    runsFast = false;
}

TEST_F(Threads, askChangeAndAreAlerted) {
    constexpr int rounds = 2, readers = 3, writers = 2, alerts = 40;
    const ServerScript listener("indication_listener.py", sysroot.place("/requests"));
    SMASH_DB_HANDLE database = nullptr;
    CimxmlDestinationRow row{"CIMXML-1", ""};
    std::snprintf(row.destination, sizeof row.destination, "http://127.0.0.1:%d/", listener.port());
    ASSERT_EQ(db_init(&database), 0);
    ASSERT_EQ(db_set_listener_destination(database, &row), 0);
    ASSERT_EQ(db_close(database), 0);

    const ObjectPath source = path("CIM_AlertIndication", {}, "root/interop");
    ASSERT_TRUE(broker.subscribe("select * from CIM_AlertIndication", source).ok());

    // The first requests fill the cache; what one thread gets alone is known last.
    std::vector<Answers> answers(readers * rounds);
    std::barrier start(readers + writers + 2);
    std::vector<std::thread> threads;
    const auto add = [&](auto work) {
        threads.emplace_back([&start, work] {
            start.arrive_and_wait();
            work();
        });
    };
    for (int i = 0; i < readers; ++i)
        add([&, i] {
            for (int round = 0; round < rounds; ++round)
                answers[i * rounds + round] = readEverything();
        });
    for (unsigned i = 0; i < writers; ++i)
        add([&, i] {
            for (unsigned round = 0; round < 3 * rounds; ++round)
                changeEverything(i * 10 + round);
        });
    add([&] { // the BMC's event daemon
        const int pipe = open(sysroot.place(SEL_EVENT_PIPE).c_str(), O_WRONLY | O_CLOEXEC);
        for (std::uint8_t i = 0; i < alerts; ++i) {
            const SelEventMessage message{
                {i, 0, 2, 0xC0, 0x2E, 0x32, 0x66, 0x20, 0, 4, 1, 1, 1, 0x59, 0x50, 0x46},
                1,
                1,
                SEL_EVENT_TO_CIMXML};
            EXPECT_EQ(::write(pipe, &message, sizeof message), static_cast<ssize_t>(sizeof message));
        }
        close(pipe);
    });
    add([&] { // sensors
        const auto bmc = ipmi::openTransport(virtualBmc(stateFile));
        for (int i = 0; i < alerts; ++i)
            ipmi::run(*bmc, ipmi::command::addSelEntry,
                      {0, 0, 2, 0, 0, 0, 0, 0x20, 0, 4, 1, 1, 1, 0x57, 0, 0});
    });
    for (std::thread& thread : threads)
        thread.join();

    const auto taken = listener.records(alerts);
    ASSERT_EQ(taken.size(), static_cast<std::size_t>(alerts));
    for (unsigned i = 0; i < alerts; ++i) {
        char id[8];
        std::snprintf(id, sizeof id, "%02x", i);
        EXPECT_EQ(taken[i]["properties"]["EventID"]["value"], id) << "alerts come in order";
    }
    for (int i = 0; i < 3000 && indications < alerts; ++i)
        std::this_thread::sleep_for(std::chrono::milliseconds(10));
    EXPECT_EQ(indications, static_cast<unsigned>(alerts));
    EXPECT_TRUE(broker.unsubscribe("select * from CIM_AlertIndication", source).ok());
    const Answers alone = readEverything();
    for (const Answers& each : answers)
        EXPECT_THAT(difference(each, alone), IsEmpty());
}

} // namespace
