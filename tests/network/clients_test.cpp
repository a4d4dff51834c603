// Clients of DHCP and DNS, and whom they ask: what they are set to, how clients change it, and what goes wrong.
#include "network_fixture.h"

namespace {

using broker::NamedValues;
using broker::Reply;
using testing::ElementsAre;
using testing::IsEmpty;
using testing::SizeIs;

constexpr char dnsSettingClass[] = "CIM_DNSSettingData";
constexpr char generalClass[] = "CIM_DNSGeneralSettingData";
namespace oem = ipmi::oem;

// eth0 has a static IPv4 address and its IPv6 addresses from router and server, eth1 all by DHCP, eth2 nothing.
constexpr char model[] = R"({"lans": [
    {"channel": 1, "name": "eth0",
     "ipv4": {"configured": {"address": "192.0.2.10", "netmask": "255.255.255.0", "gateway": "192.0.2.1"},
              "lease": {"address": "192.0.2.77"}},
     "ipv6": {"advertised": {"address": "2001:db8::a"}, "lease": {"address": "2001:db8::b"}, "router": "2001:db8::1",
              "routers": "both", "advertisedRouter": "fe80::9"}},
    {"channel": 3, "name": "eth1", "ipv6": {"enables": "off"},
     "ipv4": {"source": "dhcp", "lease": {"address": "198.51.100.7", "netmask": "255.255.255.0", "gateway": "198.51.100.1"}}},
    {"channel": 4, "name": "eth2"}],
  "dns": {"suffixes": ["example.com", "example.org"], "clients": [
    {"channel": 1, "configured": {"hostName": "bmc", "domainName": "lab.example.com", "servers": ["192.0.2.53"]},
     "registersAddress": true, "lease": {"servers": ["192.0.2.99"]}},
    {"channel": 3, "configured": {"hostName": "bmc", "domainName": "old.example.com", "servers": ["192.0.2.53"]},
     "lease": {"hostName": "other", "domainName": "net.example.com", "servers": ["198.51.100.53", "198.51.100.54"]}}]}})";

class Clients : public Network {
protected:
    Clients() { createBmc(model); }

    std::vector<std::string> all(const std::string& className, const char* property) {
        return textsOf(list(className), property);
    }
    Reply modify(const char* className, const NamedValues& changes, std::size_t index = 0) {
        broker::Instance setting = instance(className, index);
        for (const auto& [name, value] : changes)
            broker::set(setting.properties, name, value);
        bmc().recordMessages(500);
        return broker.modifyInstance(setting.path, setting);
    }
    static broker::Value texts(const std::vector<const char*>& values) {
        broker::Value::Array array;
        for (const char* value : values)
            array.push_back(text(value));
        return arrayOf(CMPI_string, array);
    }
    Reply request(std::size_t index, const NamedValues& arguments) {
        return broker.invokeMethod(instance("CIM_DHCPProtocolEndpoint", index).path, "RequestStateChange",
                                   arguments);
    }
};

TEST_F(Clients, ofDhcpTellTheirState) {
    const auto states = [&] {
        return std::tuple(all("CIM_DHCPProtocolEndpoint", "EnabledState"),
                          all("CIM_DHCPProtocolEndpoint", "ClientState"),
                          all("CIM_DHCPProtocolEndpoint", "OptionsReceived"));
    };
    using Texts = std::vector<std::string>;
    EXPECT_THAT(all("CIM_DHCPProtocolEndpoint", "Name"),
                ElementsAre("DHCPProtocolEndpoint1*Channel-1*eth0-4",
                            "DHCPProtocolEndpoint2*Channel-1*eth0-6",
                            "DHCPProtocolEndpoint3*Channel-3*eth1-4"));
    EXPECT_EQ(states(),
              std::tuple(Texts{"3", "2", "2"}, Texts{"0", "8", "8"}, Texts{"<none>", "<none>", "{3, 5}"}));
    EXPECT_THAT(all("CIM_DHCPSettingData", "AddressOrigin"), ElementsAre("4", "7", "4"));
    EXPECT_THAT(all("CIM_DHCPSettingData", "RequestedOptions"),
                ElementsAre("{3, 5, 8, 17}", "{8, 17}", "{3, 5, 8, 17}"));
    // Dynamic IPv6 addresses of routers alone are no lease, until the client notes a server.
    createBmc(
        R"({"lans": [{"channel": 1, "name": "eth0", "ipv6": {"advertised": {"address": "2001:db8::a"}}}]})");
    EXPECT_EQ(states(), std::tuple(Texts{"2"}, Texts{"0"}, Texts{"<none>"}));
    write("/tmp/dhcp6_server_eth0", "2001:db8::53\n");
    EXPECT_EQ(states(), std::tuple(Texts{"2"}, Texts{"8"}, Texts{"<none>"}));
    EXPECT_THAT(all("CIM_RemoteServiceAccessPoint", "AccessInfo"), ElementsAre("2001:db8::53"));
    write("/tmp/dhcp6_server_eth0", "none");
    EXPECT_THAT(all("CIM_RemoteServiceAccessPoint", "AccessInfo"), IsEmpty());
    std::filesystem::remove(sysroot.place("/tmp/dhcp6_server_eth0"));
}

