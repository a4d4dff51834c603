// The services that the BMC switches, and the method that asks for it.
#include "ipmi/oem_commands.h"
#include "service_requests.h"

namespace {

using testing::ElementsAre;
using testing::IsEmpty;

constexpr const char* internalError = "Internal Error : Failed to invoke method";
constexpr const char* sshJob = "SSHProtocolService_RequestStateChange";

class Services : public ServiceRequests {
protected:
    bool isEnabled(const char* word) const { return row("services", "name", word).at("enabled"); }
};

TEST_F(Services, areTenEachSwitchedByItsBit) {
    const struct {
        const char *name, *protocol, *word, *enabled, *health, *status, *connections;
        const char* onBmc;
        int bit;
    } expected[] = {
        {"HTTPProtocolService", "1", "http", "2", "5", "{2}", "20", "web", 1},
        {"HTTPSProtocolService", "1", "https", "2", "5", "{2}", "20", "web", 1},
        {"WEBProtocolService", "1", "web", "2", "5", "{2}", "20", "web", 1},
        {"CLPProtocolService", "4", "clp", "3", "0", "{10}", "1", nullptr, 0},
        {"SSHProtocolService", "2", "ssh", "2", "5", "{2}", "8", "ssh", 32},
        {"TelnetProtocolService", "3", "telnet", "3", "0", "{10}", "2", "telnet", 64},
        {"KVMProtocolService", "1", "kvm", "2", "5", "{2}", "2", "kvm", 2},
        {"CDMEDIAProtocolService", "1", "cd-media", "2", "5", "{2}", "1", "cd-media", 4},
        {"FDMEDIAProtocolService", "1", "fd-media", "2", "5", "{2}", "1", "fd-media", 8},
        {"HDMEDIAProtocolService", "1", "hd-media", "2", "5", "{2}", "1", "hd-media", 16},
    };
    const auto all = services.enumerate().instances;
    ASSERT_EQ(all.size(), std::size(expected));
    for (std::size_t i = 0; i < std::size(expected); ++i) {
        const auto& [name, protocol, word, enabled, health, status, connections, onBmc, bit] = expected[i];
        SCOPED_TRACE(name);
        EXPECT_EQ(all[i].path, path(name));
        EXPECT_EQ(textOf(all[i], "Protocol"), protocol);
        EXPECT_EQ(textOf(all[i], "OtherProtocol"), word);
        EXPECT_EQ(textOf(all[i], "EnabledState"), enabled);
        EXPECT_EQ(textOf(all[i], "HealthState"), health);
        EXPECT_EQ(textOf(all[i], "OperationalStatus"), status);
        EXPECT_EQ(textOf(all[i], "MaxConnections"), connections);
        if (onBmc == nullptr)
            continue;
        const auto before = row("services", "name", onBmc);
        platformCalls.texts.clear();
        bmc().recordMessages(100);
        EXPECT_THAT(request(name, 3), Returns(0));
        EXPECT_FALSE(isEnabled(onBmc));
        EXPECT_THAT(request(name, 2), Returns(0));
        EXPECT_TRUE(isEnabled(onBmc));
        const std::string mask = '(' + std::to_string(bit) + ", *, 30)";
        EXPECT_THAT(platformCalls.hooks(),
                    ElementsAre("CIM_GetServiceConf" + mask, "CIM_SetServiceConf" + mask,
                                "CIM_GetServiceConf" + mask, "CIM_SetServiceConf" + mask));
        auto after = row("services", "name", onBmc);
        after["enabled"] = before["enabled"];
        EXPECT_EQ(after, before) << "nothing else is changed";
    }
    EXPECT_THAT(platformCalls.pauses, IsEmpty());

    char message[PH_SERVICE_MESSAGE_SIZE] = "";
    for (const std::uint16_t state : {std::uint16_t{3}, std::uint16_t{5}}) { // 5 is none that is carried out
        EXPECT_EQ(PH_Set_ProtocolService_EnabledState("AnyOtherService", state, message), 0);
        EXPECT_FALSE(isEnabled("web"));
    }
    EXPECT_THAT(request("AnyOtherService", 2), Refuses(CMPI_RC_ERR_NOT_FOUND, "No such service"));
}

TEST_F(Services, aBmcThatDoesNotTellHasThemWithoutAState) {
    failCommand(getConfiguration);
    const auto ssh = services.get(path("SSHProtocolService")).instances.at(0);
    EXPECT_EQ(textOf(ssh, "EnabledState"), "<none>");
    EXPECT_EQ(textOf(ssh, "MaxConnections"), "<none>");
    EXPECT_EQ(textOf(ssh, "HealthState"), "0");
    EXPECT_EQ(textOf(ssh, "OperationalStatus"), "{0}");
    std::filesystem::remove(stateFile);
    EXPECT_EQ(services.enumerate().message, "Failed to Enumerate Instance");
    EXPECT_EQ(services.names().paths.size(), 10U);
    EXPECT_TRUE(services.get(path("CLPProtocolService")).ok()) << "needs no BMC";
}

TEST_F(Services, aResetPausesOnlyWhereSomethingRan) {
    bool duringPause = true;
    platformCalls.duringPauses = [&] { duringPause = isEnabled("ssh"); };
    bmc().recordMessages(100);
    EXPECT_THAT(request("SSHProtocolService", 11), Returns(0));
    EXPECT_THAT(platformCalls.pauses, ElementsAre(3));
    EXPECT_FALSE(duringPause);
    EXPECT_TRUE(isEnabled("ssh"));
    EXPECT_EQ(requests(setConfiguration).size(), 2U);

    EXPECT_THAT(request("TelnetProtocolService", 11), Returns(0));
    EXPECT_THAT(platformCalls.pauses, ElementsAre(3));
    EXPECT_TRUE(isEnabled("telnet"));
}

TEST_F(Services, theJobTellsHowItEnded) {
    const auto reply = request("SSHProtocolService", 3);
    EXPECT_EQ(reply.values, std::vector{number(0, CMPI_uint32)});
    EXPECT_FALSE(reply.done) << "the provider closes it";
    EXPECT_EQ(jobOf(reply), Job::completed(sshJob));

    failCommand(setConfiguration);
    const auto failed = request("SSHProtocolService", 3);
    EXPECT_EQ(failed.code, CMPI_RC_ERR_FAILED);
    EXPECT_EQ(failed.message, internalError);
    EXPECT_EQ(jobOf(failed), Job::failed(sshJob));
}

TEST_F(Services, everyCommandThatFailsFailsTheReset) {
    for (const auto command : {getConfiguration, setConfiguration}) {
        failCommand(command);
        EXPECT_EQ(request("SSHProtocolService", 11).message, internalError);
        EXPECT_TRUE(isEnabled("ssh"));
    }
    bmc().clearFaults();
    addFault(setConfiguration, 1, 1);
    EXPECT_TRUE(request("SSHProtocolService", 11).ok()) << "switching on is tried again";
    EXPECT_TRUE(isEnabled("ssh"));
    failCommand(setConfiguration, 1);
    EXPECT_EQ(request("SSHProtocolService", 11).message, internalError);
}

// A change that nobody would hear of is not made, and one that cannot be recorded is told.
TEST_F(Services, nothingIsSwitchedWithoutDatabases) {
    const std::tuple<const char*, const char*, bool> cases[] = {
        {"db_set_concretejob", "Unable to create the job.", false},
        {"smash_db_init", internalError, false},
        {"db_modify_concretejob", "Unable to record how the job ended.", true},
    };
    for (const auto& [function, message, isSwitched] : cases) {
        ASSERT_TRUE(request("SSHProtocolService", 2).ok());
        platformCalls.broken = {function};
        EXPECT_EQ(request("SSHProtocolService", 3).message, message);
        EXPECT_EQ(isEnabled("ssh"), !isSwitched) << function;
        platformCalls.broken = {};
    }
}

TEST_F(Services, refuseWrongRequests) {
    const auto ssh = path("SSHProtocolService");
    const std::tuple<broker::ObjectPath, const char*, broker::NamedValues, int, const char*> cases[] = {
        {ssh, "requeststatechange", {}, CMPI_RC_ERR_INVALID_PARAMETER, "Input Parameter is empty"},
        {ssh,
         "RequestStateChange",
         {{"State", number(2)}},
         CMPI_RC_ERR_INVALID_PARAMETER,
         "RequestedState Parameter is Invalid"},
        {ssh,
         "RequestStateChange",
         {{"RequestedState", text("on")}},
         CMPI_RC_ERR_INVALID_PARAMETER,
         "RequestedState parameter value is invalid"},
        {ssh, "StopService", {}, CMPI_RC_ERR_METHOD_NOT_FOUND, "No such method available"},
        {services.path(), "RequestStateChange", {}, CMPI_RC_ERR_FAILED, "Key Property Missing"},
    };
    for (const auto& [path, method, in, code, message] : cases)
        EXPECT_THAT(services.invoke(path, method, in), Refuses(code, message));
    EXPECT_EQ(jobCount(), 0U);
    const auto none = request("SSHProtocolService", 4);
    EXPECT_EQ(none.code, CMPI_RC_ERR_INVALID_PARAMETER);
    EXPECT_EQ(none.message, "Invalid Parameter value");
    EXPECT_EQ(jobOf(none), Job::failed(sshJob));
    EXPECT_TRUE(isEnabled("ssh"));
}

} // namespace
