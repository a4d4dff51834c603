// The watchdog, against the timer of the virtual BMC.
#include "managed_bmc.h"
#include "provider_helper/watchdog.h"

namespace {

using testing::ElementsAre;
using testing::IsEmpty;

constexpr char ofTheHost[] =
    R"({"watchdog": {"use": "os", "action": "hard-reset", "interval": 6000, "expired": 4,
    "doesNotLog": true, "interrupt": "messaging", "interruptSeconds": 30}})";

class Watchdog : public ManagedBmc {
protected:
    explicit Watchdog(const std::string& model = ofTheHost) : ManagedBmc(model) {}

    nlohmann::ordered_json timer() const {
        auto json = bmc().describe()["watchdog"];
        json.erase("remaining");
        return json;
    }
    broker::Reply requestState(int state) const {
        return watchdogs.invoke(only(watchdogs).path, "RequestStateChange",
                                {{"RequestedState", number(state)}});
    }
    broker::Reply keepAlive() const { return watchdogs.invoke(only(watchdogs).path, "KeepAlive"); }
    broker::Reply modify(const broker::NamedValues& values) const {
        auto instance = only(watchdogs);
        for (const auto& [name, value] : values) {
            std::erase_if(instance.properties, [&](const auto& each) { return each.name == name; });
            instance.properties.push_back({name, value});
        }
        return watchdogs.modify(instance);
    }
    std::vector<std::vector<std::uint8_t>> settingsWritten() const {
        return requests(ipmi::command::setWatchdogTimer);
    }
    std::size_t starts() const { return requests(ipmi::command::resetWatchdogTimer).size(); }

    const ClassRequests watchdogs{broker, PH_CLASS_FUNCTIONS(Watchdog)};
};

TEST_F(Watchdog, isTheTimerInCimsUnits) {
    EXPECT_THAT(propertiesOf(only(watchdogs)),
                ElementsAre("SystemCreationClassName=CIM_HostComputerSystem",
                            "CreationClassName=CIM_Watchdog", "SystemName=server", "DeviceID=Watchdog1",
                            "ElementName=Watchdog Timer", "OperationalStatus={2}", "HealthState=5",
                            "EnabledState=3", "RequestedState=12", "MonitoredEntity=2",
                            "TimeoutInterval=600000000", "TimerResolution=100000", "ActionOnExpiration=1",
                            "MonitoredEntityOnLastExpiration=6"));
    const std::tuple<const char*, const char*, const char*, const char*> cases[] = {
        {R"("use": "oem", "interval": 42949)", "1", "4294900000", "0"},
        {R"("use": "bios-frb2", "interval": 42950)", "6", "<none>", "0"}, // more than 32 bits of microseconds
        {R"("use": "os-load", "interval": 1, "interrupt": "nmi")", "3", "100000", "4"},
        {R"("use": "none", "action": "power-cycle", "interrupt": "smi")", "0", "<none>", "3"},
    };
    for (const auto& [model, entity, interval, action] : cases) {
        createBmc(std::string(R"({"watchdog": {)") + model + "}}");
        const auto watchdog = only(watchdogs);
        EXPECT_EQ(textOf(watchdog, "MonitoredEntity"), entity) << model;
        EXPECT_EQ(textOf(watchdog, "TimeoutInterval"), interval) << model;
        EXPECT_EQ(textOf(watchdog, "ActionOnExpiration"), action) << model;
        EXPECT_EQ(textOf(watchdog, "MonitoredEntityOnLastExpiration"), "<none>") << model;
    }
}

