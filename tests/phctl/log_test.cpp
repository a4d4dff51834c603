// The event log: the virtual BMC's from outside, and its entries as they are read.
#include "paths.h"
#include "phctl_fixture.h"

#include <fstream>

namespace {

using ph_test::Outcome;
using ph_test::phctl;
using testing::AllOf;
using testing::ContainsRegex;
using testing::HasSubstr;

class Log : public ph_test::PhctlTest {
protected:
    void SetUp() override { succeed({"bmc", "create", paths::sampleServer, "--replace"}); }

    static void addSamples() {
        EXPECT_EQ(succeed({"bmc", "sel", "add", "CPU1 Temp", "9"}).out, "Added record 1\n");
        EXPECT_EQ(succeed({"bmc", "sel", "add", "PSU1 Status", "3", "--deasserted", "--json"}).json()["id"],
                  2);
        succeed({"bmc", "sel", "add", "--record", "02 702a3666 2000 04 01 FE 81 59 7d 78"});
        succeed({"bmc", "sel", "add", "--record", "E0 01020304 05060708 090a0b0c 0d"});
    }
};

TEST_F(Log, recordsAreListedInWords) {
    EXPECT_EQ(succeed({"bmc", "sel", "list"}).out, "The event log is empty\n");
    EXPECT_EQ(succeed({"bmc", "sel", "list", "--json"}).json(), nlohmann::json::array());
    addSamples();
    EXPECT_THAT(succeed({"bmc", "sel", "list"}).out,
                ContainsRegex(
                    "^ID +Time +Sensor +State +Event\n +1 +20[-0-9: ]+CPU1 Temp +asserted +Upper Critical"));
    const auto last = succeed({"bmc", "sel", "list", "--last", "2", "--json"}).json();
    ASSERT_EQ(last.size(), 2u);
    EXPECT_EQ(last[0], (nlohmann::json{{"id", 3},
                                       {"time", "2024-05-04 12:30:40"},
                                       {"sensor", "Temperature sensor FEh"},
                                       {"sensorType", "Temperature"},
                                       {"state", "deasserted"},
                                       {"event", "Upper Critical - going high"},
                                       {"record", "030002702a366620000401fe81597d78"}}));
    EXPECT_EQ(succeed({"bmc", "show", "sel", "--json"}).json()["sel"]["records"], 4);
    succeed({"bmc", "sel", "clear"});
    EXPECT_EQ(succeed({"bmc", "sel", "list", "--json"}).json().size(), 0u);
    EXPECT_THAT(fail({"bmc", "sel", "add", "no such sensor", "1"}, 1), HasSubstr("no such sensor"));
}

TEST_F(Log, entriesAreReadableBesideTheirProperties) {
    setenv("TZ", "EST5", 1);
    addSamples();
    EXPECT_THAT(
        succeed({"ei", "CIM_LogEntry", "--properties", "InstanceID,CreationTimeStamp,RecordData"}).out,
        AllOf(ContainsRegex("^InstanceID +CreationTimeStamp +Time +RecordData +Event\n"),
              ContainsRegex(" CPU1 Temp: Upper Critical - going high, asserted\n"),
              ContainsRegex(" PSU1 Status: Power Supply input lost \\(AC/DC\\), deasserted\n"),
              ContainsRegex("3  20240504123040.000000-300  2024-05-04 12:30:40 -05:00  \\*254")));
    const std::string entry = "CIM_LogEntry.InstanceID=\"3\"";
    EXPECT_THAT(succeed({"gi", entry}).out,
                AllOf(HasSubstr("= 20240504123040.000000-300  (2024-05-04 12:30:40 -05:00)\n"),
                      ContainsRegex(
                          "RecordData +=.*\"  \\(sensor FEh: Upper Critical - going high, deasserted\\)\n")));
    EXPECT_EQ(succeed({"gi", entry, "--json"}).json()["properties"]["CreationTimeStamp"],
              "20240504123040.000000-300");
    unsetenv("TZ");
}

TEST_F(Log, policyIsWhatAFullLogDoes) {
    const std::string model = sysroot->place("/tmp/model.json");
    std::ofstream(model) << R"({"device": {}, "sel": {"capacity": 4}})";
    succeed({"bmc", "create", model, "--replace"});
    EXPECT_EQ(succeed({"bmc", "sel", "policy"}).out, "stop\n");
    EXPECT_THAT(fail({"bmc", "sel", "fill", "5"}, 1), HasSubstr("full: 4 of 5 records were added"));
    EXPECT_THAT(fail({"bmc", "sel", "add", "--record", "e00102030405060708090a0b0c0d"}, 1),
                HasSubstr("full"));
    succeed({"bmc", "sel", "policy", "wrap"});
    EXPECT_EQ(succeed({"bmc", "sel", "policy", "--json"}).json()["policy"], "wrap");
    EXPECT_EQ(succeed({"bmc", "sel", "fill", "5", "--json"}).json()["added"], 5);
}

TEST_F(Log, progressIsShownWhileALongLogIsRead) {
    succeed({"bmc", "sel", "fill", "1001"});
    const Outcome outcome = phctl({"ei", "CIM_LogEntry", "--json"});
    EXPECT_EQ(outcome.json().size(), 1001u);
    EXPECT_THAT(outcome.err, testing::StartsWith("Event log: 100 of 1001\n"));
    // On a terminal it is one line, which is gone before the output.
    const auto onTerminal = ph_test::phctlOnTerminal({"ein", "CIM_LogEntry"}, 80);
    EXPECT_THAT(onTerminal.out, HasSubstr("Event log: 1001 of 1001\x1B[Kroot/cimv2:CIM_LogEntry"));
}

} // namespace
