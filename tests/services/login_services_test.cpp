// The TCP ports of services, and SSH and Telnet as rows of one table.
#include "ipmi/oem_commands.h"
#include "provider_helper/service_sessions.h"
#include "provider_helper/services.h"
#include "service_requests.h"

namespace {

using testing::Contains;
using testing::ElementsAre;
using testing::IsEmpty;
using testing::SizeIs;

constexpr char model[] = R"({"services": [
    {"name": "web", "port": 80, "securePort": 443}, {"name": "kvm", "port": 5900, "securePort": 5900},
    {"name": "ssh", "securePort": 22, "timeout": 600, "maxSessions": 8, "activeSessions": 2},
    {"name": "telnet", "port": 23, "timeout": 300, "maxSessions": 2, "activeSessions": 1}]})";

class LoginServices : public ManagedBmc {
protected:
    LoginServices() : ManagedBmc(model) {}

    struct Login {
        const char *word, *title, *timeout, *connections;
        std::size_t count;
        ClassRequests sessions, settings, capabilities;
    };
    const Login logins[2] = {{"ssh",
                              "SSH",
                              "600",
                              "8",
                              2,
                              {broker, PH_CLASS_FUNCTIONS(SSHProtocolEndpoint)},
                              {broker, PH_CLASS_FUNCTIONS(SSHSettingData)},
                              {broker, PH_CLASS_FUNCTIONS(SSHCapabilities)}},
                             {"telnet",
                              "Telnet",
                              "300",
                              "2",
                              1,
                              {broker, PH_CLASS_FUNCTIONS(TelnetProtocolEndpoint)},
                              {broker, PH_CLASS_FUNCTIONS(TelnetSettingData)},
                              {broker, PH_CLASS_FUNCTIONS(TelnetCapabilities)}}};
    const ClassRequests ports{broker, PH_CLASS_FUNCTIONS(TCPProtocolEndpoint)};
    const ClassRequests allowed{broker, PH_CLASS_FUNCTIONS(ProtocolServiceCapabilities)};

    static broker::Reply setIdleTimeout(const Login& login, const broker::Value& value,
                                        const broker::PropertyList& names) {
        broker::Instance setting = only(login.settings);
        broker::set(setting.properties, "IdleTimeout", value);
        return login.settings.modify(setting, names);
    }
};

TEST_F(LoginServices, listenAtTheirPorts) {
    const auto all = ports.enumerate().instances;
    EXPECT_THAT(textsOf(all, "Name"),
                ElementsAre("TCPProtocolEndpoint-web-clear", "TCPProtocolEndpoint-web-encrypted",
                            "TCPProtocolEndpoint-ssh-encrypted", "TCPProtocolEndpoint-telnet-clear",
                            "TCPProtocolEndpoint-kvm-clear"))
        << "one port is one, whatever the record calls it";
    EXPECT_THAT(textsOf(all, "PortNumber"), ElementsAre("80", "443", "22", "23", "5900"));
    EXPECT_THAT(textsOf(all, "EnabledState"), testing::Each("2"));
    EXPECT_EQ(PH_RequestStateChange_DB(3, "TelnetProtocolService", std::array<char, 256>{}.data()), 0);
    EXPECT_THAT(textsOf(ports.enumerate().instances, "EnabledState"), ElementsAre("2", "2", "2", "3", "2"));
    EXPECT_THAT(logins[1].sessions.names().paths, IsEmpty()) << "its sessions have ended";
}

