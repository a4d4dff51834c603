// Network classes against OpenIPMI's BMC simulator, with ipmitool as the witness of what it holds. The
// simulator has one LAN, on channel 1, and none of the OEM commands.
#include "provider_on_simulator.h"

#include <regex>

namespace {

using broker::Reply;

class NetworkPeer : public ProviderOnSimulator {
protected:
    // A line of `ipmitool lan print`.
    std::string printed(const std::string& label) const {
        const std::string output = ipmitool("lan print 1");
        std::smatch match;
        const bool found =
            std::regex_search(output, match, std::regex("(?:^|\\n)" + label + " *: ([^\\n]*?) *\\n"));
        EXPECT_TRUE(found) << output;
        return found ? match[1].str() : "";
    }
};

TEST_F(NetworkPeer, endpointIsWhatIpmitoolPrints) {
    ipmitool("lan set 1 ipsrc static");
    ipmitool("lan set 1 ipaddr 192.0.2.31");
    ipmitool("lan set 1 netmask 255.255.255.192");
    ASSERT_EQ(printed("IP Address"), "192.0.2.31");
    EXPECT_EQ(get("CIM_IPProtocolEndpoint", "Name"), "IPProtocolEndpoint1*Channel-1*eth0-4");
    EXPECT_EQ(get("CIM_IPProtocolEndpoint", "IPv4Address"), printed("IP Address"));
    EXPECT_EQ(get("CIM_IPProtocolEndpoint", "SubnetMask"), printed("Subnet Mask"));
    EXPECT_EQ(get("CIM_IPProtocolEndpoint", "AddressOrigin"), "3");
    EXPECT_EQ(get("CIM_EthernetPort", "DeviceID"), "EthernetPort1:eth0:1");
    EXPECT_EQ(get("CIM_EthernetPort", "PermanentAddress"), printed("MAC Address"));
    EXPECT_EQ(get("CIM_LANEndpoint", "EnabledState"), "0") << "there is no command that tells";
    ipmitool("lan set 1 ipsrc dhcp");
    EXPECT_EQ(get("CIM_IPProtocolEndpoint", "AddressOrigin"), "4");
}

TEST_F(NetworkPeer, dhcpClientIsSwitchedAndTheGatewayShown) {
    for (const char* setting :
         {"ipsrc static", "ipaddr 192.0.2.31", "netmask 255.255.255.192", "defgw ipaddr 192.0.2.1"})
        ipmitool(std::string("lan set 1 ") + setting);
    EXPECT_EQ(get("CIM_DHCPProtocolEndpoint", "EnabledState"), "3");
    EXPECT_EQ(get("CIM_RemoteServiceAccessPoint", "AccessInfo"), printed("Default Gateway IP"));
    EXPECT_TRUE(broker.enumerateInstances(path("CIM_DNSSettingData")).instances.empty())
        << "it has no DNS settings";
    const Reply enabled = broker.invokeMethod(only("CIM_DHCPProtocolEndpoint").path, "RequestStateChange",
                                              {{"RequestedState", number(2)}});
    EXPECT_TRUE(enabled.ok()) << enabled.message;
    EXPECT_EQ(printed("IP Address Source"), "DHCP Address");
    EXPECT_EQ(get("CIM_DHCPProtocolEndpoint", "ClientState"), "8");
}

TEST_F(NetworkPeer, staticAddressIsApplied) {
    ipmitool("lan set 1 ipsrc dhcp");
    auto setting = only("CIM_StaticIPAssignmentSettingData");
    const std::pair<const char*, const char*> staged[] = {{"IPv4Address", "198.51.100.31"},
                                                          {"SubnetMask", "255.255.254.0"},
                                                          {"GatewayIPv4Address", "198.51.100.1"}};
    for (const auto& [name, value] : staged)
        broker::set(setting.properties, name, text(value));
    const Reply modified = broker.modifyInstance(setting.path, setting);
    ASSERT_TRUE(modified.ok()) << modified.message;

    const auto fixed =
        path("CIM_IPAssignmentSettingData", {{"InstanceID", text("IPAssignmentSettingData-Static")}});
    const Reply applied = broker.invokeMethod(
        only("CIM_IPConfigurationService").path, "ApplySettingToIPProtocolEndpoint",
        {{"Configuration", reference(fixed)}, {"Endpoint", reference(only("CIM_IPProtocolEndpoint").path)}});
    EXPECT_TRUE(applied.ok()) << applied.message;
    EXPECT_EQ(printed("IP Address Source"), "Static Address");
    EXPECT_EQ(printed("IP Address"), "198.51.100.31");
    EXPECT_EQ(printed("Subnet Mask"), "255.255.254.0");
    EXPECT_EQ(printed("Default Gateway IP"), "198.51.100.1");
}

// There is no command that tells their records: only what does not come from them is there.
TEST_F(NetworkPeer, servicesHaveNoPortsOrSessions) {
    EXPECT_EQ(list(path("CIM_ProtocolService")).size(), 10U);
    for (const char* name :
         {"CIM_TCPProtocolEndpoint", "CIM_SSHProtocolEndpoint", "CIM_SSHSettingData", "CIM_SSHCapabilities",
          "CIM_TelnetProtocolEndpoint", "CIM_TelnetSettingData", "CIM_ProtocolServiceCapabilities"})
        EXPECT_THAT(list(path(name)), testing::IsEmpty()) << name;
    EXPECT_EQ(get("CIM_CLPCapabilities", "RequestedStatesSupported"), "{2, 3, 11}");
}

} // namespace
