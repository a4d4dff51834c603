#include "network_fixture.h"

#include <dlfcn.h>
#include <fstream>
#include <functional>
#include <sstream>
#include <sys/stat.h>

namespace {

bool nameHasEnd = true;

} // namespace

extern "C" __attribute__((visibility("default"))) int
CIM_GetLANIndex(IPMI20_SESSION_T* session, uint8_t index, char* name, int timeout) {
    static const auto real = reinterpret_cast<decltype(&CIM_GetLANIndex)>(dlsym(RTLD_NEXT, __func__));
    if (!nameHasEnd)
        std::memset(name, 'e', CIM_INTERFACE_NAME_SIZE);
    return nameHasEnd ? real(session, index, name, timeout) : 0;
}

namespace {

using broker::Reply;
using testing::ElementsAre;
using testing::IsEmpty;

constexpr char alreadyActive[] = "This EthernetPort is already active";
constexpr char alreadyDisabled[] = "This EthernetPort is already disabled";
constexpr char lastLan[] = "Atleast one interface must be working for a BMC";
constexpr char lastBond[] = "Atleast one interface should be enabled for communication with BMC";

class Ports : public Network {
protected:
    std::string requestedState(const std::string& interfaceName) const {
        std::ifstream file(sysroot.place("/tmp/ethport_reqstate_" + interfaceName));
        return {std::istreambuf_iterator<char>(file), {}};
    }

    Reply request(const broker::ObjectPath& port, const broker::Value& state,
                  const std::string& method = "RequestStateChange") {
        return broker.invokeMethod(port, method, {{"RequestedState", state}});
    }
    Reply request(const char* deviceId, const broker::Value& state) {
        broker::ObjectPath port = instance("CIM_EthernetPort").path;
        broker::set(port.keys, "DeviceID", text(deviceId));
        return request(port, state);
    }