TEST_F(LoginServices, haveSessionsSettingsAndCapabilities) {
    for (const Login& login : logins) {
        SCOPED_TRACE(login.title);
        const auto sessions = login.sessions.enumerate().instances;
        ASSERT_THAT(sessions, SizeIs(login.count));
        EXPECT_EQ(textOf(sessions.back(), "Name"),
                  std::string(login.title) + "ProtocolEndpoint" + std::to_string(login.count));
        EXPECT_EQ(textOf(sessions[0], "OtherTypeDescription"), login.title);
        EXPECT_EQ(textOf(sessions[0], "IdleTimeout"), login.timeout);
        EXPECT_EQ(textOf(only(login.settings), "IdleTimeout"), login.timeout);
        const auto capabilities = only(login.capabilities);
        EXPECT_EQ(textOf(capabilities, "MaxConnections"), login.connections);
        EXPECT_EQ(textOf(capabilities, "MaxListeningPorts"), "1");
        EXPECT_EQ(textOf(capabilities, "RequestedStatesSupported"), "{2, 3, 11}");
    }
    const auto others = allowed.enumerate().instances;
    EXPECT_THAT(textsOf(others, "InstanceID"), ElementsAre("ProtocolServiceCapabilities:HTTPProtocolService",
                                                           "ProtocolServiceCapabilities:HTTPSProtocolService",
                                                           "ProtocolServiceCapabilities:WEBProtocolService",
                                                           "ProtocolServiceCapabilities:KVMProtocolService"));
    EXPECT_THAT(textsOf(others, "MaxListeningPorts"), ElementsAre("1", "1", "2", "1"));
}

TEST_F(LoginServices, takeAnotherIdleTimeoutAndNothingElse) {
    for (const Login& login : logins)
        for (const broker::PropertyList& names :
             {broker::PropertyList{{"IdleTimeout"}}, broker::PropertyList{}}) {
            auto before = row("services", "name", login.word);
            const std::uint32_t seconds = names ? 65535 : 0;
            EXPECT_TRUE(setIdleTimeout(login, number(seconds, CMPI_uint32), names).ok());
            before["timeout"] = seconds;
            EXPECT_EQ(row("services", "name", login.word), before) << login.title;
        }
}

TEST_F(LoginServices, refuseWhatTheyCannotHave) {
    bmc().recordMessages(100);
    for (const Login& login : logins) {
        for (const broker::Value& value : {number(65536, CMPI_uint32), null(CMPI_uint32), text("soon")})
            EXPECT_THAT(setIdleTimeout(login, value, {{"IdleTimeout"}}),
                        Refuses(CMPI_RC_ERR_INVALID_PARAMETER, "IdleTimeout Parameter is Invalid"));
        EXPECT_THAT(setIdleTimeout(login, number(5, CMPI_uint32), {{"IdleTimeout", "ElementName"}}),
                    Refuses(CMPI_RC_ERR_INVALID_PARAMETER, "Invalid Property(s): ElementName"));
        auto other = only(login.settings);
        other.path.keys[0].value = text("another");
        EXPECT_EQ(login.settings.modify(other).code, CMPI_RC_ERR_NOT_FOUND);
        EXPECT_TRUE(login.settings.modify(only(login.settings)).ok());
    }
    EXPECT_THAT(requests(setConfiguration), IsEmpty());
    failCommand(setConfiguration);
    EXPECT_THAT(setIdleTimeout(logins[0], number(5, CMPI_uint32), {}),
                Refuses(CMPI_RC_ERR_FAILED, "The BMC refuses the settings"));
}

TEST_F(LoginServices, areLeftOutWhereTheBmcDoesNotTell) {
    failCommand(getConfiguration);
    for (const Login& login : logins)
        for (const ClassRequests* each :
             {&login.sessions, &login.settings, &login.capabilities, &ports, &allowed}) {
            EXPECT_TRUE(each->enumerate().ok());
            EXPECT_THAT(each->names().paths, IsEmpty());
        }
}

TEST_F(LoginServices, ofAnotherMakerHaveTheirPortsOnly) {
    PH_STAND_IN(CIM_GetServiceConf, [](auto*, std::uint32_t service, CIM_ServiceConf* conf, int) {
        *conf = {"shell of a maker", 1, 0, 2222, 60, 4, 3}; // without an end
        return service == CIM_SERVICE_SSH ? 0 : -1;
    });
    EXPECT_THAT(textsOf(ports.enumerate().instances, "PortNumber"), ElementsAre("2222"));
    EXPECT_THAT(textsOf(ports.enumerate().instances, "ElementName"),
                ElementsAre("shell of a maker, encrypted"));
    EXPECT_THAT(logins[0].sessions.names().paths, IsEmpty());
    EXPECT_THAT(logins[0].settings.names().paths, IsEmpty());
}

} // namespace
