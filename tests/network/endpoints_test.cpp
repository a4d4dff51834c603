// CIM_IPProtocolEndpoint.
#include "network_fixture.h"

namespace {

using testing::ElementsAre;

struct DhcpEndpoint {
    std::string interfaceName;
    int channel;
    int ipVersion;
    bool operator==(const DhcpEndpoint&) const = default;
};
std::vector<DhcpEndpoint> dhcpEndpoints;
int dhcpResult = 0;

} // namespace

// An OEM's DHCP part, which this program brings.
extern "C" __attribute__((visibility("default"))) int
PH_CreateDHCPProtocolEndpointInstance(const CMPIBroker*, const CMPIContext*, const char* interfaceName,
                                      int channel, int ipVersion) {
    dhcpEndpoints.push_back({interfaceName, channel, ipVersion});
    return dhcpResult;
}

namespace {

class Endpoints : public Network {
protected:
    Endpoints() { dhcpEndpoints.clear(); }
};

TEST_F(Endpoints, areTheAddressesOfTheLans) {
    const auto endpoints = list("CIM_IPProtocolEndpoint");
    ASSERT_EQ(endpoints.size(), 4U);
    const char* const names[] = {
        "IPProtocolEndpoint1*Channel-1*eth0-4", "IPProtocolEndpoint2*Channel-1*eth0-6",
        "IPProtocolEndpoint3*Channel-1*eth0-6", "IPProtocolEndpoint4*Channel-3*eth1-4"};
    for (std::size_t i = 0; i < std::size(names); ++i) {
        EXPECT_EQ(textOf(endpoints[i], "Name"), names[i]);
        EXPECT_EQ(textOf(endpoints[i], "ElementName"), "Endpoint Dedicated to a Single IP");
        EXPECT_EQ(textOf(endpoints[i], "NameFormat"),
                  "ClassName[Instance Count]*Channel-ChannelNumber*InterfaceName-IPVersion");
    }
    struct Expected {
        const char* property;
        const char* values[4];
    };
    const Expected expected[] = {
        {"ProtocolIFType", {"4096", "4097", "4097", "4096"}},
        {"IPv4Address", {"192.0.2.10", "<none>", "<none>", "198.51.100.7"}},
        {"SubnetMask", {"255.255.255.0", "<none>", "<none>", "255.255.255.0"}},
        {"IPv6Address", {"<none>", "2001:db8::a", "2001:db8::b", "<none>"}},
        {"IPv6AddressType", {"<none>", "6", "6", "<none>"}},
        {"IPv6SubnetPrefixLength", {"<none>", "64", "128", "<none>"}},
        {"AddressOrigin", {"3", "7", "7", "4"}},
        {"EnabledState", {"2", "2", "2", "2"}},
        {"RequestedState", {"12", "12", "12", "12"}},
    };
    for (const auto& [property, values] : expected)
        for (std::size_t i = 0; i < std::size(values); ++i)
            EXPECT_EQ(textOf(endpoints[i], property), values[i]) << property << ' ' << i;
}

// Dynamic IPv6 addresses are DHCPv6's while no static address is configured or its client has noted a server,
// else auto-configured; all are static when the source is.
TEST_F(Endpoints, originOfIpv6FollowsTheConfiguration) {
    const char model[] = R"({"lans": [{"channel": 1, "name": "eth0", "ipv6": {"routers": "ROUTERS",
        "static": [{"enabled": ENABLED, "address": "2001:db8::5"}], "advertised": {"address": "2001:db8::a"}}}]})";
    struct Case {
        const char* routers;
        const char* enabled;
        bool hasServerFile;
        std::vector<std::string> addresses;
        const char* origin;
    };
    const Case cases[] = {
        {"dynamic", "false", false, {"2001:db8::a"}, "8"},
        {"dynamic", "false", true, {"2001:db8::a"}, "7"},
        {"both", "true", true, {"2001:db8::5", "2001:db8::a"}, "3"},
        {"static", "true", false, {"2001:db8::5"}, "3"},
        {"static", "false", false, {}, ""},
    };
    for (const auto& [routers, enabled, hasServerFile, addresses, origin] : cases) {
        std::string text = model;
        text.replace(text.find("ROUTERS"), 7, routers);
        text.replace(text.find("ENABLED"), 7, enabled);
        createBmc(text);
        if (hasServerFile)
            write("/tmp/dhcp6_server_eth0", "2001:db8::53");
        EXPECT_EQ(PH_IsDHCPServerAddressFilePresent("eth0"), hasServerFile);
        const auto endpoints = list("CIM_IPProtocolEndpoint");
        ASSERT_EQ(endpoints.size(), 1 + addresses.size());
        for (std::size_t i = 0; i < addresses.size(); ++i) {
            EXPECT_EQ(textOf(endpoints[i + 1], "IPv6Address"), addresses[i]);
            EXPECT_EQ(textOf(endpoints[i + 1], "AddressOrigin"), origin);
        }
        std::filesystem::remove(sysroot.place("/tmp/dhcp6_server_eth0"));
    }
}

TEST_F(Endpoints, oemsDhcpPartIsAskedForEachAddress) {
    createBmc(R"({"lans": [
        {"channel": 1, "name": "eth0", "ipv4": {"configured": {"address": "192.0.2.10"}},
         "ipv6": {"advertised": {"address": "2001:db8::a"}, "lease": {"address": "2001:db8::b"}}},
        {"channel": 2, "name": "eth1", "ipv6": {"advertised": {"address": "::1"}}},
        {"channel": 3, "name": "eth2", "ipv4": {"source": "dhcp", "lease": {"address": "192.0.2.11"}}}]})");
    EXPECT_EQ(PH_Get_All_Lanchannels(broker.handle(), nullptr), 0);
    EXPECT_THAT(dhcpEndpoints, ElementsAre(DhcpEndpoint{"eth0", 1, 4}, DhcpEndpoint{"eth0", 1, 6},
                                           DhcpEndpoint{"eth2", 3, 4}));
    dhcpResult = -1;
    EXPECT_EQ(PH_Get_All_Lanchannels(broker.handle(), nullptr), -1);
    dhcpResult = 0;
}

} // namespace
