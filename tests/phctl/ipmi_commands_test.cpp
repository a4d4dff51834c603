// What is asked of a BMC over IPMI, beside the providers: its power, its event log, its FRU devices.
#include "paths.h"
#include "phctl_fixture.h"

namespace {

using ph_test::Outcome;
using ph_test::phctl;
using testing::AllOf;
using testing::ContainsRegex;
using testing::HasSubstr;

class IpmiCommands : public ph_test::PhctlTest {
protected:
    void SetUp() override { succeed({"bmc", "create", paths::sampleServer, "--replace"}); }
};

TEST_F(IpmiCommands, powerIsToldAndChanged) {
    EXPECT_THAT(succeed({"power"}).out, testing::StartsWith("Power: on\n"));
    EXPECT_EQ(succeed({"power", "off"}).out, "The BMC took \"off\"\nPower: off\n");
    EXPECT_EQ(succeed({"power", "status", "--json"}).json()["power"], "off");
    EXPECT_EQ(fail({"power", "cycle"}, 1), "phctl: the BMC refuses \"cycle\" while the host is off\n");
    EXPECT_EQ(succeed({"power", "on", "--json"}).json(),
              (nlohmann::json{{"action", "on"}, {"power", "on"}, {"reached", true}}));
    EXPECT_EQ(succeed({"power", "cycle"}).out, "The BMC took \"cycle\"\nPower: on\n");
    // The machine's operating system takes its time.
    EXPECT_EQ(phctl({"power", "soft", "--wait", "0"}).status, 1);
    EXPECT_EQ(succeed({"power", "soft", "--wait", "20", "--json"}).json()["reached"], true);
    EXPECT_EQ(succeed({"bmc", "show", "chassis", "--json"}).json()["chassis"]["power"], "off");
}

TEST_F(IpmiCommands, theEventLogIsListedCountedAndCleared) {
    EXPECT_EQ(succeed({"sel", "list"}).out, "The event log is empty\n");
    for (const char* record : {"02 43000000 2000 04 01 FE 81 52 7d 78", "C0 702a3666 010203 0405060708 09",
                               "E0 01020304 05060708 090a0b0c 0d"})
        succeed({"bmc", "sel", "add", "--record", record});
    const std::string list = succeed({"sel", "list"}).out;
    EXPECT_THAT(
        list,
        AllOf(
            ContainsRegex(
                " 1 +Pre-Init \\+0:01:07 +Temperature sensor FEh +deasserted +Lower Critical - going low"),
            ContainsRegex(" 2 +2024-05-04 12:30:40 +- +- +OEM record C0h of manufacturer 030201h: 04 05 06"),
            ContainsRegex(" 3 +- +- +- +OEM record E0h: 01 02 03 04 05 06 07 08 09 0A 0B 0C 0D")));
    EXPECT_EQ(list, succeed({"bmc", "sel", "list"}).out);
    EXPECT_EQ(succeed({"sel", "info", "--json"}).json()["entries"], 3);
    EXPECT_EQ(succeed({"sel", "delete", "2"}).out, "Deleted record 2\n");
    EXPECT_THAT(fail({"sel", "delete", "2"}, 1), HasSubstr("the event log has no record 2"));
    EXPECT_EQ(succeed({"sel", "list", "--last", "1", "--json"}).json()[0]["id"], 3);
    EXPECT_THAT(succeed({"sel", "clear"}).out, HasSubstr("it has 0 records now"));
    EXPECT_EQ(succeed({"bmc", "sel", "list", "--json"}).json().size(), 0u);
}

// The database is not that of a BMC which options name: its sensors are read from itself.
TEST_F(IpmiCommands, sensorsOfEventsAreThoseOfTheBmcThatIsAsked) {
    const std::string other = sysroot->place("/tmp/other.state");
    const std::string model = sysroot->place("/tmp/other.json");
    std::ofstream(model)
        << R"({"device": {}, "sensors": [{"number": 1, "name": "Elsewhere", "analog": {}}]})";
    succeed({"bmc", "create", model, "--state", other});
    succeed({"bmc", "sel", "add", "Elsewhere", "9", "--state", other});
    EXPECT_EQ(succeed({"sel", "list", "--virtual", other, "--json"}).json()[0]["sensor"], "Elsewhere");
}

TEST_F(IpmiCommands, frusAreReadFieldByField) {
    const auto first = succeed({"fru", "0", "--json"}).json()[0];
    EXPECT_EQ(first["problems"].size(), 0u);
    const auto model = nlohmann::json::parse(std::ifstream(paths::sampleServer))["frus"][0];
    std::size_t found = 0;
    for (const auto& field : first["fields"])
        found += field["area"] == "Board" && field["name"] == "Serial number" &&
                 field["value"] == model["board"]["serialNumber"];
    EXPECT_EQ(found, 1u);
    EXPECT_THAT(succeed({"fru"}).out, HasSubstr("  Board Serial number: "));
    EXPECT_THAT(succeed({"fru", "list"}).out, ContainsRegex("^ID +Name +Manufacturer"));
    const Outcome absent = phctl({"fru", "77"});
    EXPECT_EQ(absent.status, 1);
    EXPECT_THAT(absent.out, HasSubstr("  Problem: "));
}

} // namespace
