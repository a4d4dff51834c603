// Which address an endpoint of the BMC gets: CIM_IPAssignmentSettingData, CIM_StaticIPAssignmentSettingData
// and the method of CIM_IPConfigurationService.
#include "network_fixture.h"

#include <map>

namespace {

using broker::NamedValues;
using broker::ObjectPath;
using broker::Reply;
using testing::ElementsAre;
using testing::IsEmpty;

constexpr char settingClass[] = "CIM_StaticIPAssignmentSettingData";
constexpr char serviceMethod[] = "ApplySettingToIPProtocolEndpoint";
namespace parameter = ipmi::lan::parameter;

class Assignment : public Network {
protected:
    Reply modify(const NamedValues& changes, const broker::PropertyList& properties = {}) {
        broker::Instance setting = instance(settingClass);
        for (const auto& [name, value] : changes)
            broker::set(setting.properties, name, value);
        return broker.modifyInstance(setting.path, setting, properties);
    }
    void stage(const NamedValues& changes) {
        const Reply reply = modify(changes);
        EXPECT_TRUE(reply.ok()) << reply.message;
    }

    static ObjectPath assignment(const std::string& instanceId) {
        return path("CIM_IPAssignmentSettingData", {{"InstanceID", text(instanceId)}});
    }
    ObjectPath endpoint(std::size_t index) { return instance("CIM_IPProtocolEndpoint", index).path; }

    static NamedValues naming(const ObjectPath& configuration, const ObjectPath& endpointPath) {
        return {{"Configuration", reference(configuration)}, {"Endpoint", reference(endpointPath)}};
    }
    Reply apply(const ObjectPath& configuration, const ObjectPath& endpointPath) {
        return applyWith(naming(configuration, endpointPath));
    }
    Reply applyWith(const NamedValues& arguments) {
        const ObjectPath service = instance("CIM_IPConfigurationService").path;
        platformCalls.texts.clear();
        return broker.invokeMethod(service, serviceMethod, arguments);
    }
    void expectDone(const Reply& reply) {
        EXPECT_THAT(reply, Returns(0));
        EXPECT_EQ(jobOf(reply), Job::completed(serviceMethod));
    }
    void expectRefused(const Reply& reply, CMPIrc code, const std::string& message) {
        EXPECT_THAT(reply, Refuses(code, message));
        EXPECT_EQ(lastJob(), Job::failed(serviceMethod));
    }
    // The hooks that change the BMC, of the last request.
    static std::vector<std::string> setters() {
        auto hooks = platformCalls.hooks();
        std::erase_if(hooks, [](const std::string& hook) { return !hook.starts_with("CIM_Set"); });
        return hooks;
    }
    std::vector<std::vector<std::uint8_t>> changesOfLans() const {
        return requests(ipmi::command::setLanConfiguration);
    }

