// From an event of the virtual BMC to a listener and a mailbox: phctl monitor between real servers.
#include "phctl_fixture.h"
#include "server_script.h"

#include <future>
#include <thread>

namespace {

using namespace ph_test;
using namespace std::chrono_literals;
using nlohmann::json;
using testing::HasSubstr;

class Monitor : public PhctlTest {
protected:
    static std::string place(const char* absolutePath) { return sysroot->place(absolutePath).string(); }

    // A filter or a destination, as a client makes it.
    static void create(const std::string& className, const std::string& name, const std::string& property) {
        const json controllers = succeed({"ei", "CIM_SPComputerSystem", "--json"}).json();
        const std::string system = controllers.at(0)["properties"]["Name"];
        succeed({"ci", className, "SystemCreationClassName=CIM_SPComputerSystem",
                 "CreationClassName=" + className, "SystemName=" + system, "Name=" + name, property});
    }

    // Writes the event as soon as somebody reads the pipe.
    static void letHappen(const std::vector<std::string>& event) {
        for (int i = 0; i < 300; ++i) {
            if (phctl(event).status == 0)
                return;
            std::this_thread::sleep_for(50ms);
        }
        ADD_FAILURE() << "nobody reads the event pipe";
    }

    // The alerts that the monitor tells of while the events happen.
    static std::vector<json> monitor(unsigned alerts, const std::vector<std::vector<std::string>>& events) {
        auto ended = std::async(std::launch::async, [alerts] {
            return phctl({"monitor", "--json", "--count", std::to_string(alerts)});
        });
        for (const auto& event : events)
            letHappen(event);
        const Outcome outcome = ended.get();
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
    const std::string body = mail["body"];
    std::size_t place = 0;
    for (const char* line :
         {"Generated new instance for CIM_AlertIndication\r\n", "\r\nEventID\t\t:\t",
          "\r\nSensorName\t\t:\tCPU1 Temp(", "\r\nEventType\t\t:\tAsserted",
          "\r\nSensorType\t\t:\tTemperature", "\r\nDescription\t\t:\tUpper Critical - going high",
          "\r\nPerceivedSeverity\t:\t6 (Critical)", "\r\nAlertingManagedElement\t:\t1:",
          "\r\nMessageID\t\t:\t", "\r\nOwningEntity\t\t:\tTRZ", "\r\nEventTime\t\t:\t"}) {
        const std::size_t found = body.find(line, place);
        ASSERT_NE(found, std::string::npos) << line << "\nin\n" << body;
        place = found;
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

TEST_F(Monitor, leavesNoPipeAndNeedsOneThatItCanHave) {
    create("CIM_ListenerDestinationCIMXML", "CIMXML-31", "Destination=http://127.0.0.1:1/");
    monitor(1, {{"bmc", "event", "CPU1 Temp", "9", "--to", "cimxml:31"}});
    const auto pipe = sysroot->place("/tmp/SELEvent_fifo");
    EXPECT_FALSE(exists(pipe));
    EXPECT_THAT(fail({"bmc", "event", "CPU1 Temp", "9", "--to", "cimxml:31"}, 1), HasSubstr("SELEvent_fifo"));
    std::ofstream(pipe) << "a file";
    EXPECT_THAT(fail({"monitor"}, 1), HasSubstr("not a pipe"));
    std::filesystem::remove(pipe);
}

} // namespace
