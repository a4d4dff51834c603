// CIM_EthernetPort, its method RequestStateChange, and CIM_LANEndpoint.
#include "ipmi/command.h"
#include "network_fixture.h"

#include <cstring>
#include <sys/stat.h>

namespace {

using broker::Reply;
using testing::ElementsAre;
using testing::IsEmpty;

namespace oem = ipmi::oem;
constexpr char alreadyActive[] = "This EthernetPort is already active";
constexpr char alreadyDisabled[] = "This EthernetPort is already disabled";
constexpr char lastLan[] = "Atleast one interface must be working for a BMC";
constexpr char lastBond[] = "Atleast one interface should be enabled for communication with BMC";

class Ports : public Network {
protected:
    std::string requestedState(const std::string& interfaceName) const {
        return contents("/tmp/ethport_reqstate_" + interfaceName);
    }
    Reply request(const char* deviceId, const broker::Value& state) {
        broker::ObjectPath port = instance("CIM_EthernetPort").path;
        broker::set(port.keys, "DeviceID", text(deviceId));
        return broker.invokeMethod(port, "RequestStateChange", {{"RequestedState", state}});
    }
    // A state asked of an interface without a job around it: "0", or the message of the refusal, or "-1".
    std::string change(const char* interfaceName, int state) {
        const broker::Scope scope(broker);
        CMPIStatus status{CMPI_RC_OK, nullptr};
        const int lanIndex = std::strcmp(interfaceName, "eth1") == 0 ? 2 : 1;
        const int result =
            RequestStateChange(broker.handle(), nullptr, nullptr, &status, lanIndex, interfaceName, state);
        EXPECT_EQ(status.rc, status.msg != nullptr ? CMPI_RC_ERR_FAILED : CMPI_RC_OK);
        return status.msg != nullptr ? broker::toString(status.msg) : std::to_string(result);
    }
};

TEST_F(Ports, areTheLansOfTheBmc) {
    EXPECT_EQ(change("eth1", 3), "0");
    const auto ports = list("CIM_EthernetPort");
    ASSERT_EQ(ports.size(), 2U);
    EXPECT_THAT(propertiesOf(ports[0]),
                ElementsAre("DeviceID=EthernetPort1:eth0:1", "SystemCreationClassName=CIM_SPComputerSystem",
                            "CreationClassName=CIM_EthernetPort", "SystemName=controller",
                            "ElementName=Logical representation of Network Communications",
                            "Name=EthernetPort", "PortType=50", "NetworkAddresses={\"00:11:22:33:44:\"}",
                            "Capabilities={3}", "EnabledCapabilities={0}", "LinkTechnology=2",
                            "PermanentAddress=00:11:22:33:44:55", "EnabledState=2", "Speed=4093640704",
                            "MaxSpeed=4093640704", "RequestedSpeed=4093640704", "RequestedState=0",
                            "FullDuplex=TRUE", "AutoSense=TRUE", "ActiveMaximumTransmissionUnit=9000"));
    EXPECT_THAT(propertiesOf(ports[1]),
                testing::IsSupersetOf({"DeviceID=EthernetPort2:eth1:2", "PortType=51",
                                       "PermanentAddress=00:11:22:33:44:66", "EnabledState=3",
                                       "Speed=838860800", "RequestedState=3"}));

    const auto endpoints = list("CIM_LANEndpoint");
    ASSERT_EQ(endpoints.size(), 2U);
    EXPECT_THAT(propertiesOf(endpoints[0]),
                ElementsAre("Name=LANEndpoint-eth0", "SystemCreationClassName=CIM_SPComputerSystem",
                            "CreationClassName=CIM_LANEndpoint", "SystemName=controller",
                            "NameFormat=ClassName-InterfaceName", "ProtocolIFType=6",
                            "MACAddress=00:11:22:33:44:55", "LANID=1234", "EnabledState=2",
                            "RequestedState=12", "ElementName=LANEndPoint for eth0"));
    EXPECT_EQ(textOf(endpoints[1], "LANID"), "0");
    EXPECT_EQ(textOf(endpoints[1], "EnabledState"), "3");
    EXPECT_EQ(get("CIM_PortController", "DeviceID"), "PortController-1.0.0");
    EXPECT_EQ(get("CIM_PortController", "EnabledState"), "5");
}

TEST_F(Ports, nameWithoutAnEndGetsOne) {
    PH_STAND_IN(CIM_GetLANIndex, [](auto*, uint8_t, char* name, int) {
        std::memset(name, 'e', CIM_INTERFACE_NAME_SIZE);
        return 0;
    });
    EXPECT_EQ(get("CIM_LANEndpoint", "Name"), "LANEndpoint-" + std::string(CIM_INTERFACE_NAME_SIZE - 1, 'e'));
}

TEST_F(Ports, areAsTheBmcIsConfigured) {
    const std::tuple<std::uint16_t, const char*, const char*> speeds[] = {
        {10, "83886080", "50"}, {100, "838860800", "51"}, {1000, "4093640704", "50"}, {0, "0", "50"}};
    for (const auto& [speed, published, type] : speeds) {
        bmc().setLink("eth0", true, speed);
        EXPECT_EQ(get("CIM_EthernetPort", "Speed"), published) << "formed in 32 bits";
        EXPECT_EQ(get("CIM_EthernetPort", "PortType"), type);
    }
    for (const bool isOn : {true, false}) {
        PH_STAND_IN(CIM_GetNWExtEthCfg, [=](CIM_NWExtEthCfg* configuration, uint8_t*) {
            const auto value = static_cast<uint16_t>(isOn ? 1 : 2);
            *configuration = {};
            configuration->duplex = configuration->autoNegotiation = value;
            configuration->enabledCapability = isOn ? 1 : 0;
            return 0;
        });
        const auto port = instance("CIM_EthernetPort");
        EXPECT_EQ(textOf(port, "FullDuplex"), isOn ? "TRUE" : "FALSE");
        EXPECT_EQ(textOf(port, "AutoSense"), isOn ? "TRUE" : "FALSE");
        EXPECT_EQ(textOf(port, "Capabilities"), "{0}");
        EXPECT_EQ(textOf(port, "EnabledCapabilities"), isOn ? "{3}" : "{0}");
    }
    LANEndpointRecord record{};
    for (const auto& [enable, state] : {std::pair{0, 3}, {1, 2}, {2, 2}, {3, 2}, {4, 0}}) {
        EXPECT_EQ(PH_Fill_LANEndpoint("eth0", &record, "", enable, "0"), 0);
        EXPECT_EQ(record.EnabledState, state) << enable;
    }
}

TEST_F(Ports, bondTakesThePlaceOfAllLans) {
    bmc().setBond(true);
    const auto ports = list("CIM_EthernetPort");
    EXPECT_THAT(textsOf(ports, "DeviceID"), ElementsAre("EthernetPort1:bond0:1"));
    EXPECT_THAT(textsOf(ports, "EnabledState"), ElementsAre("2"));
    const auto endpoints = list("CIM_LANEndpoint");
    EXPECT_THAT(textsOf(endpoints, "Name"), ElementsAre("LANEndpoint-bond0"));
    EXPECT_THAT(textsOf(endpoints, "EnabledState"), ElementsAre("2"));
    EXPECT_EQ(list("CIM_IPProtocolEndpoint").size(), 3U); // those of the first member

    EthernetPortRecord* records = nullptr;
    int count = 0;
    ASSERT_EQ(PH_Enum_All_EthernetPort(&records, &count, 1), 0);
    ASSERT_EQ(PH_Enum_All_EthernetPort(&records, &count, 1), 0);
    ASSERT_EQ(count, 2);
    EXPECT_STREQ(records[1].DeviceID, "EthernetPort2:bond0:1"); // counted on in the caller's array
    EXPECT_STREQ(records[1].ElementName, "");
    PH_Clean_EthernetPort(&records, count);
}

// A BMC that has no OEM command, one that answers nothing but what lists the LANs, none, and one without
// LANs.
TEST_F(Ports, areListedByABmcThatSaysLittle) {
    for (const auto code :
         {oem::getInterfaceName, oem::getLanEnable, oem::getBond, oem::getPhy, oem::getEthernetSettings})
        bmc().addFault(
            {.netFn = code.netFn, .command = code.number, .value = ipmi::completion::invalidCommand});
    const auto port = instance("CIM_EthernetPort", 1);
    EXPECT_EQ(textOf(port, "DeviceID"), "EthernetPort2:eth1:2");
    EXPECT_EQ(textOf(port, "Speed"), "0");
    for (const char* property : {"EnabledState", "Capabilities", "EnabledCapabilities", "FullDuplex",
                                 "AutoSense", "ActiveMaximumTransmissionUnit"})
        EXPECT_EQ(textOf(port, property), "<none>") << property;
    EXPECT_EQ(get("CIM_LANEndpoint", "EnabledState"), "0");

    bmc().addFault({.netFn = ipmi::command::getLanConfiguration.netFn,
                    .command = ipmi::command::getLanConfiguration.number,
                    .value = ipmi::completion::insufficientPrivilege});
    const std::pair<const char*, std::vector<const char*>> unknown[] = {
        {"CIM_EthernetPort", {"PermanentAddress", "NetworkAddresses"}},
        {"CIM_LANEndpoint", {"MACAddress", "LANID"}},
        {"CIM_IPProtocolEndpoint", {"IPv4Address", "SubnetMask", "AddressOrigin"}}};
    for (const auto& [className, properties] : unknown)
        for (const char* property : properties)
            EXPECT_EQ(get(className, property), "<none>") << property << " is no value";

    std::filesystem::remove(stateFile);
    for (const char* className : {"CIM_EthernetPort", "CIM_LANEndpoint", "CIM_IPProtocolEndpoint"})
        EXPECT_THAT(broker.enumerateInstances(path(className)),
                    Refuses(CMPI_RC_ERR_FAILED, "Failed to Enumerate Instance"));
    EXPECT_EQ(change("eth0", 2), "-1");
    EXPECT_EQ(PH_Get_All_Lanchannels(broker.handle(), nullptr), -1);
    createBmc("{}");
    EXPECT_THAT(list("CIM_EthernetPort"), IsEmpty());
}

TEST_F(Ports, lanIsSwitched) {
    EXPECT_EQ(change("eth0", 2), alreadyActive);
    platformCalls.texts.clear();
    EXPECT_EQ(change("eth0", 3), "0");
    EXPECT_THAT(platformCalls.hooks(),
                ElementsAre("CIM_GetLANEnable(1, *, 30)", "CIM_SetLANEnable(1, 0, 30)"));
    EXPECT_EQ(lan("eth0", "enable"), "off");
    EXPECT_EQ(requestedState("eth0"), "03");
    EXPECT_EQ(change("eth0", 3), alreadyDisabled);
    EXPECT_EQ(change("eth1", 3), lastLan);
    EXPECT_EQ(lan("eth1", "enable"), "both");
    EXPECT_EQ(requestedState("eth1"), "");
    EXPECT_EQ(change("eth0", 2), "0");
    EXPECT_EQ(lan("eth0", "enable"), "both");
    EXPECT_EQ(requestedState("eth0"), "02");
    EXPECT_THAT(platformCalls.pauses, IsEmpty());

    EXPECT_EQ(change("eth0", 11), "0");
    EXPECT_EQ(lan("eth0", "enable"), "both");
    EXPECT_EQ(requestedState("eth0"), "11");
    EXPECT_EQ(change("eth0", 3), "0");
    EXPECT_EQ(change("eth0", 11), "0");
    EXPECT_THAT(platformCalls.pauses, ElementsAre(7)) << "disabled: no pause";
    EXPECT_EQ(lan("eth0", "enable"), "both");

    EXPECT_EQ(change("eth0", 3), "0");
    failCommand(oem::setLanEnable);
    EXPECT_EQ(change("eth0", 2), "Unable to enable the EthernertPort");
    failCommand(oem::getLanEnable);
    EXPECT_EQ(change("eth0", 2), "-1");
    EXPECT_EQ(change("usb0", 3), "0"); // no interface of the controller: only noted
    EXPECT_EQ(requestedState("usb0"), "03");
}

TEST_F(Ports, bondIsSwitched) {
    const auto isOn = [&]() -> bool { return bmc().describe()["interfaces"]["bond"]; };
    EXPECT_EQ(change("bond0", 3), alreadyDisabled);
    EXPECT_EQ(change("bond0", 2), "0");
    EXPECT_TRUE(isOn());
    EXPECT_EQ(change("bond0", 2), alreadyActive);
    platformCalls.texts.clear();
    EXPECT_EQ(change("bond0", 11), "0");
    EXPECT_THAT(platformCalls.hooks(), ElementsAre("CIM_IsBondEnabled(*, 30)", "CIM_GetBondEnable(*, 30)",
                                                   "CIM_SetBondEnable(*, 30)", "CIM_SetBondEnable(*, 30)"));
    EXPECT_THAT(platformCalls.pauses, ElementsAre(25));
    EXPECT_TRUE(isOn());
    EXPECT_EQ(change("eth0", 3), "0");
    EXPECT_EQ(change("eth1", 3), "0"); // the bond works
    EXPECT_EQ(change("bond0", 3), lastBond);
    EXPECT_EQ(change("eth1", 2), "0");
    EXPECT_EQ(change("bond0", 3), "0");
    EXPECT_EQ(requestedState("bond0"), "03");
    failCommand(oem::setBond);
    EXPECT_EQ(change("bond0", 2), "Unable to enable the interface");
    failCommand(oem::getBond, 1);
    EXPECT_EQ(change("bond0", 2), lastBond);
    failCommand(oem::getBond);
    EXPECT_EQ(change("bond0", 2), "-1");
}

TEST_F(Ports, methodRecordsAJob) {
    const Reply done = request("EthernetPort2:eth1:2", number(3));
    EXPECT_THAT(done, Returns(0));
    EXPECT_TRUE(done.done);
    EXPECT_EQ(jobOf(done), Job::completed("EthernetPort_RequestStateChange_eth1"));
    EXPECT_EQ(lan("eth1", "enable"), "off");

    EXPECT_THAT(request("EthernetPort1:eth0:1", text("2")), Refuses(CMPI_RC_ERR_FAILED, alreadyActive));
    EXPECT_EQ(lastJob(), Job::failed("EthernetPort_RequestStateChange_eth0"));

    // States that no port has end their job at once, and with a value instead of a status.
    for (const broker::Value& state :
         {number(5), text("enabled"), text("4294967298"), broker::Value{CMPI_boolean, true}}) {
        const Reply failed = request("EthernetPort2:eth1:2", state);
        EXPECT_THAT(failed, Returns(2));
        EXPECT_EQ(jobOf(failed), Job::failed("EthernetPort_RequestStateChange_eth1"));
    }
    EXPECT_EQ(lan("eth1", "enable"), "off");
}

TEST_F(Ports, methodRefusesWhatItCannotServe) {
    const broker::ObjectPath port = instance("CIM_EthernetPort").path;
    broker::ObjectPath incomplete = port;
    incomplete.keys.pop_back();
    const broker::NamedValues off{{"RequestedState", number(3)}};
    EXPECT_THAT(broker.invokeMethod(incomplete, "RequestStateChange", off),
                Refuses(CMPI_RC_ERR_FAILED, "Key Property Missing"));
    EXPECT_THAT(broker.invokeMethod(port, "Restart", off),
                Refuses(CMPI_RC_ERR_NOT_SUPPORTED, "Invalid Method Name"));
    EXPECT_THAT(broker.invokeMethod(port, "requeststatechange"),
                Refuses(CMPI_RC_ERR_INVALID_PARAMETER, "Invalid Parameter"));
    EXPECT_THAT(request("EthernetPort7:eth6:7", number(3)),
                Refuses(CMPI_RC_ERR_INVALID_PARAMETER, "Given instance does not exist"));
    EXPECT_EQ(jobCount(), 0U);

    platformCalls.broken = {"db_set_concretejob"};
    const Reply reply = request("EthernetPort1:eth0:1", number(3));
    EXPECT_THAT(reply, Returns(2));
    EXPECT_THAT(reply.arguments, IsEmpty());
    EXPECT_EQ(lan("eth0", "enable"), "both") << "nothing is changed without a job";
}

// Others may write to the folder: what they put there is neither followed nor waited for.
TEST_F(Ports, requestedStateIsAFileOfOurs) {
    write("/tmp/elsewhere", "11");
    const auto elsewhere = sysroot.place("/tmp/elsewhere");
    const auto file = sysroot.place("/tmp/ethport_reqstate_eth0");
    const std::function<void()> puts[] = {[&] { std::filesystem::create_symlink(elsewhere, file); },
                                          [&] { std::filesystem::create_hard_link(elsewhere, file); },
                                          [&] { mkfifo(file.c_str(), 0600); }};
    for (const auto& put : puts) {
        put();
        EXPECT_EQ(get("CIM_EthernetPort", "RequestedState"), "0");
        EXPECT_EQ(change("eth0", 3), "0"); // done, and noted nowhere
        EXPECT_EQ(change("eth0", 2), "0");
        std::filesystem::remove(file);
    }
    EXPECT_EQ(contents("/tmp/elsewhere"), "11");
}

} // namespace
