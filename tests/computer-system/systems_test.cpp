// CIM_HostComputerSystem and CIM_SPComputerSystem, and RequestStateChange of both.
#include "managed_system.h"
#include "Utility/back-ends/shell.h"

#include <csignal>

namespace {

using testing::ElementsAre;
using testing::IsEmpty;

class Systems : public ManagedSystem {
protected:
    std::string requestedState(const ClassRequests& system) const {
        return textOf(only(system), "RequestedState");
    }
};

TEST_F(Systems, areDescribedFromTheirRecords) {
    const std::string hostName = "Unknown.IPMI BMC DeviceID.d83a7e0452c94b1da6f80c94e71b3f25";
    EXPECT_THAT(propertiesOf(only(host)),
                ElementsAre("Name=" + hostName, "CreationClassName=CIM_HostComputerSystem",
                            "ElementName=" + hostName,
                            R"(IdentifyingDescriptions={"CIM:GUID", "CIM:Model:SerialNumber", "CIM:Tag"})",
                            R"(OtherIdentifyingInfo={"CIM:d83a7e04-52c9-4b1d-a6f8-0c94e71b3f25, )"
                            R"(CIM:Model 7:SN42, CIM:32:1"})",
                            "OperationalStatus={2}", "EnabledState=2", "RequestedState=12", "HealthState=5",
                            "Dedicated={0}"));
    EXPECT_EQ(processor.names().paths, std::vector{processorPath});
    auto wrong = processorPath;
    wrong.keys[0].value = text("ipmi controller 6b1f3d528f0e4a619c3750d4a2e8c911");
    EXPECT_EQ(processor.get(wrong).message, "Failed to Get Instance");
    write("/conf/system_names.ini", "[names]\nsp = bmc-17\n");
    EXPECT_THAT(propertiesOf(only(processor)),
                ElementsAre("Name=bmc-17", "CreationClassName=CIM_SPComputerSystem", "ElementName=bmc-17",
                            R"(IdentifyingDescriptions={"Manufacturer ID-Product ID"})",
                            R"(OtherIdentifyingInfo={"343-2858"})", "OperationalStatus={11}",
                            "EnabledState=2", "RequestedState=12", "HealthState=5",
                            "PrimaryOwnerContact=", "Dedicated={28}"));
}

TEST_F(Systems, switchTheHost) {
    const std::tuple<broker::Value, const char*, const char*> cases[] = {
        {number(11), "CIM_PowerCycle(30)", "11"},
        {text("3"), "CIM_SoftOff(30)", "3"}, // the system shuts down for a minute
        {number(2), "CIM_PowerUp(30)", "2"},
    };
    for (const auto& [state, hook, stored] : cases) {
        platformCalls.clear();
        const broker::Reply reply = changeHost(state);
        expectDone(reply, hostChange);
        EXPECT_TRUE(reply.done);
        EXPECT_EQ(reply.values[0].type, CMPI_uint32);
        EXPECT_THAT(platformCalls.hooks(), ElementsAre(hook));
        EXPECT_TRUE(isHostOn());
        EXPECT_EQ(requestedState(host), stored);
    }
    EXPECT_EQ(chassis()["comingText"], "off, then on");

    for (const int state : {0, 1, 4, 5, 7, 10, 12, 65535}) {
        platformCalls.clear();
        expectFailed(changeHost(number(state)), hostChange);
        EXPECT_THAT(platformCalls.made, testing::Not(testing::Contains("CIM_Create_IPMI20_Session")))
            << state;
    }
    EXPECT_EQ(requestedState(host), "2");
    EXPECT_EQ(SetHostPowerState(nullptr, 5), 7);
}

TEST_F(Systems, reportABmcThatRefuses) {
    expectDone(requestHostPower(6), hostPower); // off: nothing can be cycled
    expectFailed(changeHost(number(11)), hostChange);
    EXPECT_EQ(requestedState(host), "0");
    EXPECT_EQ(SetHostPowerState(nullptr, 11), -1);
    EXPECT_FALSE(isHostOn());
}

TEST_F(Systems, restartTheController) {
    for (const int state : {2, 3, 5})
        expectFailed(changeProcessor(static_cast<std::uint16_t>(state)), processorChange);
    EXPECT_THAT(commands(), IsEmpty());
    setReboot(1);
    expectFailed(changeProcessor(11), processorChange);
    EXPECT_THAT(commands(), ElementsAre("reboot"));

    setReboot(0);
    // An object manager may leave the reaping of children to the kernel.
    const auto handler = std::signal(SIGCHLD, SIG_IGN);
    const broker::Reply reply = changeProcessor(11);
    std::signal(SIGCHLD, handler);
    expectDone(reply, processorChange);
    EXPECT_THAT(commands(), ElementsAre("reboot"));
    EXPECT_TRUE(std::filesystem::exists(sysroot.place("/conf/spcs_reqstatechange_reboot")));
    setReboot(1);
    expectFailed(changeProcessor(11), processorChange);
    for (int i = 0; i < 2; ++i)
        EXPECT_EQ(requestedState(processor), "11");
    EXPECT_TRUE(isHostOn());
}

// What a process list shows of a command is the command: the CLP daemon's watch tells itself by its "grep".
TEST_F(Systems, runCommandsThatLookLikeThemselves) {
    std::string shown;
    ph::readCommand("</proc/$$/cmdline tr '\\0' ' '; true", 4096, [&](std::string_view line) {
        shown = line;
        return true;
    });
    EXPECT_THAT(shown, testing::StartsWith("sh -c </proc"));
}

TEST_F(Systems, refuseWrongRequestsBeforeThereIsAJob) {
    for (const broker::Value& state :
         {text("abc"), number(2, CMPI_uint32), text("65536"), broker::Value{CMPI_uint16, {}}})
        EXPECT_THAT(changeHost(state),
                    Refuses(CMPI_RC_ERR_INVALID_PARAMETER, "RequestedState Parameter is Invalid"));
    EXPECT_THAT(host.invoke(hostPath, "RequestStateChange"),
                Refuses(CMPI_RC_ERR_INVALID_PARAMETER, "RequestedState Parameter is Invalid"));

    auto absent = hostPath;
    absent.keys[0].value = text("another host");
    constexpr const char* change = "requeststatechange";
    const std::tuple<broker::ObjectPath, const char*, CMPIrc, const char*> cases[] = {
        {hostPath, "RequestStateChanges", CMPI_RC_ERR_METHOD_NOT_FOUND, "No such method available"},
        {host.path(), "Reset", CMPI_RC_ERR_FAILED, "Key Property Missing"},
        {absent, change, CMPI_RC_ERR_NOT_FOUND, "Given instance does not exist"},
    };
    const broker::NamedValues two = {{"RequestedState", number(2)}};
    for (const auto& [path, method, code, message] : cases)
        EXPECT_THAT(host.invoke(path, method, two), Refuses(code, message)) << broker::toText(path);
    EXPECT_EQ(jobCount(), 0U);
    expectDone(host.invoke(hostPath, change, two), hostChange);
}

} // namespace