TEST_F(Clients, ofDhcpAreSwitchedByTheSourceOfAddresses) {
    const struct {
        std::size_t endpoint;
        unsigned state;
        const char* hook;
        const char* job;
    } cases[] = {
        {0, 2, "CIM_SetIPv4Source(2, 1, 30)", "eth0-4"},
        {0, 3, "CIM_SetIPv4Source(1, 1, 30)", "eth0-4"},
        {1, 2, "CIM_SetIPv6Source(2, 1, 30)", "eth0-6"},
        {2, 3, "CIM_SetIPv4Source(1, 3, 30)", "eth1-4"},
    };
    for (const auto& each : cases) {
        platformCalls.texts.clear();
        const Reply reply = request(each.endpoint, {{"RequestedState", number(each.state)}});
        EXPECT_THAT(reply, Returns(0)) << each.hook;
        EXPECT_EQ(jobOf(reply),
                  Job::completed(std::string("DHCPProtocolEndpoint_RequestStateChange_") + each.job));
        EXPECT_THAT(platformCalls.hooks(), testing::Contains(each.hook));
        EXPECT_EQ(textOf(instance("CIM_DHCPProtocolEndpoint", each.endpoint), "EnabledState"),
                  std::to_string(each.state));
    }
    const std::size_t before = jobCount();
    for (const NamedValues& wrong : {NamedValues{}, {{"RequestedState", text("on")}}})
        EXPECT_THAT(request(0, wrong), Refuses(invalid, "RequestedState Parameter is Invalid"));
    EXPECT_THAT(request(0, {{"RequestedState", number(11)}}),
                Refuses(invalid, "A DHCP client can be enabled (2) or disabled (3)"));
    EXPECT_EQ(jobCount(), before);
    failCommand(ipmi::command::setLanConfiguration);
    const Reply refused = request(0, {{"RequestedState", number(2)}});
    EXPECT_THAT(refused, Returns(2));
    EXPECT_EQ(jobOf(refused), Job::failed("DHCPProtocolEndpoint_RequestStateChange_eth0-4"));
}

TEST_F(Clients, ofDnsShowWhatIsUsedAndWhatIsSet) {
    EXPECT_THAT(all("CIM_DNSProtocolEndpoint", "Hostname"), ElementsAre("bmc", "<none>", "bmc"));
    EXPECT_THAT(all("CIM_DNSProtocolEndpoint", "DomainName"),
                ElementsAre("lab.example.com", "<none>", "net.example.com"));
    EXPECT_THAT(all("CIM_DNSProtocolEndpoint", "RegisterThisConnectionsAddress"),
                ElementsAre("TRUE", "FALSE", "FALSE"));
    EXPECT_EQ(get("CIM_DNSProtocolEndpoint", "DNSSuffixesToAppend"), "{\"example.com\", \"example.org\"}");
    EXPECT_THAT(all(dnsSettingClass, "DomainName"), ElementsAre("lab.example.com", "", "old.example.com"));
    EXPECT_THAT(all(dnsSettingClass, "DNSServerAddresses"),
                ElementsAre("{\"192.0.2.53\"}", "<none>", "{\"192.0.2.53\"}"));
    EXPECT_THAT(all("CIM_RemoteServiceAccessPoint", "ElementName"),
                ElementsAre("Default Gateway 1 of eth0", "DNS Server 1 of eth0", "Default Gateway 1 of eth0",
                            "Default Gateway 2 of eth0", "Default Gateway 1 of eth1", "DNS Server 1 of eth1",
                            "DNS Server 2 of eth1"));
    EXPECT_THAT(all("CIM_RemoteServiceAccessPoint", "AccessInfo"),
                ElementsAre("192.0.2.1", "192.0.2.53", "2001:db8::1", "fe80::9", "198.51.100.1",
                            "198.51.100.53", "198.51.100.54"));
    EXPECT_THAT(all("CIM_RemoteServiceAccessPoint", "InfoFormat"),
                ElementsAre("3", "3", "4", "4", "3", "3", "3"));
    EXPECT_THAT(all("CIM_RemoteServiceAccessPoint", "AccessContext"),
                ElementsAre("2", "3", "2", "2", "2", "3", "3"));
}