    // A state asked of an interface without a job around it: 0, or the message of the refusal, or "-1".
    std::string change(const char* interfaceName, int state, int lanIndex = 1) {
        const broker::Scope scope(broker);
        CMPIStatus status{CMPI_RC_OK, nullptr};
        const int result =
            RequestStateChange(broker.handle(), nullptr, nullptr, &status, lanIndex, interfaceName, state);
        EXPECT_EQ(status.rc != CMPI_RC_OK, status.msg != nullptr);
        EXPECT_TRUE(result == 0 || result == -1);
        if (status.msg != nullptr) {
            EXPECT_EQ(status.rc, CMPI_RC_ERR_FAILED);
            return broker::toString(status.msg);
        }
        return std::to_string(result);
    }
};

TEST_F(Ports, areTheLansOfTheBmc) {
    struct Expected {
        const char* property;
        const char* first;
        const char* second;
    };
    const Expected expected[] = {
        {"DeviceID", "EthernetPort1:eth0:1", "EthernetPort2:eth1:2"},
        {"SystemCreationClassName", "CIM_SPComputerSystem", "CIM_SPComputerSystem"},
        {"SystemName", "IPMI Controller 20", "IPMI Controller 20"},
        {"CreationClassName", "CIM_EthernetPort", "CIM_EthernetPort"},
        {"ElementName", "Logical representation of Network Communications",
         "Logical representation of Network Communications"},
        {"Name", "EthernetPort", "EthernetPort"},
        {"PortType", "50", "51"},
        {"NetworkAddresses", "{\"00:11:22:33:44:\"}", "{\"00:11:22:33:44:\"}"},
        {"Capabilities", "{3}", "{3}"},
        {"EnabledCapabilities", "{0}", "{0}"},
        {"LinkTechnology", "2", "2"},
        {"PermanentAddress", "00:11:22:33:44:55", "00:11:22:33:44:66"},
        {"EnabledState", "2", "3"},
        {"Speed", "4093640704", "838860800"},
        {"MaxSpeed", "4093640704", "838860800"},
        {"RequestedSpeed", "4093640704", "838860800"},
        {"RequestedState", "0", "3"},
        {"FullDuplex", "TRUE", "TRUE"},
        {"AutoSense", "TRUE", "TRUE"},
        {"ActiveMaximumTransmissionUnit", "9000", "9000"},
    };
    EXPECT_EQ(change("eth1", 3, 2), "0");
    const auto ports = list("CIM_EthernetPort");
    ASSERT_EQ(ports.size(), 2U);
    for (const auto& [property, first, second] : expected) {
        EXPECT_EQ(get(ports[0], property), first) << property;
        EXPECT_EQ(get(ports[1], property), second) << property;
    }
    EXPECT_EQ(ports[0].properties.size(), std::size(expected));
}

// Interface name, MAC, whether it is enabled, PHY, of one LAN after the other.
TEST_F(Ports, areAskedForOneAfterTheOther) {
    bmc().recordMessages(200);
    list("CIM_EthernetPort");
    std::vector<int> asked;
    for (const auto& message : bmc().recordedMessages())
        if (message.netFn == 0x0C ||
            (message.netFn == 0x30 && message.command != 0x23 && message.command != 0x26))
            asked.push_back(message.command);
    EXPECT_THAT(asked, ElementsAre(0x20, 0x02, 0x21, 0x25, 0x20, 0x02, 0x21, 0x25));
}

TEST_F(Ports, aNameWithoutEndGetsOne) {
    nameHasEnd = false;
    EXPECT_EQ(get("CIM_LANEndpoint", "Name"), "LANEndpoint-" + std::string(CIM_INTERFACE_NAME_SIZE - 1, 'e'));
    nameHasEnd = true;
}

TEST_F(Ports, endpointsAreListedLikePorts) {
    EXPECT_EQ(change("eth1", 3, 2), "0");
    const auto endpoints = list("CIM_LANEndpoint");
    ASSERT_EQ(endpoints.size(), 2U);
    EXPECT_EQ(get(endpoints[0], "Name"), "LANEndpoint-eth0");
    EXPECT_EQ(get(endpoints[0], "NameFormat"), "ClassName-InterfaceName");
    EXPECT_EQ(get(endpoints[0], "ProtocolIFType"), "6");
    EXPECT_EQ(get(endpoints[0], "MACAddress"), "00:11:22:33:44:55");
    EXPECT_EQ(get(endpoints[0], "LANID"), "1234");
    EXPECT_EQ(get(endpoints[0], "EnabledState"), "2");
    EXPECT_EQ(get(endpoints[0], "RequestedState"), "12");
    EXPECT_EQ(get(endpoints[0], "ElementName"), "LANEndPoint for eth0");
    EXPECT_EQ(get(endpoints[1], "LANID"), "0");
    EXPECT_EQ(get(endpoints[1], "EnabledState"), "3");

    LANEndpointRecord record{};
    const std::pair<int, int> states[] = {{0, 3}, {1, 2}, {2, 2}, {3, 2}, {4, 0}};
    for (const auto& [enable, state] : states) {
        EXPECT_EQ(PH_Fill_LANEndpoint("eth0", &record, "", enable, "0"), 0);
        EXPECT_EQ(record.EnabledState, state) << enable;
    }

    EXPECT_EQ(get("CIM_PortController", "DeviceID"), "PortController-1.0.0");
    EXPECT_EQ(get("CIM_PortController", "EnabledState"), "5");
}

TEST_F(Ports, bondTakesThePlaceOfAllLans) {
    bmc().setBond(true);
    const auto ports = list("CIM_EthernetPort");
    ASSERT_EQ(ports.size(), 1U);
    EXPECT_EQ(get(ports[0], "DeviceID"), "EthernetPort1:bond0:1");
    EXPECT_EQ(get(ports[0], "EnabledState"), "2");
    const auto endpoints = list("CIM_LANEndpoint");
    ASSERT_EQ(endpoints.size(), 1U);
    EXPECT_EQ(get(endpoints[0], "Name"), "LANEndpoint-bond0");
    EXPECT_EQ(get(endpoints[0], "EnabledState"), "2");
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

TEST_F(Ports, speedIsFormedIn32Bits) {
    const std::tuple<std::uint16_t, const char*, const char*> cases[] = {
        {10, "83886080", "50"}, {100, "838860800", "51"}, {1000, "4093640704", "50"}, {0, "0", "50"}};
    for (const auto& [speed, published, type] : cases) {
        bmc().setLink("eth0", true, speed);
        EXPECT_EQ(get("CIM_EthernetPort", "Speed"), published);
        EXPECT_EQ(get("CIM_EthernetPort", "PortType"), type);
    }
}

// A BMC that has no OEM command, and one that answers nothing but what lists the LANs.
TEST_F(Ports, areListedByABmcThatSaysLittle) {
    for (std::uint8_t command = 0x20; command <= 0x26; ++command)
        failCommand(0x30, command, 0xC1);
    auto port = instance("CIM_EthernetPort", 1);
    EXPECT_EQ(get(port, "DeviceID"), "EthernetPort2:eth1:2");
    EXPECT_EQ(get(port, "EnabledState"), "2");
    EXPECT_EQ(get(port, "Speed"), "0");
    EXPECT_EQ(get(port, "ActiveMaximumTransmissionUnit"), "1500");

    failCommand(0x0C, 0x02, 0xFF);
    port = instance("CIM_EthernetPort");
    EXPECT_EQ(get(port, "PermanentAddress"), "00:00:00:00:00:00");
    EXPECT_EQ(get(instance("CIM_LANEndpoint"), "LANID"), "0");
    EXPECT_EQ(get(instance("CIM_IPProtocolEndpoint"), "IPv4Address"), "0.0.0.0");
}

TEST_F(Ports, areNotListedWithoutABmc) {
    std::filesystem::remove(stateFile);
    for (const char* className : {"CIM_EthernetPort", "CIM_LANEndpoint", "CIM_IPProtocolEndpoint"}) {
        const Reply reply = broker.enumerateInstances(path(className));
        EXPECT_EQ(reply.code, CMPI_RC_ERR_FAILED) << className;
        EXPECT_EQ(reply.message, "Failed to Enumerate Instance");
    }
    EXPECT_EQ(change("eth0", 2), "-1");
    EXPECT_EQ(PH_Get_All_Lanchannels(broker.handle(), nullptr), -1);
    createBmc("{}"); // no LAN
    EXPECT_THAT(list("CIM_EthernetPort"), IsEmpty());
}

TEST_F(Ports, lanIsSwitched) {
    EXPECT_EQ(change("eth0", 2), alreadyActive);
    EXPECT_EQ(change("eth0", 3), "0");
    EXPECT_EQ(lan("eth0", "enable"), "off");
    EXPECT_EQ(requestedState("eth0"), "03");
    EXPECT_EQ(change("eth0", 3), alreadyDisabled);
    EXPECT_EQ(change("eth1", 3, 2), lastLan);
    EXPECT_EQ(lan("eth1", "enable"), "both");
    EXPECT_EQ(requestedState("eth1"), "");
    EXPECT_EQ(change("eth0", 2), "0");
    EXPECT_EQ(lan("eth0", "enable"), "both");
    EXPECT_EQ(requestedState("eth0"), "02");
    EXPECT_THAT(pauses, IsEmpty());

    EXPECT_EQ(change("eth0", 11), "0");
    EXPECT_THAT(pauses, ElementsAre(7));
    EXPECT_EQ(lan("eth0", "enable"), "both");
    EXPECT_EQ(requestedState("eth0"), "11");
    EXPECT_EQ(change("eth0", 3), "0");
    EXPECT_EQ(change("eth0", 11), "0"); // disabled: no pause
    EXPECT_THAT(pauses, ElementsAre(7));
    EXPECT_EQ(lan("eth0", "enable"), "both");

    EXPECT_EQ(change("eth0", 3), "0");
    failCommand(0x30, 0x22, 0xFF);
    EXPECT_EQ(change("eth0", 2), "Unable to enable the EthernertPort");
    failCommand(0x30, 0x21, 0xFF);
    EXPECT_EQ(change("eth0", 2), "-1");
    EXPECT_EQ(change("usb0", 3), "0"); // no interface of the controller: only noted
    EXPECT_EQ(requestedState("usb0"), "03");
}

TEST_F(Ports, bondIsSwitched) {
    EXPECT_EQ(change("bond0", 3), alreadyDisabled);
    EXPECT_EQ(change("bond0", 2), "0");
    EXPECT_TRUE(bmc().describe()["interfaces"]["bond"]);
    EXPECT_EQ(change("bond0", 2), alreadyActive);
    EXPECT_EQ(change("bond0", 11), "0");
    EXPECT_THAT(pauses, ElementsAre(25));
    EXPECT_TRUE(bmc().describe()["interfaces"]["bond"]);
    EXPECT_EQ(change("eth0", 3), "0");
    EXPECT_EQ(change("eth1", 3, 2), "0"); // the bond works
    EXPECT_EQ(change("bond0", 3), lastBond);
    EXPECT_EQ(change("eth1", 2, 2), "0");
    EXPECT_EQ(change("bond0", 3), "0");
    EXPECT_EQ(requestedState("bond0"), "03");
    failCommand(0x30, 0x24, 0xFF);
    EXPECT_EQ(change("bond0", 2), "Unable to enable the interface");
    failCommand(0x30, 0x23, 0xFF, 1);
    EXPECT_EQ(change("bond0", 2), lastBond);
    failCommand(0x30, 0x23, 0xFF);
    EXPECT_EQ(change("bond0", 2), "-1");
}

TEST_F(Ports, methodRecordsAJob) {
    const Reply done = request("EthernetPort2:eth1:2", number(3));
    ASSERT_TRUE(done.ok()) << done.message;
    ASSERT_EQ(done.values.size(), 1U);
    EXPECT_EQ(broker::toText(done.values[0]), "0");
    EXPECT_TRUE(done.done);
    const Job finished = job(done);
    EXPECT_EQ(finished.name, "EthernetPort_RequestStateChange_eth1");
    EXPECT_EQ(finished.state, "7");
    EXPECT_EQ(finished.status, "{17, 2}");
    EXPECT_EQ(finished.errors, 0U);
    EXPECT_EQ(lan("eth1", "enable"), "off");

    const Reply refused = request("EthernetPort1:eth0:1", text("2")); // a text is parsed
    EXPECT_EQ(refused.code, CMPI_RC_ERR_FAILED);
    EXPECT_EQ(refused.message, alreadyActive);
    EXPECT_EQ(lastJob().state, "10");
    EXPECT_EQ(lastJob().status, "{17, 6}");
    EXPECT_EQ(lastJob().errors, 1U);

    // States that no port has end their job at once, and with a value instead of a status.
    for (const broker::Value& state :
         {number(5), text("enabled"), text("4294967298"), broker::Value{CMPI_boolean, true}}) {
        const Reply failed = request("EthernetPort2:eth1:2", state);
        EXPECT_TRUE(failed.ok()) << failed.message;
        ASSERT_EQ(failed.values.size(), 1U);
        EXPECT_EQ(broker::toText(failed.values[0]), "2");
        EXPECT_EQ(job(failed).state, "10");
        EXPECT_EQ(job(failed).errors, 1U);
    }
    EXPECT_EQ(lan("eth1", "enable"), "off");
}

TEST_F(Ports, methodRefusesWhatItCannotServe) {
    const broker::ObjectPath port = instance("CIM_EthernetPort").path;
    broker::ObjectPath incomplete = port;
    incomplete.keys.pop_back();
    const std::tuple<const char*, Reply, CMPIrc, const char*> cases[] = {
        {"key", request(incomplete, number(3)), CMPI_RC_ERR_FAILED, "Key Property Missing"},
        {"name", request(port, number(3), "Restart"), CMPI_RC_ERR_NOT_SUPPORTED, "Invalid Method Name"},
        {"argument", broker.invokeMethod(port, "requeststatechange"), CMPI_RC_ERR_INVALID_PARAMETER,
         "Invalid Parameter"},
        {"port", request("EthernetPort7:eth6:7", number(3)), CMPI_RC_ERR_INVALID_PARAMETER,
         "Given instance does not exist"},
    };
    for (const auto& [name, reply, code, message] : cases) {
        EXPECT_EQ(reply.code, code) << name;
        EXPECT_EQ(reply.message, message) << name;
    }
    EXPECT_THAT(list("CIM_ConcreteJob"), IsEmpty());

    // Nothing is changed without a job.
    const auto jobs = sysroot.place("/tmp/method_jobs.db");
    std::filesystem::remove(jobs);
    std::filesystem::create_directory(jobs);
    const Reply reply = request(port, number(3));
    EXPECT_TRUE(reply.ok());
    ASSERT_EQ(reply.values.size(), 1U);
    EXPECT_EQ(broker::toText(reply.values[0]), "2");
    EXPECT_THAT(reply.arguments, IsEmpty());
    EXPECT_EQ(lan("eth0", "enable"), "both");
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
    EXPECT_EQ((std::ostringstream() << std::ifstream(elsewhere).rdbuf()).str(), "11");
}

} // namespace