    const ObjectPath dhcp = assignment("IPAssignmentSettingData-DHCP");
    const ObjectPath fixed = assignment("IPAssignmentSettingData-Static");
    const NamedValues ipv4 = {{"IPv4Address", text("192.0.2.99")},
                              {"SubnetMask", text("255.255.255.128")},
                              {"GatewayIPv4Address", text("192.0.2.126")}};
    const NamedValues ipv6 = {{"IPv6Address", text("2001:db8::99")},
                              {"IPv6SubnetPrefixLength", number(56)},
                              {"GatewayIPv6Address", text("2001:db8::1")}};
};

TEST_F(Assignment, choicesAndServiceAreListed) {
    const auto choices = list("CIM_IPAssignmentSettingData");
    EXPECT_THAT(textsOf(choices, "InstanceID"),
                ElementsAre("IPAssignmentSettingData-DHCP", "IPAssignmentSettingData-Static"));
    EXPECT_THAT(textsOf(choices, "AddressOrigin"), ElementsAre("4", "3"));
    EXPECT_EQ(get("CIM_IPConfigurationService", "Name"), "IPConfigurationService1");
    EXPECT_EQ(get("CIM_IPConfigurationService", "SystemName"), "controller");
}

TEST_F(Assignment, settingIsStaged) {
    const auto first = instance(settingClass);
    EXPECT_EQ(textOf(first, "InstanceID"), "StaticIPAssignmentSettingData1");
    EXPECT_EQ(textOf(first, "AddressOrigin"), "3");
    EXPECT_EQ(textOf(first, "ElementName"), "Static IP Configuration");
    EXPECT_EQ(textOf(first, "IPv4Address"), "0.0.0.0");
    EXPECT_EQ(textOf(first, "GatewayIPv6Address"), "::");

    bmc().recordMessages(100);
    stage(ipv4);
    stage(ipv6);
    stage({{"IPv6SubnetPrefixLength", number(128)}, {"IPv6AddressType", number(5)}});
    EXPECT_THAT(bmc().recordedMessages(), IsEmpty());
    const std::pair<const char*, const char*> expected[] = {{"IPv4Address", "192.0.2.99"},
                                                            {"SubnetMask", "255.255.255.128"},
                                                            {"GatewayIPv4Address", "192.0.2.126"},
                                                            {"IPv6Address", "2001:db8::99"},
                                                            {"IPv6AddressType", "5"},
                                                            {"IPv6SubnetPrefixLength", "128"},
                                                            {"GatewayIPv6Address", "2001:db8::1"}};
    ASSERT_EQ(list(settingClass).size(), 1U);
    for (const auto& [property, value] : expected)
        EXPECT_EQ(get(settingClass, property), value);

    // A property that the request lists but does not hold gets its default.
    broker::Instance setting = instance(settingClass);
    std::erase_if(setting.properties, [](const auto& property) { return property.name == "SubnetMask"; });
    const Reply reset = broker.modifyInstance(setting.path, setting, {{"SubnetMask"}});
    EXPECT_TRUE(reset.ok()) << reset.message;
    EXPECT_EQ(get(settingClass, "SubnetMask"), "0.0.0.0");
    EXPECT_EQ(get(settingClass, "IPv4Address"), "192.0.2.99");
}

TEST_F(Assignment, settingTakesOnlyAddresses) {
    const std::tuple<const char*, broker::Value> wrong[] = {
        {"IPv4Address", text("192.0.2.256")},
        {"SubnetMask", text("255.255.255")},
        {"GatewayIPv4Address", text("")},
        {"GatewayIPv4Address", number(1)},
        {"IPv6Address", text("2001:db8::g")},
        {"IPv6Address", {CMPI_string, {}}},
        {"IPv6AddressType", text("global")},
        {"IPv6SubnetPrefixLength", number(129)},
        {"IPv6SubnetPrefixLength", number(64, CMPI_uint32)},
        {"GatewayIPv6Address", text("192.0.2.1")},
    };
    for (const auto& [name, value] : wrong)
        EXPECT_THAT(modify({{name, value}}), Refuses(invalid, std::string(name) + " Parameter is Invalid"));
    EXPECT_THAT(modify({{"ElementName", text("Mine")}}, {{"ElementName"}}),
                Refuses(invalid, "Invalid parameter or Invalid Property(Not Settable)"));
    EXPECT_THAT(modify({{"AddressOrigin", number(4)}, {"ElementName", text("Mine")}}),
                Refuses(invalid, "Invalid Property(s): AddressOrigin, ElementName"));
    EXPECT_THAT(
        broker.modifyInstance(path(settingClass, {{"InstanceID", text("StaticIPAssignmentSettingData2")}}),
                              instance(settingClass)),
        Refuses(CMPI_RC_ERR_NOT_SUPPORTED, "CIM_ERR_NOT_SUPPORTED"));
    EXPECT_EQ(get(settingClass, "IPv4Address"), "0.0.0.0");
}

TEST_F(Assignment, staticIpv4ReachesTheBmc) {
    stage(ipv4);
    const ObjectPath lan2 = endpoint(3);
    platformCalls.broken = {"db_delete_static_ip"}; // which is no failure of what was asked for
    expectDone(apply(fixed, lan2));
    EXPECT_EQ(get(settingClass, "IPv4Address"), "192.0.2.99");
    platformCalls.broken = {};
    bmc().recordMessages(200);
    expectDone(apply(fixed, lan2));
    EXPECT_THAT(changesOfLans(), ElementsAre(ElementsAre(3, parameter::ipv4Source, 1),
                                             ElementsAre(3, parameter::ipv4Address, 192, 0, 2, 99),
                                             ElementsAre(3, parameter::subnetMask, 255, 255, 255, 128),
                                             ElementsAre(3, parameter::defaultGateway, 192, 0, 2, 126)));
    EXPECT_THAT(setters(), ElementsAre("CIM_SetIPv4Source(1, 3, 30)", "CIM_SetIPv4Address(*, 3, 30)",
                                       "CIM_SetIPv4NetMask(*, 3, 30)", "CIM_SetIPv4Gateway(*, 3, 30)"));
    EXPECT_EQ(lan("eth1", "source"), "static");
    EXPECT_EQ(lan("eth1", "address"), "192.0.2.99");
    EXPECT_EQ(lan("eth1", "netmask"), "255.255.255.128");
    EXPECT_EQ(lan("eth1", "gateway"), "192.0.2.126");
    EXPECT_EQ(lan("eth0", "address"), "192.0.2.10");
    EXPECT_EQ(get(settingClass, "IPv4Address"), "0.0.0.0"); // no longer staged
    const auto changed = instance("CIM_IPProtocolEndpoint", 3);
    EXPECT_EQ(textOf(changed, "IPv4Address"), "192.0.2.99");
    EXPECT_EQ(textOf(changed, "AddressOrigin"), "3");
}

TEST_F(Assignment, dhcpYieldsAnAddress) {
    const auto endpoints = list("CIM_IPProtocolEndpoint");
    expectDone(apply(dhcp, endpoints[0].path));
    EXPECT_EQ(lan("eth0", "source"), "dhcp");
    EXPECT_EQ(get("CIM_IPProtocolEndpoint", "IPv4Address"), "192.0.2.77");
    EXPECT_EQ(get("CIM_IPProtocolEndpoint", "AddressOrigin"), "4");

    // Keys and InstanceID are compared without regard to case.
    ObjectPath lower = endpoints[1].path;
    broker::set(lower.keys, "SystemCreationClassName", text("cim_spcomputersystem"));
    stage(ipv6);
    expectDone(apply(fixed, endpoints[1].path));
    expectDone(apply(assignment("IPAssignmentSettingData-dhcp"), lower));
    EXPECT_EQ(lan("eth0", "ipv6"), "2001:db8::a/64, 2001:db8::b/128");
}

TEST_F(Assignment, staticIpv6ReachesTheBmc) {
    stage(ipv6);
    expectDone(apply(fixed, endpoint(1)));
    EXPECT_EQ(lan("eth0", "ipv6"), "2001:db8::99/56");
    EXPECT_EQ(lan("eth0", "ipv6Router"), "2001:db8::1");
    EXPECT_THAT(setters(), ElementsAre("CIM_SetIPv6Source(1, 1, 30)", "CIM_SetIPv6Address(*, 1, 30)",
                                       "CIM_SetIPv6Prefix(56, 1, 30)", "CIM_SetIPv6Gateway(*, 1, 30)"));
    const auto changed = instance("CIM_IPProtocolEndpoint", 1);
    EXPECT_EQ(textOf(changed, "IPv6Address"), "2001:db8::99");
    EXPECT_EQ(textOf(changed, "IPv6SubnetPrefixLength"), "56");
    EXPECT_EQ(textOf(changed, "AddressOrigin"), "3");
    EXPECT_EQ(get(settingClass, "IPv6Address"), "2001:db8::99"); // still staged
}

TEST_F(Assignment, refusesWhatItIsNotGiven) {
    const ObjectPath first = endpoint(0);
    ObjectPath nameless = first;
    broker::set(nameless.keys, "Name", text(""));
    ObjectPath unknown = first;
    broker::set(unknown.keys, "Name", text("IPProtocolEndpoint9*Channel-1*eth0-4"));
    const ObjectPath setting = instance(settingClass).path;
    const NamedValues both = naming(dhcp, first);

    constexpr const char *noConfiguration = "Configuration Parameter is Invalid",
                         *noEndpoint = "Endpoint Parameter is Invalid",
                         *empty = "Configuration or Endpoint Parameters are Empty",
                         *unknownKeys = "Input key properties are Invalid";
    const std::tuple<NamedValues, CMPIrc, const char*> cases[] = {
        {{}, invalid, noConfiguration},
        {{{"Configuration", text("DHCP")}, both[1]}, invalid, noConfiguration},
        {naming(setting, first), invalid, noConfiguration},
        {{both[0]}, invalid, noEndpoint},
        {naming(dhcp, dhcp), invalid, noEndpoint},
        {naming(dhcp, nameless), invalid, empty},
        {naming(assignment(""), first), invalid, empty},
        {naming(assignment("DHCP"), first), invalid, "IPAssignmentSettingData InstanceID is Invalid"},
        {naming(assignment("IPAssignmentSettingData-BOOTP"), first), CMPI_RC_ERR_FAILED, unknownKeys},
        {naming(dhcp, unknown), CMPI_RC_ERR_FAILED, unknownKeys},
    };
    for (const auto& [arguments, code, message] : cases)
        expectRefused(applyWith(arguments), code, message);

    bmc().recordMessages(200);
    expectRefused(apply(fixed, first), CMPI_RC_ERR_FAILED,
                  "IPv4Address, SubnetMask or GatewayIPv4Address Parameters are Invalid");
    expectRefused(apply(fixed, endpoint(1)), CMPI_RC_ERR_FAILED,
                  "IPv6Address or GatewayIPv6Address Parameters are Invalid");
    EXPECT_THAT(changesOfLans(), IsEmpty());

    ObjectPath service = instance("CIM_IPConfigurationService").path;
    EXPECT_THAT(broker.invokeMethod(service, "Apply", both),
                Refuses(CMPI_RC_ERR_NOT_SUPPORTED, "Invalid Method name"));
    service.keys.pop_back();
    EXPECT_THAT(broker.invokeMethod(service, serviceMethod, both),
                Refuses(invalid, "Invalid Key Properties"));
}

// What the broker's enumerations give decides, whoever serves the classes.
class Routed : public Assignment {
protected:
    void SetUp() override {
        broker.setRouter([this](const broker::Request& request) {
            Reply reply;
            if (request.path.className == failing)
                return Reply{.code = CMPI_RC_ERR_FAILED};
            reply.instances = served[request.path.className];
            return reply;
        });
        add(dhcp.className, dhcp.keys);
        add(fixed.className, fixed.keys);
    }
    void add(const std::string& className, const NamedValues& properties) {
        served[className].push_back({path(className), properties});
    }
    // The method's status, as this library's function gives it.
    std::pair<CMPIrc, std::string> run(const ObjectPath& configuration, const std::string& endpointName) {
        const ObjectPath named = path("CIM_IPProtocolEndpoint", {{"SystemCreationClassName", text("a")},
                                                                 {"CreationClassName", text("b")},
                                                                 {"SystemName", text("c")},
                                                                 {"Name", text(endpointName)}});
        add(named.className, named.keys);
        broker::Scope request(broker);
        CMPIStatus status{CMPI_RC_OK, nullptr};
        PH_ApplySettingToIPProtocolEndpoint(
            broker.handle(), request.makeResult(), request.make(path("CIM_IPConfigurationService")),
            request.makeContext(), request.makeArgs(naming(configuration, named)), request.makeArgs(),
            &status);
        return {status.rc, broker::toString(status.msg)};
    }