// A BMC without the command has no DNS client; one that refuses it, as a busy one, does not tell.
TEST_F(Clients, ofDnsAreThoseThatTheBmcTellsOf) {
    bmc().addFault({.netFn = oem::getDns.netFn, .command = oem::getDns.number, .value = 0xC1});
    for (const char* className : {"CIM_DNSProtocolEndpoint", dnsSettingClass, generalClass})
        EXPECT_THAT(list(className), IsEmpty()) << className;
    EXPECT_EQ(get("CIM_DHCPCapabilities", "OptionsSupported"), "{3, 5}");
    EXPECT_THAT(all("CIM_RemoteServiceAccessPoint", "AccessContext"), ElementsAre("2", "2", "2", "2"));
    bmc().clearFaults();
    failCommand(oem::getDns, 2); // behind the settings of all clients
    EXPECT_THAT(all(dnsSettingClass, "InstanceID"), SizeIs(3));
    failCommand(oem::getDns, 2);
    EXPECT_THAT(all(dnsSettingClass, "DomainName"), ElementsAre("<none>", "<none>", "<none>"));
    failCommand(oem::getDns);
    EXPECT_EQ(broker.enumerateInstances(path(dnsSettingClass)).code, CMPI_RC_ERR_FAILED);
}

TEST_F(Clients, ofDnsTakeSettings) {
    const Reply reply =
        modify(dnsSettingClass, {{"DomainName", text("new.example.com")},
                                 {"RequestedHostname", text("bmc-7")},
                                 {"UseSuffixWhenRegistering", {CMPI_boolean, true}},
                                 {"RegisterThisConnectionsAddress", {CMPI_boolean, false}},
                                 {"DNSServerAddresses", texts({"192.0.2.4", "192.0.2.5", "192.0.2.6"})},
                                 {"DHCPOptionsToUse", arrayOf(CMPI_uint16, {number(14)})}});
    EXPECT_TRUE(reply.ok()) << reply.message;
    const std::pair<const char*, const char*> expected[] = {
        {"DomainName", "new.example.com"},
        {"RequestedHostname", "bmc-7"},
        {"UseSuffixWhenRegistering", "TRUE"},
        {"RegisterThisConnectionsAddress", "FALSE"},
        {"DNSServerAddresses", R"({"192.0.2.4", "192.0.2.5", "192.0.2.6"})"},
        {"DHCPOptionsToUse", "{14}"}};
    for (const auto& [property, value] : expected)
        EXPECT_EQ(get(dnsSettingClass, property), value);
    EXPECT_EQ(textOf(instance(dnsSettingClass, 2), "DomainName"), "old.example.com")
        << "that is another LAN's";
    EXPECT_TRUE(modify(dnsSettingClass, {{"DNSServerAddresses", texts({"2001:db8::53"})}}, 1).ok());
    EXPECT_EQ(textOf(instance(dnsSettingClass, 1), "DNSServerAddresses"), R"({"2001:db8::53"})");
    EXPECT_TRUE(modify(dnsSettingClass, {{"DNSServerAddresses", texts({})}}, 1).ok());
    EXPECT_EQ(textOf(instance(dnsSettingClass, 1), "DNSServerAddresses"), "<none>");

    EXPECT_TRUE(modify(dnsSettingClass, {}).ok());
    EXPECT_THAT(requests(oem::setDns), IsEmpty()) << "nothing is changed";

    const Reply general = modify(generalClass, {{"AppendParentSuffixes", {CMPI_boolean, true}},
                                                {"DNSSuffixesToAppend", texts({"a.example", "b"})}});
    EXPECT_TRUE(general.ok()) << general.message;
    EXPECT_EQ(get(generalClass, "DNSSuffixesToAppend"), R"({"a.example", "b"})");
    EXPECT_EQ(get("CIM_DNSProtocolEndpoint", "AppendParentSuffixes"), "TRUE");
}

