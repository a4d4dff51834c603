// Requests through phctl to the virtual BMC.
#include "phctl_fixture.h"

#include <sstream>

namespace {

using ph_test::Outcome;
using ph_test::phctl;
using testing::AllOf;
using testing::ContainsRegex;
using testing::HasSubstr;
using testing::StartsWith;

using Requests = ph_test::PhctlTest;

std::vector<std::string> lines(const std::string& text) {
    std::vector<std::string> all;
    std::istringstream stream(text);
    for (std::string line; std::getline(stream, line);)
        all.push_back(line);
    return all;
}

TEST_F(Requests, namesAndInstancesAgree) {
    const auto instances = succeed({"enumerate-instances", "CIM_HostComputerSystem", "--json"}).json();
    ASSERT_EQ(instances.size(), 1u);
    const auto path = instances[0]["path"].get<std::string>();
    EXPECT_EQ(succeed({"ein", "CIM_HostComputerSystem"}).out, path + '\n');
    EXPECT_EQ(succeed({"ein", "cim_hostcomputersystem", "--json"}).json(), nlohmann::json({path}));
    EXPECT_EQ(succeed({"get-instance", path, "--json"}).json(), instances[0]);
    EXPECT_EQ(instances[0]["properties"]["EnabledState"], 2);
    EXPECT_THAT(succeed({"gi", path}).out, AllOf(StartsWith(path + "\n  Name "), HasSubstr(" = {2}\n")));
}

TEST_F(Requests, showThePowerBesideTheHost) {
    const auto path = instance("CIM_HostComputerSystem", "Name", "")["path"].get<std::string>();
    EXPECT_THAT(succeed({"ei", "CIM_HostComputerSystem"}).out, testing::EndsWith("\nPower: On\n"));
    EXPECT_THAT(succeed({"ei", "CIM_HostComputerSystem", "--properties", "EnabledState"}).out,
                testing::Not(HasSubstr("Power")));
    const auto service = instance("CIM_PowerManagementService", "Name", "Host")["path"].get<std::string>();
    succeed({"cm", service, "RequestPowerStateChange", "PowerState=6", "ManagedElement=" + path});
    EXPECT_THAT(succeed({"gi", path}).out, testing::EndsWith("\nPower: Off - Soft\n"));
    succeed({"bmc", "fault", "get-chassis-status", "--code", "0xC1"});
    EXPECT_THAT(succeed({"gi", path}).out, testing::Not(HasSubstr("Power:")));
    succeed({"cm", service, "RequestPowerStateChange", "PowerState=2", "ManagedElement=" + path});
}

TEST_F(Requests, messagesOfProvidersEndInTheLine) {
    const auto accounts = lines(succeed({"ein", "CIM_Account"}).out);
    EXPECT_EQ(fail({"mi", accounts.at(1), "UserID="}, 1),
              "phctl: CMPI_RC_ERR_FAILED (1): Invalid property values\n");
}

TEST_F(Requests, aBondIsOnePort) {
    EXPECT_EQ(lines(succeed({"ein", "CIM_EthernetPort"}).out).size(), 2u);
    succeed({"bmc", "set-bond", "on"});
    const auto bonded = lines(succeed({"ein", "CIM_EthernetPort"}).out);
    EXPECT_THAT(bonded, testing::ElementsAre(HasSubstr("bond0")));
    succeed({"cm", bonded.at(0), "RequestStateChange", "RequestedState=3"});
    EXPECT_EQ(lines(succeed({"ein", "CIM_EthernetPort"}).out).size(), 2u);
    EXPECT_EQ(succeed({"bmc", "show", "interfaces", "--json"}).json()["interfaces"]["bond"], false);
}

// The list goes down to the provider: what it does not name is not there.
TEST_F(Requests, propertyListsGoDownToTheProvider) {
    const auto one =
        succeed({"ei", "CIM_Sensor", "--properties", "CurrentState", "--json"}).json()[0]["properties"];
    EXPECT_TRUE(one.contains("CurrentState"));
    EXPECT_FALSE(one.contains("ElementName"));
}

TEST_F(Requests, unknownPropertiesAreToldAndTheRestIsServed) {
    const Outcome outcome = phctl({"ei", "CIM_Sensor", "--properties", "CurentState"});
    EXPECT_EQ(outcome.status, 0);
    EXPECT_THAT(outcome.err,
                StartsWith("phctl: warning: CIM_Sensor has no property CurentState; did you mean "
                           "CurrentState?\nphctl: warning: 1 sensor could not be read"));
    EXPECT_THAT(outcome.out, StartsWith("CurentState\n-\n"));
}

TEST_F(Requests, tablesAreAsWideAsTheTerminal) {
    std::vector<std::string> command = {"ei", "CIM_Chassis", "--properties",
                                        "Manufacturer,Model,ElementName,Tag,SerialNumber"};
    const auto widest = [&] {
        const auto onTerminal = ph_test::phctlOnTerminal(command, 70);
        EXPECT_EQ(onTerminal.status, 0);
        std::size_t width = 0;
        for (const std::string& line : lines(onTerminal.out))
            width = std::max(width, line.size());
        return width;
    };
    EXPECT_LE(widest(), 70u);
    command.emplace_back("--wide");
    EXPECT_GT(widest(), 70u);
}

TEST_F(Requests, changedSensorsAreSeen) {
    succeed({"bmc", "set-reading", "Inlet Temp", "3"});
    const auto sensor = numericSensor("Inlet Temp");
    EXPECT_EQ(sensor["properties"]["CurrentReading"], 300);
    EXPECT_THAT(succeed({"gi", sensor["path"]}).out, HasSubstr("= 300  (3 degrees C)\n"));
    succeed({"bmc", "set-reading", "1", "--raw", "24"});
    EXPECT_EQ(numericSensor("Inlet Temp")["properties"]["CurrentReading"], 2400);
    const auto failure = [] {
        return instance("CIM_Sensor", "DeviceID", "32.65.0.8.6f.1:")["properties"]["CurrentState"];
    };
    succeed({"bmc", "set-states", "PSU1 Status", "0", "1"});
    EXPECT_EQ(failure(), "Power Supply Failure detected Assert");
    succeed({"bmc", "set-states", "PSU1 Status", "0"});
    EXPECT_EQ(failure(), "Power Supply Failure detected Deassert");
    for (const auto& [availability, state] : {std::pair{"unavailable", 5}, {"available", 2}}) {
        succeed({"bmc", "set-availability", "FAN1", availability});
        EXPECT_EQ(numericSensor("FAN1")["properties"]["EnabledState"], state);
    }
}

TEST_F(Requests, faultsStrikeUntilTheyAreCleared) {
    const auto served = [] { return succeed({"ei", "CIM_NumericSensor", "--json"}).json().size(); };
    const auto all = served();
    succeed({"bmc", "fault", "get-sensor-reading", "--code", "0xCE", "--skip", "1", "--calls", "1"});
    EXPECT_EQ(served(), all - 1);
    EXPECT_EQ(succeed({"bmc", "faults"}).out, "No faults\n");
    succeed({"bmc", "fault", "0x04:0x2D", "--short", "2"});
    EXPECT_EQ(served(), 0u);
    EXPECT_THAT(phctl({"ei", "CIM_NumericSensor"}).err, HasSubstr("47 sensors could not be read"));
    EXPECT_THAT(succeed({"bmc", "faults"}).out,
                ContainsRegex("get-sensor-reading \\(0x04:0x2D\\) +answer cut to bytes: 2 +0 +all"));
    EXPECT_EQ(succeed({"bmc", "faults", "--json"}).json()[0]["kind"], "shortAnswer");
    succeed({"bmc", "clear"});
    EXPECT_EQ(served(), all);
}

// A class and a name are enough where they mean one instance.
TEST_F(Requests, instancesAreNamed) {
    const auto one = [](const std::vector<std::string>& words) {
        std::vector<std::string> command = {"gi"};
        command.insert(command.end(), words.begin(), words.end());
        command.emplace_back("--json");
        return succeed(command).json();
    };
    const auto sensor = one({"CIM_NumericSensor", "CPU1 Temp"});
    EXPECT_EQ(sensor["properties"]["ElementName"], "CPU1 Temp(3.32.0)");
    EXPECT_EQ(one({sensor["path"]}), sensor);
    EXPECT_EQ(one({"CIM_NumericSensor.DeviceID=\"*:CPU1 T*\""})[0], sensor);
    EXPECT_EQ(one({"CIM_NumericSensor", "FAN?"}).size(), 6u);
    EXPECT_EQ(one({"CIM_RegisteredProfile", "DSP1009"})["properties"]["RegisteredName"], "Sensors");
    const std::pair<std::vector<std::string>, const char*> cases[] = {
        {{"gi", "CIM_NumericSensor", "CPU1 Tmp"}, "did you mean CPU1 Temp?"},
        {{"di", "CIM_NumericSensor", "FAN*"}, "8 instances are meant, where one is wanted: FAN1, FAN2"},
        {{"gi", "CIM_NumericSensor.DeviceID=\"nothing*\""}, "has no instance with such keys"},
    };
    for (const auto& [arguments, error] : cases)
        EXPECT_THAT(fail(arguments, 1), HasSubstr(error));
    EXPECT_THAT(succeed({"cm", "CIM_HostComputerSystem", "*", "RequestStateChange", "RequestedState=2"}).out,
                HasSubstr("ReturnValue = "));
    EXPECT_THAT(succeed({"ei", "CIM_HostComputerSystem", "--words"}).out,
                HasSubstr("HealthState             = 5 (OK)"));
}

TEST_F(Requests, timeLimitsEndACommand) {
    succeed({"bmc", "fault", "get-sensor-reading", "--late", "400"});
    EXPECT_THAT(fail({"ei", "CIM_NumericSensor", "--timeout", "1"}, 1), HasSubstr("1 s (--timeout)"));
}

TEST_F(Requests, refusalsNameStatusAndReason) {
    const auto host = lines(succeed({"ein", "CIM_HostComputerSystem"}).out).at(0);
    const std::tuple<std::vector<std::string>, const char*> cases[] = {
        {{"mi", host, "EnabledState=3"}, "phctl: CMPI_RC_ERR_NOT_SUPPORTED (7): SetInstance not supported\n"},
        {{"mi", host, "EnabldState=3"},
         "phctl: CMPI_RC_ERR_NOT_SUPPORTED (7): SetInstance not supported (CIM_HostComputerSystem has no "
         "property "
         "EnabldState; did you mean EnabledState?)\n"},
        {{"cm", "CIM_ConcreteJob.InstanceID=\"1\"", "GetErors"},
         "phctl: CMPI_RC_ERR_METHOD_NOT_FOUND (17): No such method available (CIM_ConcreteJob has no method "
         "GetErors; "
         "did you mean GetErrors?)\n"},
        {{"ei", "CIM_Senser"},
         "phctl: CMPI_RC_ERR_INVALID_CLASS (5): This provider does not serve the class; did you mean "
         "CIM_Sensor?\n"},
    };
    for (const auto& [arguments, error] : cases)
        EXPECT_EQ(fail(arguments, 1), error);
    EXPECT_THAT(fail({"gi", "CIM_HostComputerSystem.Name=\"o'brien\",CreationClassName=\"CIM_X\""}, 1),
                StartsWith("phctl: CMPI_RC_ERR_FAILED (1): Failed to Get Instance"));
}

TEST_F(Requests, classesAreDescribed) {
    EXPECT_THAT(succeed({"classes"}).out, ContainsRegex("CIM_NumericSensor +CIM_Sensor +get"));
    const auto job = succeed({"classes", "cim_concretejob", "--json"}).json();
    EXPECT_EQ(job["properties"][0], (nlohmann::json{{"name", "InstanceID"},
                                                    {"type", "string"},
                                                    {"array", false},
                                                    {"key", true},
                                                    {"origin", "CIM_ManagedElement"}}));
    EXPECT_EQ(job["properties"][3]["values"]["7"], "Completed"); // JobState
    EXPECT_EQ(job["methods"][0]["name"], "GetErrors");
    EXPECT_THAT(succeed({"classes", "CIM_ConcreteJob"}).out,
                AllOf(ContainsRegex("InstanceID +string +key"),
                      ContainsRegex("OperationalStatus +uint16\\[\\]"),
                      HasSubstr("Method: uint32 GetErrors(out instance[] Errors (CIM_Error))\n")));
}

} // namespace