// Starting, stopping and keeping alive never change what the host has set.
TEST_F(Watchdog, keepsTheHostsSettings) {
    auto settings = timer();
    bmc().recordMessages(1000);
    EXPECT_THAT(keepAlive(), Returns(2)) << "to start it is not what was asked for";
    EXPECT_THAT(requestState(3), Returns(0));
    EXPECT_EQ(timer(), settings);
    EXPECT_EQ(starts(), 0U);
    EXPECT_THAT(settingsWritten(), IsEmpty());

    EXPECT_THAT(requestState(2), Returns(0));
    EXPECT_EQ(lastJob(), Job::completed("Watchdog_RequestStateChange"));
    settings["running"] = true;
    EXPECT_EQ(timer(), settings);
    EXPECT_THAT(requestState(2), Returns(0));
    EXPECT_EQ(starts(), 1U) << "a host that hangs is not kept alive by it";
    EXPECT_THAT(keepAlive(), Returns(0));
    EXPECT_THAT(requestState(11), Returns(0));
    EXPECT_EQ(starts(), 3U);
    EXPECT_THAT(settingsWritten(), IsEmpty());
    EXPECT_EQ(textOf(only(watchdogs), "EnabledState"), "2");

    EXPECT_THAT(requestState(3), Returns(0));
    settings["running"] = false;
    EXPECT_EQ(timer(), settings);
    for (const int state : {0, 4, 12})
        EXPECT_THAT(requestState(state),
                    Refuses(CMPI_RC_ERR_INVALID_PARAMETER, "The watchdog has no such state"));
}

TEST_F(Watchdog, isModifiedWhereAClientAsksForIt) {
    bmc().startWatchdog();
    auto settings = timer();
    bmc().recordMessages(1000);
    EXPECT_TRUE(modify({}).ok());
    EXPECT_TRUE(modify({{"ActionOnExpiration", number(1)}}).ok());
    EXPECT_THAT(settingsWritten(), IsEmpty()) << "a timer that runs would start anew";

    EXPECT_TRUE(
        modify({{"TimeoutInterval", number(90'000'000, CMPI_uint32)}, {"MonitoredEntity", number(6)}}).ok());
    settings["interval"] = 900;
    settings["use"] = "bios-post";
    EXPECT_EQ(timer(), settings) << "it goes on, with all that was not named";
    EXPECT_TRUE(modify({{"ActionOnExpiration", number(2)}}).ok());
    settings["action"] = "power-down";
    settings["interrupt"] = "none";
    settings["interruptSeconds"] = 0;
    EXPECT_EQ(timer(), settings);
}

TEST_F(Watchdog, refusesWhatTheTimerCannotHave) {
    const auto settings = timer();
    const auto interval = [](std::uint64_t microseconds) {
        return broker::NamedValues{{"TimeoutInterval", number(microseconds, CMPI_uint32)}};
    };
    const broker::NamedValues wrong[] = {
        interval(0),
        interval(99'999),
        interval(150'000),
        interval(4'294'967'295),
        interval(29'900'000), // it would end before its interrupt
        {{"TimeoutInterval", text("soon")}},
        {{"TimeoutInterval", null(CMPI_uint32)}},
        {{"ActionOnExpiration", number(6)}},
        {{"MonitoredEntity", number(0)}},
        {{"MonitoredEntity", number(8)}},
        {{"TimerResolution", number(1000, CMPI_uint32)}},
        {{"ElementName", text("Mine")}},
        // The last of several is wrong.
        {{"MonitoredEntity", number(3)},
         {"ActionOnExpiration", number(3)},
         {"TimeoutInterval", number(1, CMPI_uint32)}},
    };
    for (const auto& values : wrong) {
        SCOPED_TRACE(values[0].name + broker::toText(values[0].value));
        EXPECT_EQ(modify(values).code, CMPI_RC_ERR_INVALID_PARAMETER);
        EXPECT_EQ(timer(), settings);
    }
    addFault(ipmi::command::setWatchdogTimer);
    EXPECT_THAT(modify({{"ActionOnExpiration", number(0)}}),
                Refuses(CMPI_RC_ERR_FAILED, "The BMC refuses the settings"));
    EXPECT_EQ(timer(), settings);
}

TEST_F(Watchdog, isNotThereOnABmcWithoutIt) {
    const auto before = only(watchdogs);
    bmc().addFault({.netFn = 0x06, .command = 0x25, .value = 0xC1});
    EXPECT_THAT(watchdogs.enumerate().instances, IsEmpty());
    EXPECT_TRUE(watchdogs.enumerate().ok());
    EXPECT_EQ(watchdogs.invoke(before.path, "KeepAlive").code, CMPI_RC_ERR_NOT_FOUND);
    EXPECT_EQ(watchdogs.modify(before).code, CMPI_RC_ERR_NOT_FOUND);
    failCommand(ipmi::command::getWatchdogTimer);
    EXPECT_FALSE(watchdogs.enumerate().ok());
}

} // namespace
