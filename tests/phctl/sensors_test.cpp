// sensors: the table of all sensors, its choices, and computed readings beside those of CIM.
#include "phctl_fixture.h"

#include <cstdlib>

namespace {

using ph_test::phctl;
using testing::ElementsAre;
using testing::HasSubstr;
using testing::Not;

class PhctlSensors : public ph_test::PhctlTest {
protected:
    static std::vector<std::string> names(std::vector<std::string> arguments) {
        arguments.insert(arguments.begin(), "sensors");
        arguments.emplace_back("--json");
        std::vector<std::string> found;
        for (const auto& sensor : succeed(arguments).json())
            found.push_back(sensor["name"]);
        return found;
    }
};

TEST_F(PhctlSensors, bothKindsAreInOneTableWithWhatCannotBeRead) {
    succeed({"bmc", "set-reading", "CPU1 Temp", "98"});
    succeed({"bmc", "set-states", "Fan Redundancy", "1"});
    const std::string table = succeed({"sensors"}).out;
    for (const char* line :
         {"CPU1 Temp +98 +degrees C +critical +Upper Non-Critical, Upper Critical .* 85 +95 +100",
          "Memory Bandwidth +[0-9]+ +megabyte per s +nominal", "Fan Duty +45 +percent +nominal",
          "Fan Redundancy +- +- +critical +Redundancy Lost", "OCP Temp +- .* na +reading unavailable"})
        EXPECT_THAT(table, testing::ContainsRegex(line));
    EXPECT_THAT(
        table,
        HasSubstr("4 sensors of 102 cannot be read: 2 reading unavailable, 2 requested sensor, data or "
                  "record not present (CBh)\n"));
    EXPECT_THAT(table, HasSubstr("States are computed"));
    EXPECT_THAT(table, Not(HasSubstr("\033"))); // colours are for terminals
}

TEST_F(PhctlSensors, areChosenByNameTypeAndState) {
    succeed({"bmc", "set-reading", "CPU1 Temp", "98"});
    succeed({"bmc", "set-reading", "CPU2 Temp", "86"});
    EXPECT_THAT(names({"cpu?*", "--type", "temperature", "--state", "critical,warning"}),
                ElementsAre("CPU1 Temp", "CPU2 Temp"));
    EXPECT_THAT(names({"--type", "power-supply,system-event", "--state", "nominal"}),
                ElementsAre("PSU1 Pin", "PSU2 Pin", "Host Readiness", "PS Redundancy", "PSU1 Status",
                            "PSU2 Status", "System Event"));
    EXPECT_THAT(fail({"sensors", "--type", "temprature"}, 2), HasSubstr("did you mean Temperature"));
    EXPECT_THAT(fail({"sensors", "--state", "bad"}, 2), HasSubstr("nominal, warning, critical, na"));
    EXPECT_THAT(fail({"sensors", "CPU9*"}, 2), HasSubstr("there is no sensor CPU9*"));
}

TEST_F(PhctlSensors, areColouredOnATerminalUnlessTheUserDoesNotWantIt) {
    succeed({"bmc", "set-reading", "CPU1 Temp", "98"});
    const std::vector<std::string> arguments = {"sensors", "CPU1 Temp"};
    EXPECT_THAT(ph_test::phctlOnTerminal(arguments, 120).out, HasSubstr("\033[31mCPU1 Temp"));
    setenv("NO_COLOR", "1", 1);
    EXPECT_THAT(ph_test::phctlOnTerminal(arguments, 120).out, Not(HasSubstr("\033")));
    unsetenv("NO_COLOR");
}

TEST_F(PhctlSensors, watchGoesOnOverABmcThatDoesNotAnswer) {
    // The second of three readings gets no answer.
    succeed({"bmc", "fault", "get-sensor-reading", "--silent", "--skip", "1", "--calls", "1"});
    const auto outcome = phctl({"sensors", "CPU1 Temp", "--watch", "0.1", "--count", "3", "--timeout", "1"});
    EXPECT_EQ(outcome.status, 0);
    EXPECT_THAT(outcome.err, HasSubstr("no answer in time"));
    std::size_t tables = 0;
    for (std::size_t at = 0; (at = outcome.out.find("Sensor  ", at)) != std::string::npos; ++at)
        ++tables;
    EXPECT_EQ(tables, 2u) << outcome.out;
}

// CIM says "Normal" above an upper threshold, has no percentage, and says nothing of redundancy that was lost.
TEST_F(PhctlSensors, areComputedBesideWhatCimSays) {
    succeed({"bmc", "set-reading", "CPU1 Temp", "98"});
    succeed({"bmc", "set-states", "Fan Redundancy", "1"});
    const auto cpu = numericSensor("CPU1 Temp");
    EXPECT_EQ(cpu["properties"]["CurrentState"], "Normal");
    EXPECT_EQ(cpu["computed"]["state"], "critical");
    EXPECT_EQ(cpu["computed"]["reading"], 98);
    EXPECT_EQ(numericSensor("Fan Duty")["computed"]["unit"], "percent");
    const auto fans = instance("CIM_Sensor", "ElementName", "Fan Redundancy(");
    EXPECT_NE(fans["properties"]["CurrentState"], "Redundancy Lost");
    EXPECT_EQ(fans["computed"]["events"], nlohmann::json({"Redundancy Lost"}));

    const std::string printed = succeed({"gi", cpu["path"]}).out;
    EXPECT_THAT(printed,
                testing::ContainsRegex("CurrentState += \"Normal\"  \\(critical: Upper Non-Critical, Upper "
                                       "Critical\\)\n"));
    EXPECT_THAT(printed, testing::ContainsRegex("UpperThresholdCritical += 9500  \\(95 degrees C\\)\n"));
    const std::string table =
        succeed({"ei", "CIM_NumericSensor", "--properties", "ElementName,CurrentReading,CurrentState"}).out;
    EXPECT_THAT(table, testing::ContainsRegex("Fan Duty.* 4500 +45 percent +Normal +nominal"));
}

} // namespace