TEST_F(Clients, ofDnsRefuseWhatIsWrongAndChangeNothing) {
    const std::string label(64, 'a');
    const std::string domain =
        label.substr(1) + '.' + label.substr(1) + '.' + label.substr(1) + '.' + label.substr(1);
    constexpr char notHost[] = "RequestedHostname is no host name: letters, digits and hyphens, at most 63";
    constexpr char notServer[] = "DNSServerAddresses has a text that is no IPv4 address of a server";
    constexpr char tooLong[] =
        "DNSSuffixesToAppend has more than 255 characters in all, which the BMC has no room for";
    const struct {
        const char* className;
        const char* name;
        broker::Value value;
        std::string message;
    } cases[] = {
        {dnsSettingClass, "RequestedHostname", text("bmc_7"), notHost},
        {dnsSettingClass, "RequestedHostname", text("bmc.example"), notHost},
        {dnsSettingClass, "RequestedHostname", text("-bmc"), notHost},
        {dnsSettingClass, "RequestedHostname", text("b\xC3\xBC"), notHost},
        {dnsSettingClass, "RequestedHostname", text(label), notHost},
        {dnsSettingClass, "DomainName", text("example..com"), "DomainName is no domain name"},
        {dnsSettingClass, "DomainName", text("example.com."), "DomainName is no domain name"},
        {dnsSettingClass, "DomainName", text(domain), "DomainName is no domain name"},
        {dnsSettingClass, "DomainName", number(1), "DomainName is no domain name"},
        {dnsSettingClass, "DNSServerAddresses", texts({"192.0.2.4", "192.0.2.256"}), notServer},
        {dnsSettingClass, "DNSServerAddresses", texts({"2001:db8::53"}), notServer},
        {dnsSettingClass, "DNSServerAddresses", texts({"0.0.0.0"}), notServer},
        {dnsSettingClass, "DNSServerAddresses", texts({"192.0.2.1", "192.0.2.2", "192.0.2.3", "192.0.2.4"}),
         "DNSServerAddresses has more than 3 addresses, which the BMC has no room for"},
        {dnsSettingClass, "DHCPOptionsToUse", arrayOf(CMPI_uint16, {number(8), number(3)}),
         "DHCPOptionsToUse has another number than 8, 14 and 17"},
        {dnsSettingClass, "UseSuffixWhenRegistering", text("perhaps"),
         "UseSuffixWhenRegistering is no boolean"},
        {dnsSettingClass, "ElementName", text("Mine"), "Invalid Property(s): ElementName"},
        {generalClass, "DNSSuffixesToAppend", texts({"a", "b", "c", "d", "e", "f", "g"}),
         "DNSSuffixesToAppend has more than 6 names, which the BMC has no room for"},
        {generalClass, "DNSSuffixesToAppend", texts({"a b"}),
         "DNSSuffixesToAppend has a text that is no domain name"},
        {generalClass, "DNSSuffixesToAppend", texts({domain.substr(64).c_str(), domain.substr(64).c_str()}),
         tooLong},
    };
    for (const auto& each : cases) {
        // A right value beside it is not written either.
        const bool isGeneral = each.className == generalClass;
        const NamedValues right =
            isGeneral ? NamedValues{{"AppendParentSuffixes", {CMPI_boolean, true}}}
                      : NamedValues{{"RegisterThisConnectionsAddress", {CMPI_boolean, false}}};
        NamedValues changes = right;
        changes.push_back({each.name, each.value});
        EXPECT_THAT(modify(each.className, changes), Refuses(invalid, each.message)) << each.name;
        EXPECT_THAT(requests(oem::setDns), IsEmpty());
    }
    EXPECT_EQ(
        broker
            .modifyInstance(path(dnsSettingClass, {{"InstanceID", text("DNSSettingData9*Channel-1*eth0-4")}}),
                            instance(dnsSettingClass))
            .code,
        CMPI_RC_ERR_NOT_FOUND);
}

// The settings change with their last block, whatever becomes of those before.
TEST_F(Clients, ofDnsKeepTheirSettingsWhenTheBmcRefusesABlock) {
    bmc().addFault({.netFn = oem::setDns.netFn, .command = oem::setDns.number, .value = 0xD5, .skip = 11});
    EXPECT_THAT(modify(dnsSettingClass, {{"DomainName", text("new.example.com")}}),
                Refuses(CMPI_RC_ERR_FAILED, "The BMC refuses the DNS settings"));
    EXPECT_EQ(requests(oem::setDns).size(), 12U);
    EXPECT_EQ(get(dnsSettingClass, "DomainName"), "lab.example.com");
    bmc().clearFaults();
    EXPECT_TRUE(modify(dnsSettingClass, {{"DomainName", text("new.example.com")}}).ok());
    EXPECT_EQ(get(dnsSettingClass, "DomainName"), "new.example.com");
}

} // namespace
