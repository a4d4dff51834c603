// From an event of the virtual BMC to a listener and a mailbox: phctl monitor between real servers.
#include "phctl_fixture.h"
#include "server_script.h"

#include <fcntl.h>
#include <fstream>
#include <platform/sel_event_message.h>
#include <sys/stat.h>
#include <thread>
#include <unistd.h>

namespace {

using namespace ph_test;
using namespace std::chrono_literals;
using nlohmann::json;
using testing::HasSubstr;

class Monitor : public PhctlTest {
protected:
    static void SetUpTestSuite() {
        PhctlTest::SetUpTestSuite();
        create("CIM_ListenerDestinationCIMXML", "CIMXML-31", "Destination=http://127.0.0.1:1/"); // nobody
    }
    static std::string place(const char* absolutePath) { return sysroot->place(absolutePath).string(); }

    // A filter or a destination, as a client makes it.
    static void create(const std::string& className, const std::string& name, const std::string& property) {
        const json controllers = succeed({"ei", "CIM_SPComputerSystem", "--json"}).json();
        const std::string system = controllers.at(0)["properties"]["Name"];
        succeed({"ci", className, "SystemCreationClassName=CIM_SPComputerSystem",
                 "CreationClassName=" + className, "SystemName=" + system, "Name=" + name, property});
    }

    // Returns when somebody reads the event pipe, with its write end.
    static int awaitReader() {
        for (int i = 0; i < 300; ++i) {
            if (const int pipe = open(place(SEL_EVENT_PIPE).c_str(), O_WRONLY | O_NONBLOCK); pipe >= 0)
                return pipe;
            std::this_thread::sleep_for(50ms);
        }
        ADD_FAILURE() << "nobody reads the event pipe";
        return -1;
    }

