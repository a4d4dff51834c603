// metrics: what Prometheus gets, and what becomes of a BMC that does not answer.
#include "elapsed.h"
#include "phctl_fixture.h"

namespace {

using ph_test::Outcome;
using ph_test::phctl;
using testing::HasSubstr;
using testing::Not;

using PhctlMetrics = ph_test::PhctlTest;

TEST_F(PhctlMetrics, areThoseOfTheMachine) {
    succeed({"bmc", "set-reading", "CPU1 Temp", "98"});
    succeed({"bmc", "set-reading", "CPU2 Temp", "86"});
    const std::string text = succeed({"metrics"}).out;
    for (const char* line :
         {"ipmi_temperature_state\\{id=\"[0-9]+\",name=\"CPU1 Temp\"\\} 2\n",
          "ipmi_temperature_state\\{id=\"[0-9]+\",name=\"CPU2 Temp\"\\} 1\n",
          "ipmi_sensor_value\\{id=\"[0-9]+\",name=\"Memory Bandwidth\",type=\"[^\"]+\"\\} 12020\n",
          "ipmi_sensors_unreadable 4\n"})
        EXPECT_THAT(text, testing::ContainsRegex(line));
    EXPECT_THAT(text, testing::EndsWith("# EOF\n"));
    EXPECT_THAT(text, Not(HasSubstr("dcmi"))); // the machine has none
}

TEST_F(PhctlMetrics, tellOfABmcThatIsSilent) {
    succeed({"bmc", "fault", "get-sensor-reading", "--silent"});
    Outcome outcome;
    EXPECT_LT(seconds([&] { outcome = phctl({"metrics", "--timeout", "1", "--format", "prometheus"}); }), 5);
    EXPECT_EQ(outcome.status, 0);
    EXPECT_THAT(outcome.out, HasSubstr("ipmi_up{collector=\"chassis\"} 1\n"));
    EXPECT_THAT(outcome.out, HasSubstr("ipmi_up{collector=\"ipmi\"} 0\n"));
    EXPECT_THAT(outcome.out, Not(HasSubstr("ipmi_temperature_celsius{")));
    EXPECT_THAT(outcome.err, HasSubstr("phctl: warning: ipmi: "));
}

} // namespace