    std::map<std::string, std::vector<broker::Instance>> served;
    std::string failing;
};

TEST_F(Routed, failuresOfEnumerationsAreTold) {
    const std::pair<const char*, const char*> cases[] = {
        {"CIM_IPAssignmentSettingData", "Failed to Enumerate IPAssignmentSettingData instances"},
        {"CIM_IPProtocolEndpoint", "Failed to Enumerate IPProtocolEndpoint instances"},
        {settingClass, "Failed to Enumerate StaticIPAssignSettingData instances"},
    };
    for (const auto& [className, message] : cases) {
        failing = className;
        EXPECT_EQ(run(fixed, "x*Channel-1*eth0-4"), std::pair(CMPI_RC_ERR_FAILED, std::string(message)));
    }
    failing = "";
    EXPECT_EQ(run(fixed, "x*Channel-1*eth0-4").second, cases[2].second); // none staged
    EXPECT_EQ(run(fixed, "x*Channel-1*eth0-44").second, "Unable to fetch IP version");
    const ObjectPath other = assignment("StaticIPAssignmentSettingData1");
    add(dhcp.className, other.keys);
    EXPECT_EQ(run(other, "x*Channel-1*eth0-4"),
              std::pair(CMPI_RC_ERR_INVALID_PARAMETER,
                        std::string("IPAssignmentSettingData InstanceID is Invalid")));
    broker.failCall("newObjectPath", 2); // the first is the job's
    EXPECT_EQ(run(dhcp, "x*Channel-1*eth0-4").second, "Failed to Create New Object Path");
    broker.failCall("newObjectPath", 1);
    EXPECT_EQ(run(dhcp, "x*Channel-1*eth0-4").second, "Create CMPIObjectPath failed.");
    broker.failCall("newObjectPath", 0);
}

TEST_F(Routed, firstOfSeveralSettingsIsApplied) {
    add(settingClass, ipv4);
    add(settingClass, {{"IPv4Address", text("0.0.0.0")}});
    EXPECT_EQ(run(fixed, "x*Channel-1*eth0-4"), std::pair(CMPI_RC_OK, std::string()));
    EXPECT_EQ(lan("eth0", "address"), "192.0.2.99");
}

TEST_F(Routed, namesAndValuesThatCannotBeAppliedAreRefused) {
    constexpr char noChannel[] = "Channel Number not found in InstanceID property";
    EXPECT_EQ(run(dhcp, "x*eth0-4").second, "Channel Number not found in Name property");
    EXPECT_EQ(run(dhcp, "x*Channel-1*eth0-44").second, "IP Version not found in Name property");
    add(settingClass, {{"IPv4Address", text("192.0.2")},
                       {"IPv6Address", text("2001:db8::99")},
                       {"IPv6SubnetPrefixLength", number(129)}});
    EXPECT_EQ(run(fixed, "x*Channel-*eth0-4").second, noChannel);
    EXPECT_EQ(run(fixed, "x*eth0-6").second, noChannel);
    EXPECT_EQ(run(fixed, "x*Channel-1*eth0-4").second,
              "Failed to ConvertStrToIP in StaticIPAssignmentSettingData");
    platformCalls.texts.clear();
    EXPECT_EQ(run(fixed, "x*Channel-1*eth0-6").second,
              "Failed to SetIPv6Prefix in StaticIPAssignmentSettingData");
    EXPECT_THAT(setters(), testing::Not(testing::Contains(testing::StartsWith("CIM_SetIPv6Prefix"))))
        << "a platform is not asked to judge it";
    EXPECT_EQ(lan("eth0", "source"), "static");
    for (const char* none : {"0.0.0.0", "000.0.0.0"}) {
        served[settingClass] = {{path(settingClass), {ipv4[0], ipv4[1], {"GatewayIPv4Address", text(none)}}}};
        EXPECT_EQ(
            run(fixed, "x*Channel-1*eth0-4"),
            std::pair(CMPI_RC_ERR_FAILED,
                      std::string("IPv4Address, SubnetMask or GatewayIPv4Address Parameters are Invalid")));
    }
    served[settingClass] = {{path(settingClass), {{"IPv6Address", text("2001")}}}};
    EXPECT_EQ(run(fixed, "x*Channel-1*eth0-6").second,
              "Failed in SetProperty in StaticIPAssignmentSettingData - IP Conversion Failed");
    // A gateway that is none is left out.
    served[settingClass] = {{path(settingClass), {ipv6[0], ipv6[1], {"GatewayIPv6Address", text("none")}}}};
    EXPECT_EQ(run(fixed, "x*Channel-1*eth0-6").second, "");
    EXPECT_EQ(lan("eth0", "ipv6"), "2001:db8::99/56");
    EXPECT_EQ(lan("eth0", "ipv6Router"), "::");
}

// Each change of a LAN parameter fails in turn; those before it stay.
TEST_F(Assignment, refusalsOfTheBmcAreTold) {
    constexpr char source[] =
        "Failed in SetProperty in StaticIPAssignmentSettingData - Set SetIPv4Source Failed";
    constexpr char address[] = "Failed to SetIPv4Address in StaticIPAssignmentSettingData";
    struct Case {
        ObjectPath configuration;
        std::size_t endpoint;
        unsigned writes; // that go well before
        const char* message;
    };
    const Case cases[] = {
        {dhcp, 0, 0, source},
        {dhcp, 1, 0, "Failed in SetProperty in StaticIPAssignmentSettingData - Set SetIP6Source Failed"},
        {fixed, 0, 0, source},
        {fixed, 0, 1, address},
        {fixed, 0, 2, address},
        {fixed, 0, 3, address},
        {fixed, 1, 0, "Failed in SetProperty in StaticIPAssignmentSettingData - Set SetIPv6Source Failed"},
        {fixed, 1, 1, "Failed to SetIPv6Address in StaticIPAssignmentSettingData"},
        {fixed, 1, 2, "Failed to SetIPv6Prefix in StaticIPAssignmentSettingData"},
        {fixed, 1, 3, address},
    };
    stage(ipv4);
    stage(ipv6);
    for (const auto& [configuration, index, writes, message] : cases) {
        createBmc(twoLans);
        const ObjectPath endpointPath = endpoint(index);
        failCommand(ipmi::command::setLanConfiguration, writes);
        expectRefused(apply(configuration, endpointPath), CMPI_RC_ERR_INVALID_PARAMETER, message);
        EXPECT_EQ(get(settingClass, "IPv4Address"), "192.0.2.99"); // still staged
    }
    createBmc(twoLans);
    EXPECT_EQ(lan("eth0", "source"), "static");

    std::filesystem::remove(stateFile);
    const broker::Scope scope(broker);
    CMPIStatus status{CMPI_RC_OK, nullptr};
    EXPECT_EQ(PH_ApplySettingToDHCPIP(broker.handle(), "x*Channel-1*eth0-4", &status), -1);
    EXPECT_EQ(broker::toString(status.msg), "Failed in SetProperty in StaticIPAssignmentSettingData");
}

} // namespace
