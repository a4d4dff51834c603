// Network classes against OpenIPMI's BMC simulator, with ipmitool as the witness of what it holds. The
// simulator has one LAN, on channel 1, and none of the OEM commands.
#include "provider_on_simulator.h"

#include <regex>

namespace {

using broker::Instance;
using broker::NamedValues;
using broker::ObjectPath;
using broker::Reply;
using broker::Value;

class NetworkPeer : public ProviderOnSimulator {
protected:
    // A line of `ipmitool lan print`.
    static std::string printed(const std::string& label) {
        const std::string output = ipmitool("lan print 1");
        std::smatch match;
        const bool found =
            std::regex_search(output, match, std::regex("(?:^|\\n)" + label + " *: ([^\\n]*?) *\\n"));
        EXPECT_TRUE(found) << output;
        return found ? match[1].str() : "";
    }

    static ObjectPath path(const std::string& className, NamedValues keys = {}) {
        return {.host = {}, .nameSpace = "root/cimv2", .className = className, .keys = std::move(keys)};
    }
    Instance only(const std::string& className) {
        const Reply reply = broker.enumerateInstances(path(className));
        EXPECT_EQ(reply.instances.size(), 1U) << className << ": " << reply.message;
        return reply.instances.empty() ? Instance{} : reply.instances[0];
    }
    std::string get(const std::string& className, const char* property) {
        const Instance instance = only(className);
        const Value* const value = broker::find(instance.properties, property);
        return value != nullptr ? broker::toText(*value) : "(none)";
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
    EXPECT_EQ(get("CIM_LANEndpoint", "EnabledState"), "2");
    ipmitool("lan set 1 ipsrc dhcp");
    EXPECT_EQ(get("CIM_IPProtocolEndpoint", "AddressOrigin"), "4");
}

TEST_F(NetworkPeer, staticAddressIsApplied) {
    ipmitool("lan set 1 ipsrc dhcp");
    Instance setting = only("CIM_StaticIPAssignmentSettingData");
    const std::pair<const char*, const char*> staged[] = {{"IPv4Address", "198.51.100.31"},
                                                          {"SubnetMask", "255.255.254.0"},
                                                          {"GatewayIPv4Address", "198.51.100.1"}};
    for (const auto& [name, value] : staged)
        broker::set(setting.properties, name, text(value));
    const Reply modified = broker.modifyInstance(setting.path, setting);
    ASSERT_TRUE(modified.ok()) << modified.message;

    const auto reference = [](const ObjectPath& object) {
        return Value{CMPI_ref, std::make_shared<const ObjectPath>(object)};
    };
    const Reply applied = broker.invokeMethod(
        only("CIM_IPConfigurationService").path, "ApplySettingToIPProtocolEndpoint",
        {{"Configuration", reference(path("CIM_IPAssignmentSettingData",
                                          {{"InstanceID", text("IPAssignmentSettingData-Static")}}))},
         {"Endpoint", reference(only("CIM_IPProtocolEndpoint").path)}});
    EXPECT_TRUE(applied.ok()) << applied.message;
    EXPECT_EQ(printed("IP Address Source"), "Static Address");
    EXPECT_EQ(printed("IP Address"), "198.51.100.31");
    EXPECT_EQ(printed("Subnet Mask"), "255.255.254.0");
    EXPECT_EQ(printed("Default Gateway IP"), "198.51.100.1");
}

} // namespace
