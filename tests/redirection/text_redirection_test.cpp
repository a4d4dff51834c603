// Serial over LAN of the virtual BMC as text redirection.
#include "managed_bmc.h"
#include "provider_helper/redirection.h"

namespace {

using testing::ElementsAre;
using testing::IsEmpty;

constexpr char twoChannels[] = R"({
    "lans": [{"channel": 1, "name": "eth0"}, {"channel": 3, "name": "eth1"}, {"channel": 8, "name": "eth2"}],
    "sol": {"channels": [{"channel": 1, "privilege": "administrator", "bitRate": "57600", "port": 6230},
                         {"channel": 8, "enabled": false, "encryption": false, "authentication": false,
                          "bitRate": "serial"}],
            "capacity": 3, "active": [{"instance": 2, "session": 4711, "serialPort": 2}]}})";

class TextRedirection : public ManagedBmc {
protected:
    TextRedirection() : ManagedBmc(twoChannels) {}

    static broker::ObjectPath service(int channel) {
        return pathOnProcessor("CIM_TextRedirectionService", "controller",
                               "TextRedirectionService*Channel-" + std::to_string(channel));
    }
    broker::Reply request(int channel, std::uint64_t state) const {
        return services.invoke(service(channel), "RequestStateChange", {{"RequestedState", number(state)}});
    }
    bool isEnabled(int channel) const { return row("sol", "channel", channel).at("enabled"); }
    // EnabledState of each access point.
    std::vector<std::string> states() const {
        std::vector<std::string> all;
        for (const auto& each : accessPoints.enumerate().instances)
            all.push_back(textOf(each, "EnabledState"));
        return all;
    }

    const ClassRequests services{broker, PH_CLASS_FUNCTIONS(TextRedirectionService)};
    const ClassRequests accessPoints{broker, PH_CLASS_FUNCTIONS(TextRedirectionSAP)};
    const ClassRequests capabilities{broker, PH_CLASS_FUNCTIONS(RedirectionServiceCapabilities)};
};

TEST_F(TextRedirection, isAServiceOfEachChannelThatHasIt) {
    const auto all = services.enumerate().instances;
    ASSERT_EQ(all.size(), 2U);
    EXPECT_THAT(
        propertiesOf(all[0]),
        ElementsAre("SystemCreationClassName=CIM_SPComputerSystem",
                    "CreationClassName=CIM_TextRedirectionService", "SystemName=controller",
                    "Name=TextRedirectionService*Channel-1", "ElementName=Serial over LAN on channel 1",
                    "Description=Serial over LAN on channel 1; UDP port 6230; 57600 bit/s; privilege level "
                    "Administrator; encryption required; authentication required",
                    "OperationalStatus={2}", "HealthState=5", "EnabledState=2", "RequestedState=12",
                    "RedirectionServiceType={2}", "MaxCurrentEnabledSAPs=3", "SharingMode=3"));
    EXPECT_EQ(all[1].path, service(8));
    EXPECT_EQ(textOf(all[1], "Description"),
              "Serial over LAN on channel 8; UDP port 623; privilege level User");
    EXPECT_EQ(textOf(all[1], "EnabledState"), "3");
    EXPECT_EQ(textOf(all[1], "OperationalStatus"), "{10}");
}

TEST_F(TextRedirection, hasAnAccessPointForEachInstance) {
    const auto all = accessPoints.enumerate().instances;
    ASSERT_EQ(all.size(), 3U);
    EXPECT_THAT(propertiesOf(all[1]),
                ElementsAre("SystemCreationClassName=CIM_SPComputerSystem",
                            "CreationClassName=CIM_TextRedirectionSAP", "SystemName=controller",
                            "Name=TextRedirectionSAP-2", "ElementName=Serial over LAN 2",
                            "Description=serial port 2", "OperationalStatus={2}", "HealthState=5",
                            "EnabledState=2", "RequestedState=12",
                            "SessionTerminateSequence=", "TextFlowType=2"));
    EXPECT_EQ(textOf(all[0], "Description"), "<none>");
    EXPECT_THAT(states(), ElementsAre("6", "2", "6"));
    EXPECT_THAT(request(1, 3), Returns(0));
    EXPECT_THAT(states(), ElementsAre("3", "2", "3")) << "what is active goes on";
}

TEST_F(TextRedirection, isSwitchedOnItsChannelOnly) {
    const auto before = row("sol", "channel", 8);
    bmc().recordMessages(1000);
    EXPECT_THAT(request(8, 2), Returns(0));
    EXPECT_THAT(requests(ipmi::command::setSolConfiguration), ElementsAre(ElementsAre(8, 1, 1)));
    EXPECT_EQ(lastJob(), Job::completed("TextRedirectionService*Channel-8_RequestStateChange"));
    auto after = row("sol", "channel", 8);
    EXPECT_EQ(after["enabled"], true);
    after["enabled"] = before["enabled"];
    EXPECT_EQ(after, before);
    EXPECT_THAT(request(1, 3), Returns(0));
    EXPECT_TRUE(isEnabled(8) && !isEnabled(1));

    failCommand(ipmi::command::setSolConfiguration);
    EXPECT_THAT(request(1, 2), Returns(2));
    EXPECT_EQ(lastJob(), Job::failed("TextRedirectionService*Channel-1_RequestStateChange"));
    EXPECT_FALSE(isEnabled(1));
    for (const std::uint64_t state : {0, 4, 6, 11})
        EXPECT_THAT(request(1, state),
                    Refuses(CMPI_RC_ERR_INVALID_PARAMETER, "The service has no such state"));
    EXPECT_EQ(request(3, 2).code, CMPI_RC_ERR_NOT_FOUND) << "a channel without SOL";
}

// What the BMC does not tell is left out, and nothing is made up for it.
TEST_F(TextRedirection, leavesOutWhatTheBmcDoesNotTell) {
    failCommand(ipmi::command::getPayloadActivationStatus);
    const auto one = services.get(service(1)).instances.at(0);
    EXPECT_EQ(textOf(one, "MaxCurrentEnabledSAPs"), "<none>");
    EXPECT_EQ(textOf(one, "SharingMode"), "0");
    EXPECT_THAT(states(), ElementsAre("<none>")) << "it is there once, in use or not";
    EXPECT_THAT(request(1, 3), Returns(0));
    EXPECT_THAT(states(), ElementsAre("3"));

    bmc().clearFaults();
    failCommand(ipmi::command::getPayloadInstanceInfo);
    EXPECT_EQ(textOf(accessPoints.enumerate().instances.at(1), "Description"), "<none>");
    EXPECT_THAT(states(), ElementsAre("3", "2", "3"));
}

TEST_F(TextRedirection, isNotThereOnABmcWithoutIt) {
    EXPECT_EQ(capabilities.names().paths.size(), 2U);
    bmc().addFault({.netFn = 0x0C, .command = 0x22, .value = 0xC1});
    for (const ClassRequests* each : {&services, &accessPoints}) {
        EXPECT_TRUE(each->enumerate().ok());
        EXPECT_THAT(each->enumerate().instances, IsEmpty());
    }
    EXPECT_EQ(request(1, 3).code, CMPI_RC_ERR_NOT_FOUND);
    EXPECT_TRUE(isEnabled(1));
    EXPECT_EQ(textOf(only(capabilities), "InstanceID"), "KVMRedirectionCapabilities");
    failCommand(ipmi::command::getSolConfiguration);
    for (const ClassRequests* each : {&services, &accessPoints, &capabilities})
        EXPECT_FALSE(each->enumerate().ok()) << "one that does not answer is not one without";
}

} // namespace
