// What the BMC makes of the host's operating system.
#include "managed_bmc.h"
#include "provider_helper/software.h"

namespace {

using testing::ElementsAre;

constexpr char hostModel[] = R"({
    "systemInfo": {"primaryOsName": "Debian GNU/Linux", "osName": "Example OS", "osVersion": "12.8"},
    "chassis": {"softOffDelay": 0},
    "sensors": [
        {"number": 7, "name": "OS Boot", "type": "Base OS Boot", "readingType": "sensor-specific", "record": "compact",
         "supportedStates": [1, 10]},
        {"number": 8, "name": "OS Stop", "type": "OS Stop", "readingType": "sensor-specific", "record": "compact",
         "supportedStates": [0, 1, 2, 3, 4, 5]},
        {"number": 9, "name": "ACPI", "type": "System ACPI Power State", "readingType": "sensor-specific",
         "record": "compact", "supportedStates": [0, 3, 4]}]})";

class OperatingSystem : public ManagedBmc {
protected:
    OperatingSystem() : ManagedBmc(hostModel) {}

    // EnabledState, OperationalStatus, HealthState.
    std::vector<std::string> state() const {
        const auto instance = only(systems);
        return {textOf(instance, "EnabledState"), textOf(instance, "OperationalStatus"),
                textOf(instance, "HealthState")};
    }
    void switchHost(bool on) const {
        auto bmcTransport = ipmi::openTransport(virtualBmc(stateFile));
        std::uint8_t answer[16];
        bmcTransport->exchange(0x00, 0x02, std::vector<std::uint8_t>{on ? std::uint8_t{1} : std::uint8_t{0}},
                               answer);
    }
    broker::Reply request(std::uint16_t wanted) {
        return systems.invoke(only(systems).path, "RequestStateChange", {{"RequestedState", number(wanted)}});
    }

    const ClassRequests systems{broker, PH_CLASS_FUNCTIONS(OperatingSystem)};
};

TEST_F(OperatingSystem, isNamedByTheOneThatRuns) {
    auto system = only(systems);
    EXPECT_EQ(textOf(system, "ElementName"), "Example OS");
    EXPECT_EQ(textOf(system, "Version"), "12.8");
    EXPECT_EQ(textOf(system, "OSType"), "1");
    EXPECT_EQ(textOf(system, "OtherTypeDescription"), "Example OS");
    switchHost(false);
    system = only(systems);
    EXPECT_EQ(textOf(system, "ElementName"), "Debian GNU/Linux");
    EXPECT_EQ(textOf(system, "Version"), "<none>");
    EXPECT_EQ(textOf(system, "OSType"), "36");
    EXPECT_EQ(textOf(system, "AvailableRequestedStates"), "<none>");
}

TEST_F(OperatingSystem, isAsItsSensorsSay) {
    const struct {
        const char* sensor;
        std::uint16_t states;
        std::vector<std::string> expected;
    } cases[] = {
        {"OS Boot", 1 << 1, {"2", "{2}", "5"}},
        {"OS Boot", 1 << 10, {"2", "{6}", "20"}},
        {"OS Stop", 1 << 1, {"2", "{6}", "25"}},
        {"OS Stop", 1 << 2, {"2", "{10}", "5"}},
        {"OS Stop", 1 << 3, {"4", "{9}", "5"}},
        {"OS Stop", 1 << 5 | 1 << 0, {"2", "{6}", "25"}}, // the worst
        {"ACPI", 1 << 3, {"2", "{2}", "5"}},              // the command says S0
    };
    for (const auto& item : cases) {
        SCOPED_TRACE(std::string(item.sensor) + ' ' + std::to_string(item.states));
        bmc().setStates(item.sensor, item.states);
        EXPECT_EQ(state(), item.expected);
        bmc().setAvailability(item.sensor, vbmc::Availability::Unreadable);
        EXPECT_EQ(state(), (std::vector<std::string>{"2", "{2}", "5"}));
        bmc().setAvailability(item.sensor, vbmc::Availability::Available);
        bmc().setStates(item.sensor, 0);
    }
}

TEST_F(OperatingSystem, sleepsAndStopsWithTheHost) {
    std::uint8_t acpi = 0;
    PH_STAND_IN(CIM_GetACPIPowerState,
                [&](auto*, std::uint8_t* system, auto*, int) { return *system = acpi, 0; });
    for (const auto& [acpiState, on, off] : {std::tuple{0, "2", "3"},
                                             {1, "9", "3"},
                                             {3, "9", "3"},
                                             {4, "2", "6"},
                                             {8, "9", "3"},
                                             {0x20, "2", "3"}}) {
        acpi = static_cast<std::uint8_t>(acpiState);
        switchHost(true);
        EXPECT_EQ(state()[0], on) << acpiState;
        switchHost(false);
        EXPECT_THAT(state(), ElementsAre(off, "{10}", "5")) << acpiState;
    }
    acpi = CIM_ACPI_UNKNOWN;
    switchHost(true);
    bmc().setStates("ACPI", 1 << 3);
    EXPECT_EQ(state()[0], "9") << "the sensor tells where the command does not";
}

TEST_F(OperatingSystem, isUnknownWithoutTheCommands) {
    for (const auto command :
         {ipmi::command::getChassisStatus, ipmi::command::getAcpiPowerState, ipmi::command::getSystemInfo})
        bmc().addFault({.netFn = command.netFn, .command = command.number, .value = 0xC1});
    const auto system = only(systems);
    EXPECT_EQ(textOf(system, "ElementName"), "Operating System");
    EXPECT_EQ(textOf(system, "Version"), "<none>");
    EXPECT_EQ(textOf(system, "OSType"), "0");
    EXPECT_THAT(state(), ElementsAre("0", "{0}", "0"));
}

TEST_F(OperatingSystem, shutsDownInGoodOrder) {
    for (const std::uint16_t wanted : {std::uint16_t{3}, std::uint16_t{4}}) {
        switchHost(true);
        bmc().recordMessages(10);
        const auto reply = request(wanted);
        EXPECT_THAT(reply, Returns(0));
        EXPECT_EQ(jobOf(reply), Job::completed("OperatingSystem_RequestStateChange"));
        EXPECT_THAT(requests(ipmi::command::chassisControl), ElementsAre(std::vector<std::uint8_t>{5}));
        EXPECT_EQ(state()[0], "3");
    }
    EXPECT_THAT(request(4), Returns(2)) << "the host is off";
    switchHost(true);
    bmc().recordMessages(10);
    EXPECT_THAT(request(11), Returns(2));
    EXPECT_THAT(requests(ipmi::command::chassisControl), testing::IsEmpty());
}

} // namespace