    // The alerts that the monitor tells of while the events happen.
    static std::vector<json> monitor(unsigned alerts, const std::vector<std::vector<std::string>>& events) {
        RunningPhctl running({"monitor", "--json", "--count", std::to_string(alerts)});
        close(awaitReader());
        for (const auto& event : events)
            succeed(event);
        const Outcome outcome = running.wait();
        EXPECT_EQ(outcome.status, 0) << outcome.err;
        std::vector<json> lines;
        std::istringstream out(outcome.out);
        for (std::string line; std::getline(out, line);)
            lines.push_back(json::parse(line));
        return lines;
    }
};

TEST_F(Monitor, deliversWhatFiltersFind) {
    const ServerScript listener("indication_listener.py", place("/tmp/listener"));
    const ServerScript mailServer("mail_server.py", place("/tmp/mails"));
    const std::string url = "http://127.0.0.1:" + std::to_string(listener.port()) + "/alerts";
    create("CIM_ListenerDestinationCIMXML", "CIMXML-7", "Destination=" + url);
    create("CIM_ListenerDestinationSMTP", "SMTP:01:3", "Destination=UID:2");
    create("CIM_IndicationFilter", "IndicationFilter:IPMIPEF-4-9",
           "Query=select * from CIM_AlertIndication where AlertingManagedElement=01:ff");
    succeed({"bmc", "alert-destination", "1", "7", "--listener"});
    succeed({"bmc", "alert-policy", "5", "--policy", "4", "--channel", "1", "--selector", "3"});
    succeed({"bmc", "alert-policy", "6", "--policy", "4", "--channel", "1", "--selector", "7"});
    succeed({"bmc", "user-email", "2", "root@example.com"});
    succeed({"bmc", "mail-server", "1", "--enable", "--address", "127.0.0.1", "--port",
             std::to_string(mailServer.port()), "--sender", "bmc@example.com"});

    const auto alerts = monitor(2, {{"bmc", "event", "CPU1 Temp", "9"}});
    ASSERT_EQ(alerts.size(), 2U);
    EXPECT_EQ(alerts[0]["to"], "root@example.com through 127.0.0.1:" + std::to_string(mailServer.port()));
    EXPECT_EQ(alerts[1]["to"], url);
    for (const json& alert : alerts)
        EXPECT_EQ(alert["delivered"], true);

    const json post = listener.records(1).at(0);
    EXPECT_EQ(post["path"], "/alerts");
    EXPECT_EQ(post["wellFormed"], true);
    EXPECT_EQ(post["className"], "CIM_AlertIndication");
    // The listener's parser finds what the monitor says that it sent.
    const json& sent = alerts[1]["indication"]["properties"];
    EXPECT_EQ(post["properties"].size(), sent.size());
    for (const auto& property : sent.items()) {
        const json& received = post["properties"][property.key()]["value"];
        EXPECT_EQ(received, property.value().is_number() ? json(property.value().dump()) : property.value())
            << property.key();
    }
    EXPECT_EQ(sent["Description"], "Upper Critical - going high");
    EXPECT_EQ(sent["PerceivedSeverity"], "6 (Critical)");
    EXPECT_THAT(sent["MessageArguments"].at(0).get<std::string>(), HasSubstr("CPU1 Temp("));

    const json mail = mailServer.records(1).at(0);
    EXPECT_EQ(mail["recipients"], json::array({"root@example.com"}));
    EXPECT_EQ(mail["sender"], "bmc@example.com");
    EXPECT_THAT(mail["body"].get<std::string>(),
                testing::AllOf(testing::StartsWith("Generated new instance for CIM_AlertIndication\r\n"),
                               HasSubstr("\r\nSensorName\t\t:\tCPU1 Temp("),
                               HasSubstr("\r\nDescription\t\t:\tUpper Critical - going high\r\n")));
}

TEST_F(Monitor, givesSubscribersEveryNewEvent) {
    std::ofstream(place("/conf/features.ini")) << "[numbers]\nSEL_POLL_SECONDS = 1\n";
    RunningPhctl running({"monitor", "--json", "--subscribe", "--count", "2"});
    close(awaitReader());
    for (int i = 0; i < 300 && !std::filesystem::exists(place("/var/lib/provider-helper/sel-position")); ++i)
        std::this_thread::sleep_for(50ms);
    succeed({"bmc", "event", "CPU1 Temp", "7"});
    succeed({"bmc", "event", "CPU1 Temp", "7", "--deasserted"});
    const Outcome outcome = running.wait();
    EXPECT_EQ(outcome.status, 0) << outcome.err;
    std::istringstream out(outcome.out);
    for (const char* direction : {"Asserted", "Deasserted"}) {
        std::string line;
        std::getline(out, line);
        const json alert = json::parse(line);
        EXPECT_EQ(alert["to"], "the subscriber");
        const json& arguments = alert["indication"]["properties"]["MessageArguments"];
        EXPECT_THAT(arguments.at(0).get<std::string>(), HasSubstr("CPU1 Temp("));
        EXPECT_EQ(arguments.at(3), direction);
    }
}

TEST_F(Monitor, doesNotBlameTheDatabaseForWhatIsNew) {
    const json controllers = succeed({"ei", "CIM_SPComputerSystem", "--json"}).json();
    const std::string system = controllers.at(0)["properties"]["Name"];
    EXPECT_THAT(fail({"ci", "CIM_IndicationFilter", "SystemCreationClassName=CIM_SPComputerSystem",
                      "CreationClassName=CIM_IndicationFilter", "SystemName=" + system,
                      "Name=IndicationFilter:CIMXML-4", "Query=select * from CIM_AlertIndication where"},
                     1),
                testing::EndsWith("(AlertingManagedElement & PerceivedSeverity) supported\n"));
}

// A listener that is not there, one that refuses, and a mail server that refuses: each costs its own alert
// only.
TEST_F(Monitor, goesOnWhenNobodyTakesAnAlert) {
    const ServerScript listener("indication_listener.py", place("/tmp/refusing"),
                                {"--answers", "failure,ok"});
    const ServerScript mailServer("mail_server.py", place("/tmp/refused"), {"--refuse", "550 no"});
    create("CIM_ListenerDestinationCIMXML", "CIMXML-21", "Destination=http://127.0.0.1:1/");
    create("CIM_ListenerDestinationCIMXML", "CIMXML-22",
           "Destination=http://127.0.0.1:" + std::to_string(listener.port()));
    succeed({"bmc", "alert-destination", "1", "4", "--mail", "2"});
    succeed({"bmc", "user-email", "2", "root@example.com"});
    succeed({"bmc", "mail-server", "1", "--enable", "--address", "127.0.0.1", "--port",
             std::to_string(mailServer.port()), "--sender", "bmc@example.com"});
    const auto event = [](const char* to) {
        return std::vector<std::string>{"bmc", "event", "PSU1 Status", "3", "--to", to};
    };
    const auto alerts = monitor(4, {event("cimxml:21"), event("cimxml:99"), event("cimxml:22"),
                                    event("mail:1:4"), event("cimxml:22")});
    ASSERT_EQ(alerts.size(), 4U);
    for (std::size_t i = 0; i < 3; ++i)
        EXPECT_EQ(alerts[i]["delivered"], false) << alerts[i];
    EXPECT_EQ(alerts[3]["delivered"], true);
    EXPECT_EQ(mailServer.records(1).at(0)["refused"], "550 no");
}

constexpr std::initializer_list<const char*> event = {"bmc", "event", "CPU1 Temp", "9", "--to", "cimxml:31"};

TEST_F(Monitor, leavesNoPipeAndNeedsOneThatItCanHave) {
    EXPECT_EQ(monitor(1, {{event.begin(), event.end()}}).size(), 1U);
    const auto pipe = sysroot->place(SEL_EVENT_PIPE);
    EXPECT_FALSE(exists(pipe));
    EXPECT_THAT(fail({event.begin(), event.end()}, 1), HasSubstr("SELEvent_fifo"));
    std::ofstream(pipe) << "a file";
    EXPECT_THAT(fail({"monitor"}, 1), HasSubstr("not a pipe"));
    std::filesystem::remove(pipe);
    create_symlink(sysroot->place("/tmp/nothing"), pipe);
    EXPECT_THAT(fail({"monitor"}, 1), HasSubstr("not a pipe"));
    std::filesystem::remove(pipe);
}

// Each would get a part of the alerts, and the first to end would take the pipe away.
TEST_F(Monitor, isTheOnlyReader) {
    RunningPhctl first({"monitor", "--count", "1"});
    close(awaitReader());
    EXPECT_THAT(fail({"monitor"}, 1), HasSubstr("reads from it already"));
    succeed({event.begin(), event.end()});
    EXPECT_EQ(first.wait().status, 0);

    const std::string pipe = place(SEL_EVENT_PIPE);
    ASSERT_EQ(mkfifo(pipe.c_str(), 0600), 0);
    const int objectManager = open(pipe.c_str(), O_RDWR);
    EXPECT_THAT(fail({"monitor"}, 1), HasSubstr("reads from it already"));
    EXPECT_TRUE(std::filesystem::exists(pipe));
    close(objectManager);
    std::filesystem::remove(pipe);
}

// An interrupt may come while an alert is on its way.
TEST_F(Monitor, endsAtAnyTime) {
    const ServerScript listener("indication_listener.py", place("/tmp/interrupted"));
    create("CIM_ListenerDestinationCIMXML", "CIMXML-32",
           "Destination=http://127.0.0.1:" + std::to_string(listener.port()));
    const SelEventMessage message{
        {1, 0, 2, 1, 0, 0, 0, 0x20, 0, 4, 1, 1, 1, 0x59, 0, 0}, 32, 1, SEL_EVENT_TO_CIMXML};
    for (std::size_t i = 1; i <= 20; ++i) {
        const std::size_t before = listener.records().size();
        RunningPhctl running({"monitor"});
        const int pipe = awaitReader();
        for (int sent = 0; sent < 100; ++sent)
            ASSERT_EQ(write(pipe, &message, sizeof message), static_cast<ssize_t>(sizeof message));
        close(pipe);
        listener.records(before + i % 5 + 1);
        running.interrupt();
        const Outcome outcome = running.wait();
        ASSERT_EQ(outcome.status, 0) << outcome.err;
        EXPECT_FALSE(std::filesystem::exists(place(SEL_EVENT_PIPE)));
    }
}

TEST_F(Monitor, waitsNoLongerThanItMay) {
    EXPECT_EQ(ph_test::phctl({"monitor", "--timeout", "1"}).status, 0);
    const Outcome inVain = ph_test::phctl({"monitor", "--count", "2", "--timeout", "1"});
    EXPECT_EQ(inVain.status, 1);
    EXPECT_THAT(inVain.err, HasSubstr("0 of 2 alerts came within 1 s"));
    EXPECT_FALSE(std::filesystem::exists(place(SEL_EVENT_PIPE)));

    RunningPhctl running({"monitor", "--count", "1", "--timeout", "60"});
    close(awaitReader());
    succeed({event.begin(), event.end()});
    EXPECT_EQ(running.wait().status, 0);
}

TEST_F(Monitor, saysWhenItCannotWrite) {
    RunningPhctl running({"monitor"}, "/dev/full");
    close(awaitReader());
    succeed({event.begin(), event.end()});
    const Outcome outcome = running.wait();
    EXPECT_EQ(outcome.status, 1);
    EXPECT_THAT(outcome.err, HasSubstr("phctl: cannot write the output\n"));
}

} // namespace
