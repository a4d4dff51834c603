// The services that the BMC switches, and the method that asks for it.
#include "service_fixture.h"

namespace {

using testing::ElementsAre;
using testing::IsEmpty;

constexpr std::uint8_t oem = 0x30, getConfiguration = 0x10, setConfiguration = 0x11;
constexpr const char* internalError = "Internal Error : Failed to invoke method";

class Services : public ServiceFixture {
protected:
    bool isEnabled(const char* word) const {
        const auto machine = vbmc::VirtualBmc(stateFile).describe();
        for (const auto& row : machine["services"])
            if (row["name"] == word)
                return row["enabled"];
        ADD_FAILURE() << "no service " << word;
        return false;
    }
    // The enable bytes written to the BMC since recordMessages.
    std::vector<std::vector<std::uint8_t>> written() const {
        std::vector<std::vector<std::uint8_t>> requests;
        for (const auto& message : vbmc::VirtualBmc(stateFile).recordedMessages())
            if (message.netFn == oem && message.command == setConfiguration)
                requests.push_back(message.request);
        return requests;
    }
};

TEST_F(Services, areTenWithTheirProtocols) {
    const struct {
        const char *name, *protocol, *word, *enabled, *health, *status, *connections;
    } expected[] = {
        {"HTTPProtocolService", "1", "http", "2", "5", "{2}", "20"},
        {"HTTPSProtocolService", "1", "https", "2", "5", "{2}", "20"},
        {"WEBProtocolService", "1", "web", "2", "5", "{2}", "20"},
        {"CLPProtocolService", "4", "clp", "3", "0", "{10}", "1"},
        {"SSHProtocolService", "2", "ssh", "2", "5", "{2}", "8"},
        {"TelnetProtocolService", "3", "telnet", "3", "0", "{10}", "2"},
        {"KVMProtocolService", "1", "kvm", "2", "5", "{2}", "2"},
        {"CDMEDIAProtocolService", "1", "cd-media", "2", "5", "{2}", "1"},
        {"FDMEDIAProtocolService", "1", "fd-media", "2", "5", "{2}", "1"},
        {"HDMEDIAProtocolService", "1", "hd-media", "2", "5", "{2}", "1"},
    };
    const auto reply = services.enumerate();
    ASSERT_EQ(reply.instances.size(), std::size(expected)) << reply.message;
    for (std::size_t i = 0; i < std::size(expected); ++i) {
        const auto& service = reply.instances[i];
        SCOPED_TRACE(expected[i].name);
        EXPECT_EQ(service.path, path(expected[i].name));
        EXPECT_EQ(textOf(service, "Protocol"), expected[i].protocol);
        EXPECT_EQ(textOf(service, "OtherProtocol"), expected[i].word);
        EXPECT_EQ(textOf(service, "EnabledState"), expected[i].enabled);
        EXPECT_EQ(textOf(service, "HealthState"), expected[i].health);
        EXPECT_EQ(textOf(service, "OperationalStatus"), expected[i].status);
        EXPECT_EQ(textOf(service, "MaxConnections"), expected[i].connections);
        EXPECT_EQ(services.get(service.path).instances, std::vector{service});
    }
    EXPECT_FALSE(services.get(path("FTPProtocolService")).ok());
    EXPECT_EQ(services.remove(path("SSHProtocolService")).message, "DeleteInstance not supported");
}

TEST_F(Services, aBmcThatDoesNotTellHasThemDisabledAndUnknown) {
    failCommand(oem, getConfiguration);
    const auto ssh = services.get(path("SSHProtocolService")).instances.at(0);
    EXPECT_EQ(textOf(ssh, "EnabledState"), "3");
    EXPECT_EQ(textOf(ssh, "OperationalStatus"), "{0}");
    std::filesystem::remove(stateFile);
    EXPECT_EQ(services.enumerate().message, "Failed to Enumerate Instance");
    EXPECT_EQ(services.names().paths.size(), 10U);
    EXPECT_TRUE(services.get(path("CLPProtocolService")).ok()) << "needs no BMC";
}

TEST_F(Services, eachIsSwitchedByItsBit) {
    const struct {
        const char* name;
        const char* word;
        std::uint8_t mask;
    } cases[] = {
        {"HTTPProtocolService", "web", 1},          {"HTTPSProtocolService", "web", 1},
        {"WEBProtocolService", "web", 1},           {"KVMProtocolService", "kvm", 2},
        {"CDMEDIAProtocolService", "cd-media", 4},  {"FDMEDIAProtocolService", "fd-media", 8},
        {"HDMEDIAProtocolService", "hd-media", 16}, {"SSHProtocolService", "ssh", 32},
        {"TelnetProtocolService", "telnet", 64},
    };
    for (const auto& [name, word, mask] : cases) {
        vbmc::VirtualBmc(stateFile).recordMessages(100);
        const auto before = vbmc::VirtualBmc(stateFile).describe()["services"];
        EXPECT_TRUE(request(name, 3).ok()) << name;
        EXPECT_FALSE(isEnabled(word)) << name;
        EXPECT_TRUE(request(name, 2).ok()) << name;
        EXPECT_TRUE(isEnabled(word)) << name;
        const auto requests = written();
        ASSERT_EQ(requests.size(), 2U);
        EXPECT_EQ(requests[0][0], mask);
        if (std::string_view(word) != "telnet") { // which was disabled
            EXPECT_EQ(vbmc::VirtualBmc(stateFile).describe()["services"], before) << "nothing else changed";
        }
    }
    EXPECT_THAT(slept, IsEmpty());
    char message[PH_SERVICE_MESSAGE_SIZE] = "";
    EXPECT_EQ(PH_Set_ProtocolService_EnabledState("AnyOtherService", 3, message), 0);
    EXPECT_FALSE(isEnabled("web"));
    EXPECT_EQ(PH_Set_ProtocolService_EnabledState("AnyOtherService", 5, message), 0);
    EXPECT_FALSE(isEnabled("web"));
    EXPECT_EQ(request("AnyOtherService", 2).code, CMPI_RC_ERR_NOT_FOUND);
    EXPECT_FALSE(isEnabled("web"));
}

TEST_F(Services, aResetPausesOnlyWhereSomethingRan) {
    bool duringPause = true;
    whileSleeping = [&] { duringPause = isEnabled("ssh"); };
    vbmc::VirtualBmc(stateFile).recordMessages(100);
    EXPECT_TRUE(request("SSHProtocolService", 11).ok());
    EXPECT_THAT(slept, ElementsAre(3));
    EXPECT_FALSE(duringPause);
    EXPECT_TRUE(isEnabled("ssh"));
    EXPECT_EQ(written().size(), 2U);

    slept.clear();
    EXPECT_TRUE(request("TelnetProtocolService", 11).ok());
    EXPECT_THAT(slept, IsEmpty());
    EXPECT_TRUE(isEnabled("telnet"));
}

TEST_F(Services, theJobTellsHowItEnded) {
    auto reply = request("SSHProtocolService", 3);
    EXPECT_EQ(reply.values, (std::vector<broker::Value>{{CMPI_uint32, std::uint64_t{0}}}));
    EXPECT_FALSE(reply.done) << "the provider closes it";
    auto job = lastJob();
    EXPECT_EQ(textOf(job, "ElementName"), "SSHProtocolService_RequestStateChange");
    EXPECT_EQ(textOf(job, "JobState"), "7");
    EXPECT_EQ(textOf(job, "OperationalStatus"), "{17, 2}");
    const auto* returned = broker::find(reply.arguments, "Job");
    ASSERT_NE(returned, nullptr);
    EXPECT_EQ(**returned->as<broker::Value::Reference>(), job.path);

    failCommand(oem, setConfiguration);
    reply = request("KVMProtocolService", 3);
    EXPECT_EQ(reply.code, CMPI_RC_ERR_FAILED);
    EXPECT_EQ(reply.message, internalError);
    job = lastJob();
    EXPECT_EQ(textOf(job, "JobState"), "10");
    EXPECT_EQ(textOf(job, "OperationalStatus"), "{17, 6}");
    EXPECT_EQ(**broker::find(reply.arguments, "Job")->as<broker::Value::Reference>(), job.path);
    EXPECT_EQ(ClassRequests(broker, PH_CLASS_FUNCTIONS(ConcreteJob))
                  .invoke(job.path, "GetErrors")
                  .arguments.at(0)
                  .value.as<broker::Value::Array>()
                  ->size(),
              1U);
}

TEST_F(Services, aJobThatGetsLostIsTold) {
    whileSleeping = [&] {
        const auto jobs = sysroot.place("/tmp/method_jobs.db");
        std::filesystem::remove(jobs);
        std::filesystem::create_directory(jobs);
    };
    const auto reply = request("SSHProtocolService", 11);
    EXPECT_EQ(reply.code, CMPI_RC_ERR_FAILED);
    EXPECT_EQ(reply.message, "Unable to record how the job ended.");
    EXPECT_TRUE(isEnabled("ssh"));
}

TEST_F(Services, everyCommandThatFailsFailsTheChange) {
    for (const std::uint8_t command : {getConfiguration, setConfiguration}) {
        failCommand(oem, command);
        EXPECT_EQ(request("SSHProtocolService", 11).message, internalError);
        EXPECT_TRUE(isEnabled("ssh"));
    }
    mendCommands();
    vbmc::VirtualBmc(stateFile).addFault(
        {.netFn = oem, .command = setConfiguration, .value = 0xFF, .skip = 1, .calls = 1});
    EXPECT_TRUE(request("SSHProtocolService", 11).ok()) << "switching on is tried again";
    EXPECT_TRUE(isEnabled("ssh"));
    failCommand(oem, setConfiguration, 1);
    EXPECT_EQ(request("SSHProtocolService", 11).message, internalError);
}

TEST_F(Services, refusedRequests) {
    const auto ssh = path("SSHProtocolService");
    const auto invoke = [&](const broker::NamedValues& in) {
        return services.invoke(ssh, "requeststatechange", in);
    };
    const struct {
        const char* what;
        broker::Reply reply;
        int code;
        const char* message;
    } cases[] = {
        {"nothing", invoke({}), 4, "Input Parameter is empty"},
        {"another argument", invoke({{"State", number(2)}}), 4, "RequestedState Parameter is Invalid"},
        {"a text", invoke({{"RequestedState", text("on")}}), 4, "RequestedState parameter value is invalid"},
        {"a state that is none", invoke({{"RequestedState", number(4)}}), 4, "Invalid Parameter value"},
        {"another method", services.invoke(ssh, "StopService"), 17, "No such method available"},
        {"no keys", services.invoke(services.path(), "RequestStateChange"), 1, "Key Property Missing"},
    };
    for (const auto& item : cases) {
        EXPECT_EQ(static_cast<int>(item.reply.code), item.code) << item.what;
        EXPECT_EQ(item.reply.message, item.message) << item.what;
    }
    EXPECT_EQ(textOf(lastJob(), "JobState"), "10") << "of the state that is none";
    EXPECT_TRUE(isEnabled("ssh"));
}

TEST_F(Services, withoutItsDatabasesNothingIsSwitched) {
    for (const char* database : {"/conf/smash.db", "/tmp"}) {
        const auto place = sysroot.place(database), aside = sysroot.place("/aside");
        std::filesystem::rename(place, aside);
        std::filesystem::create_directories(sysroot.place("/conf/smash.db").parent_path());
        EXPECT_FALSE(request("SSHProtocolService", 3).ok()) << database;
        EXPECT_TRUE(isEnabled("ssh"));
        std::filesystem::remove_all(place);
        std::filesystem::rename(aside, place);
    }
}

} // namespace
