// What phctl says to wrong usage, and where what it needs is missing.
#include "paths.h"
#include "phctl_fixture.h"
#include "sampling.h"

#include <cstring>
#include <iterator>
#include <platform/smash_db.h>
#include <sstream>

namespace {

using ph_test::Outcome;
using ph_test::phctl;
using testing::AllOf;
using testing::HasSubstr;

using Usage = ph_test::PhctlTest;

TEST_F(Usage, wrongCommandLinesEndWithStatus2AndSayWhatIsWrong) {
    const struct {
        std::vector<std::string> arguments;
        const char* reason;
    } cases[] = {
        {{}, "subcommand is required"},
        {{"eii"}, "there is no command eii; did you mean ei?"},
        {{"bmc", "creat", "x"}, "there is no command creat; did you mean create?"},
        {{"ei"}, "CLASS is required"},
        {{"ei", "CIM_Sensor", "CIM_Fan"}, "CIM_Fan"},
        {{"ei", "CIM_Sensor", "--jsn"}, "--jsn"},
        {{"ei", "CIM_Sensor.DeviceID=\"x\""}, "expected a class"},
        {{"gi", "CIM_Sensor.DeviceID=x"}, "single quotes"},
        {{"mi", "CIM_Sensor.DeviceID=\"x\"", "EnabledState"}, "expected Name=value"},
        {{"mi", "CIM_Sensor.DeviceID=\"x\"", "EnabledState=on"},
         "EnabledState: \"on\" is not a uint16 (0 to 65535)"},
        {{"ci", "CIM_Sensor", "OperationalStatus=1,x"}, "\"x\" is not a uint16"},
        {{"classes", "Sensor"}, "there is no class Sensor; did you mean CIM_Sensor?"},
        {{"cm", "CIM_ConcreteJob.InstanceID=\"1\"", "GetErrors", "--timeout", "soon"}, "--timeout"},
        {{"sync", "--virtual", "--local"}, "excludes"},
        {{"sync", "--user", "admin"}, "requires --lan"},
        {{"sync", "--lan", "host:0"}, "a port of 1 to 65535"},
        {{"sync", "--lan", "[::1"}, "[ADDRESS]"},
        {{"sync", "--lan", "host", "--workaround", "opensespriv"}, "did you mean opensesspriv?"},
        {{"sync", "--lan", "host", "--privilege", "god"}, "neither a number nor one of user, operator"},
        {{"sync", "--lan", "host", "--password-file", "/nowhere"}, "/nowhere"},
        {{"sync", "--lan", "host", "--password-env", "PH_NO_SUCH_VARIABLE"}, "PH_NO_SUCH_VARIABLE"},
        {{"sync", "--lan", "host", "--user", "a-name-with-more-than-31-characters"}, "longer than 31"},
        {{"bmc", "set-reading", "FAN1", "fast"}, "\"fast\" is no number"},
        {{"bmc", "set-reading", "FAN1", "256", "--raw"}, "0 to 255"},
        {{"bmc", "set-reading", "FAN1", "0x100"}, "0x00 to 0xFF"},
        {{"power", "up"}, "up not in {status,on,off"},
        {{"sel", "delete", "0"}, "no ID of a record"},
        {{"fru", "first"}, "neither `list` nor the ID"},
        {{"--bmc", "../up", "bmcs"}, "is no name"},
        {{"--bmc", "", "power", "off"}, "is no name"},
        {{"bmc", "set-states", "PSU1 Status", "15"}, "15"},
        {{"bmc", "fault", "get-sensor-readin", "--silent"}, "did you mean get-sensor-reading?"},
        {{"bmc", "fault", "0x04:0x100", "--silent"}, "NETFN:COMMAND"},
        {{"bmc", "fault", "get-sdr"}, "1 option"},
        {{"bmc", "fault", "get-sdr", "--silent", "--code", "1"}, "1 option"},
        {{"bmc", "fault", "get-sdr", "--silent", "--silently"}, "--silently"},
        {{"bmc", "show", "sensor"}, "no part sensor"},
        {{"bmc", "sel", "add"}, "name a sensor and a state offset, or give a --record"},
        {{"bmc", "sel", "add", "CPU1 Temp", "15"}, "OFFSET"},
        {{"bmc", "sel", "add", "CPU1 Temp", "1", "--record", "02"}, "excludes --record"},
        {{"bmc", "sel", "add", "--record", "02 00000000 2000 04 01 30 01 59 7d"}, "is no record: 14 bytes"},
        {{"bmc", "sel", "add", "--record", "02 00000000 2000 04 01 30 01 59 7d 78 0"}, "is no record"},
        {{"bmc", "sel", "fill", "0"}, "COUNT"},
        {{"bmc", "sel", "policy", "halt"}, "not in {stop,wrap}"},
        {{"bmc", "mail-server", "1", "--no-auth", "--auth"}, "--auth excludes --no-auth"},
        {{"sensors", "--watch", "0.05"}, "not in range 0.1"},
    };
    for (const auto& each : cases)
        EXPECT_THAT(fail(each.arguments, 2), HasSubstr(each.reason));
}

TEST_F(Usage, everyCommandHelpsWithAnExample) {
    std::istringstream commands(
        ",ei,ein,gi,mi,ci,di,cm,classes,sync,bmc,bmc create,bmc show,bmc set-reading,"
        "bmc set-states,bmc set-availability,bmc set-bond,bmc fault,bmc sel,"
        "bmc sel list,bmc sel add,bmc sel fill,bmc sel clear,bmc sel policy,"
        "bmc faults,bmc clear,bmcs,fru,power,sel,sel list,sel info,sel clear,sel delete");
    unsigned number = 0;
    for (std::string command; std::getline(commands, command, ',');) {
        if (number++ % sampling() != 0)
            continue;
        std::istringstream words(command);
        std::vector<std::string> arguments{std::istream_iterator<std::string>(words), {}};
        arguments.emplace_back("--help");
        EXPECT_THAT(succeed(arguments).out, HasSubstr("Example")) << command;
    }
    EXPECT_THAT(succeed({"--version"}).out, testing::MatchesRegex("phctl [0-9.]+\n"));
}

TEST_F(Usage, failuresOfTheMachineEndWithStatus1) {
    EXPECT_THAT(fail({"bmc", "create", paths::sampleServer}, 1), HasSubstr("bmc.state"));
    EXPECT_THAT(
        fail({"bmc", "create", "sample-sever", "--replace"}, 1),
        HasSubstr("no model sample-sever; did you mean sample-server?; installed are: sample-server"));
    EXPECT_THAT(fail({"bmc", "set-reading", "no such sensor", "1"}, 1), HasSubstr("no such sensor"));
    EXPECT_THAT(fail({"bmc", "show", "--state", "/nowhere.state"}, 1), HasSubstr("/nowhere.state"));
    EXPECT_THAT(fail({"ei", "CIM_Sensor", "--module", "/nowhere.so"}, 1), HasSubstr("/nowhere.so"));
}

TEST_F(Usage, errorsAreJsonWhereTheOutputIs) {
    const auto error = [](const std::vector<std::string>& arguments) {
        const Outcome outcome = phctl(arguments);
        EXPECT_EQ(outcome.out, "");
        const auto json = nlohmann::json::parse(outcome.err);
        EXPECT_EQ(json["status"], outcome.status);
        return json["error"].get<std::string>();
    };
    EXPECT_THAT(error({"ei", "CIM_Sensr", "--json"}), HasSubstr("does not serve the class"));
    EXPECT_THAT(error({"bmc", "show", "--state", "/nowhere.state", "--json"}), HasSubstr("/nowhere.state"));
    EXPECT_THAT(error({"ei", "--json"}), HasSubstr("CLASS is required"));
}

TEST_F(Usage, rawReadingsAreHexadecimal) {
    succeed({"bmc", "set-reading", "CPU1 Temp", "0x20"});
    const std::string raw = succeed({"bmc", "show", "sensors"}).out;
    succeed({"bmc", "set-reading", "CPU1 Temp", "33", "--raw"});
    EXPECT_NE(succeed({"bmc", "show", "sensors"}).out, raw);
    succeed({"bmc", "set-reading", "CPU1 Temp", "32", "--raw"});
    EXPECT_EQ(succeed({"bmc", "show", "sensors"}).out, raw);
}

TEST_F(Usage, aWrongRootIsTold) {
    setenv("PH_SYSROOT", "/nowhere", 1);
    EXPECT_EQ(fail({"ei", "CIM_Sensor"}, 2), "phctl: PH_SYSROOT names \"/nowhere\", which is no folder\n");
    setenv("PH_SYSROOT", sysroot->place("/").c_str(), 1);
}

// Nothing answers at port 9: were it asked, it would stay the reason.
TEST_F(Usage, anotherMachinesBmcIsNotKeptInThisOne) {
    setenv("PH_SYSROOT", "/", 1);
    EXPECT_THAT(fail({"sync", "--lan", "127.0.0.1:9", "--timeout", "1"}, 1),
                AllOf(HasSubstr("127.0.0.1:9"), HasSubstr("set PH_SYSROOT to a folder")));
    setenv("PH_SYSROOT", sysroot->place("/").c_str(), 1);
}

TEST_F(Usage, anAbsentBmcLeavesTheKnownOne) {
    const Outcome outcome = phctl({"sync", "--lan", "127.0.0.1:9", "--user", "admin", "--timeout", "1"});
    EXPECT_EQ(outcome.status, 1);
    EXPECT_THAT(outcome.err, HasSubstr("\nphctl: 127.0.0.1:9: "));
    EXPECT_EQ(phctl({"sync"}).status, 0); // the virtual one
}

TEST_F(Usage, visiblePasswordsAreWarnedOf) {
    const Outcome outcome = phctl({"sync", "--lan", "127.0.0.1:9", "--password", "secret", "--timeout", "1"});
    EXPECT_THAT(outcome.err,
                AllOf(HasSubstr("warning: other users can see a password"), Not(HasSubstr("secret"))));
}

// Every command goes to the BMC of the configuration, whatever PH_SYSROOT says.
TEST_F(Usage, configurationsKeepBmcsApart) {
    const std::string state = sysroot->place("/tmp/state");
    setenv("XDG_STATE_HOME", state.c_str(), 1);
    EXPECT_THAT(fail({"ei", "CIM_Sensor", "--bmc", "one"}, 2), HasSubstr("there is no configuration one"));
    EXPECT_EQ(phctl({"--bmc", "one", "sync", "--virtual", "/nowhere.state"}).status, 1);
    EXPECT_EQ(succeed({"bmcs", "--json"}).json().size(), 0u) << "of a BMC that is not there nothing stays";
    for (const char* name : {"one", "two.2"}) {
        succeed({"--bmc", name, "bmc", "create", paths::sampleServer});
        EXPECT_EQ(phctl({"--bmc", name, "sync"}).status, 0);
    }
    EXPECT_EQ(std::filesystem::status(state + "/provider-helper/one").permissions(),
              std::filesystem::perms::owner_all);
    succeed({"power", "off", "--bmc", "one"});
    EXPECT_THAT(succeed({"power", "--bmc", "one"}).out, testing::StartsWith("Power: off\n"));
    EXPECT_THAT(succeed({"--bmc=two.2", "power"}).out, testing::StartsWith("Power: on\n"));
    const auto listed = succeed({"bmcs", "--json"}).json();
    ASSERT_EQ(listed.size(), 2u);
    EXPECT_EQ(listed[0]["name"], "one");
    EXPECT_THAT(listed[1]["bmc"], HasSubstr("two.2/var/lib/virtual-bmc/bmc.state"));
    EXPECT_THAT(fail({"--bmc", "two", "ei", "CIM_Sensor"}, 2), HasSubstr("there are: one, two.2"));
    unsetenv("XDG_STATE_HOME");
}

class MissingParts : public SysrootFixture {
protected:
    static std::string fail(const std::vector<std::string>& arguments) {
        const Outcome outcome = phctl(arguments);
        EXPECT_EQ(outcome.status, 1);
        EXPECT_EQ(outcome.out, "");
        return outcome.err;
    }
    std::string database() const { return sysroot.place("/conf/smash.db"); }
    std::string machine() const { return sysroot.place("/var/lib/virtual-bmc/bmc.state"); }
};

TEST_F(MissingParts, areNamedWithTheCommandThatMakesThem) {
    EXPECT_THAT(fail({"ei", "CIM_Sensor"}),
                HasSubstr("there is no database " + database() + ": run `phctl sync`"));
    EXPECT_THAT(fail({"sync"}), HasSubstr(database() + " does not say where the BMC is"));
    EXPECT_THAT(fail({"sync", "--virtual"}),
                HasSubstr("there is no virtual BMC " + machine() + ": run `phctl bmc"));
    EXPECT_THAT(fail({"bmc", "show"}), HasSubstr("there is no virtual BMC " + machine()));
    ASSERT_EQ(phctl({"bmc", "create", paths::sampleServer}).status, 0);
    EXPECT_THAT(fail({"ei", "CIM_NumericSensor"}), HasSubstr("has no sensors: run `phctl sync` first"));
    std::filesystem::remove(machine());
    EXPECT_THAT(fail({"ei", "CIM_HostComputerSystem"}), HasSubstr("there is no virtual BMC " + machine()));
}

TEST_F(MissingParts, aBmcThatIsNotVirtualIsNotOperated) {
    ASSERT_EQ(phctl({"bmc", "create", paths::sampleServer}).status, 0);
    SMASH_DB_HANDLE handle = nullptr;
    ASSERT_EQ(smash_db_init(&handle), 0);
    IPMISessionInfo lan = {};
    std::strcpy(lan.address, "192.0.2.7");
    std::strcpy(lan.interfaceType, "0");
    EXPECT_EQ(db_set_ipmi_session_info(handle, &lan), 0);
    EXPECT_EQ(db_close(handle), 0);
    for (const char* command : {"show", "clear", "faults"})
        EXPECT_THAT(fail({"bmc", command}),
                    AllOf(HasSubstr("the BMC at 192.0.2.7"), HasSubstr("is not a virtual BMC")));
    EXPECT_EQ(phctl({"bmc", "show", "--state", machine()}).status, 0);
}

TEST_F(MissingParts, aNewRootHasRoomForJobs) {
    std::filesystem::remove_all(sysroot.place("/tmp"));
    ASSERT_EQ(phctl({"bmc", "create", paths::sampleServer}).status, 0);
    ASSERT_EQ(phctl({"sync"}).status, 0);
    std::string port = phctl({"ein", "CIM_EthernetPort"}).out;
    port.resize(port.find('\n'));
    const Outcome disabled = phctl({"cm", port, "RequestStateChange", "RequestedState=3"});
    EXPECT_EQ(disabled.status, 0) << disabled.err;
    EXPECT_THAT(disabled.out, testing::StartsWith("ReturnValue = 0\nJob = "));

    std::filesystem::remove_all(sysroot.place("/tmp"));
    const Outcome jobless = phctl({"cm", port, "RequestStateChange", "RequestedState=2"});
    EXPECT_EQ(jobless.status, 1);
    EXPECT_EQ(jobless.out, "ReturnValue = 2\n");
    EXPECT_THAT(jobless.err, HasSubstr("/tmp/method_jobs.db"));
}

TEST_F(MissingParts, damagedFilesAreNamed) {
    write("/conf/smash.db", "no database, but long enough to look at as one");
    EXPECT_THAT(fail({"ei", "CIM_Sensor"}), HasSubstr(database()));
    EXPECT_THAT(fail({"sync", "--local"}), testing::Not(testing::IsEmpty()));
    std::filesystem::create_directories(sysroot.place("/var/lib/virtual-bmc"));
    write("/var/lib/virtual-bmc/bmc.state", "{");
    EXPECT_THAT(fail({"bmc", "show", "--state", machine()}), HasSubstr(machine()));
}

TEST_F(MissingParts, aMachineElsewhereIsReachedThroughTheDatabase) {
    const std::string file = sysroot.place("/tmp/other.state");
    ASSERT_EQ(phctl({"bmc", "create", paths::sampleServer, "--state", file}).status, 0);
    EXPECT_FALSE(std::filesystem::exists(machine()));
    ASSERT_EQ(phctl({"sync"}).status, 0);
    ASSERT_EQ(phctl({"bmc", "set-reading", "CPU1 Temp", "60"}).status, 0);
    const Outcome sensors = phctl({"ei", "CIM_NumericSensor", "--properties", "ElementName,CurrentReading"});
    EXPECT_THAT(sensors.out, testing::ContainsRegex("CPU1 Temp\\(3\\.32\\.0\\) +6000"));
}

TEST_F(MissingParts, syncReportsRowsRemarksAndSparseProgress) {
    ASSERT_EQ(phctl({"bmc", "create", paths::sampleServer}).status, 0);
    ASSERT_EQ(phctl({"bmc", "fault", "get-device-guid", "--code", "0xC1"}).status, 0);
    const Outcome outcome = phctl({"sync", "--virtual", "--json"});
    ASSERT_EQ(outcome.status, 0) << outcome.err;
    const auto report = outcome.json();
    EXPECT_GE(report["numericSensors"].get<int>(), 40);
    EXPECT_GE(report["sensors"].get<int>(), 60);
    EXPECT_EQ(report["remarks"][0]["source"], "device GUID");
    EXPECT_EQ(report["remarks"][0]["dropped"], false);
    EXPECT_EQ(outcome.err, "") << "programs read it as errors";
    const Outcome plain = phctl({"sync"});
    EXPECT_THAT(plain.err, testing::ContainsRegex("Sensor data records: ([0-9]+) of [0-9]+\n"));
    EXPECT_LE(std::count(plain.err.begin(), plain.err.end(), '\n'), 20);
    EXPECT_THAT(plain.out, AllOf(HasSubstr("CIM_NumericSensor\n"), HasSubstr("Remark: device GUID: ")));
}

TEST_F(MissingParts, syncFailsForDroppedRecordsAndRepairsTheDatabase) {
    ASSERT_EQ(phctl({"bmc", "create", paths::sampleServer}).status, 0);
    ASSERT_EQ(phctl({"bmc", "fault", "read-fru-data", "--short", "1", "--skip", "3", "--calls", "1"}).status,
              0);
    Outcome outcome = phctl({"sync"});
    EXPECT_EQ(outcome.status, 1);
    EXPECT_THAT(outcome.out, testing::ContainsRegex("\nDropped: FRU device 0: "));
    EXPECT_EQ(phctl({"sync"}).status, 0);

    // Damage behind the first pages leaves the session row; damage of the header leaves nothing.
    {
        std::fstream raw(database(), std::ios::in | std::ios::out | std::ios::binary);
        const auto size = std::filesystem::file_size(database());
        raw.seekp(static_cast<std::streamoff>(size - size / 4));
        raw << std::string(static_cast<std::size_t>(size / 4), 'x');
    }
    outcome = phctl({"sync"});
    EXPECT_EQ(outcome.status, 0) << outcome.err;
    EXPECT_THAT(outcome.err, HasSubstr("it is now " + database() + ".damaged"));
    EXPECT_EQ(phctl({"ei", "CIM_NumericSensor"}).status, 0);
    write("/conf/smash.db", std::string(5000, 'x'));
    EXPECT_THAT(fail({"sync"}), HasSubstr("does not say where the BMC is"));
    EXPECT_EQ(phctl({"sync", "--virtual"}).status, 0);
    EXPECT_EQ(phctl({"sync"}).status, 0);
}

} // namespace
