// Network classes against OpenIPMI's BMC simulator, with ipmitool as the witness of what it holds. The
// simulator has one LAN, on channel 1, and none of the OEM commands.
#include "broker/broker.h"
#include "ipmi_sim.h"
#include "simulator_session.h"

#include <platform/smash_db.h>

#include <cstdio>
#include <cstring>
#include <gmock/gmock.h>
#include <regex>
#include <sysroot_fixture.h>

namespace {

using broker::Instance;
using broker::NamedValues;
using broker::ObjectPath;
using broker::Reply;
using broker::Value;
using ph_test::IpmiSim;

class NetworkPeer : public SysrootFixture {
protected:
    static void SetUpTestSuite() { bmc = std::make_unique<IpmiSim>(ph_test::thresholdSensors(1)); }
    static void TearDownTestSuite() { bmc.reset(); }

    NetworkPeer() {
        ph_test::storeSession(bmc->settings());
        DeviceRecord device{};
        device.type = SMASH_DEVICE_SP;
        std::strcpy(device.deviceId, "sim");
        SMASH_DB_HANDLE handle = nullptr;
        EXPECT_EQ(smash_db_init(&handle), 0);
        EXPECT_EQ(db_set_device(handle, &device), 0);
        EXPECT_EQ(db_close(handle), 0);
        broker.loadProvider(TEST_PROVIDERS, "ProviderHelper");
    }

    static std::string ipmitool(const std::string& arguments) {
        const auto settings = bmc->settings();
        const std::string command = "ipmitool -I lanplus -C 3 -H " + settings.address + " -p " +
                                    std::to_string(settings.port) + " -U " + settings.userName + " -P " +
                                    settings.password + " " + arguments + " 2>&1";
        std::string output;
        const std::unique_ptr<FILE, int (*)(FILE*)> pipe(popen(command.c_str(), "r"), pclose);
        char part[256];
        while (pipe && fgets(part, sizeof part, pipe.get()) != nullptr)
            output += part;
        return output;
    }
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
    static Value text(const std::string& value) { return {CMPI_string, value}; }
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

    static std::unique_ptr<IpmiSim> bmc;
    broker::Broker broker;
};

std::unique_ptr<IpmiSim> NetworkPeer::bmc;

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
