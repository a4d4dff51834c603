// CIM_HostComputerSystem and CIM_SPComputerSystem, and RequestStateChange of both.
#include "failing_allocation.h"
#include "managed_system.h"

#include <csignal>

namespace {

using testing::ElementsAre;

using Systems = ManagedSystem;

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
    write("/conf/system_names.ini", "[names]\nsp = bmc-17\n");
    EXPECT_THAT(propertiesOf(only(processor)),
                ElementsAre("Name=bmc-17", "CreationClassName=CIM_SPComputerSystem", "ElementName=bmc-17",
                            R"(IdentifyingDescriptions={"Manufacturer ID-Product ID"})",
                            R"(OtherIdentifyingInfo={"343-2858"})", "OperationalStatus={11}",
                            "EnabledState=2", "RequestedState=12", "HealthState=5",
                            "PrimaryOwnerContact=", "Dedicated={28}"));
    EXPECT_THAT(propertiesOf(processor.enumerate({{"dedicated"}}).instances.at(0)),
                ElementsAre("Name=bmc-17", "CreationClassName=CIM_SPComputerSystem", "Dedicated={28}"));
}

TEST_F(Systems, areGotByTheirKeysOnly) {
    EXPECT_EQ(host.get(hostPath).instances.size(), 1U);
    EXPECT_EQ(processor.get(processorPath).instances.size(), 1U);
    EXPECT_EQ(processor.names().paths, std::vector{processorPath});
    auto wrong = processorPath;
    wrong.keys[0].value = text("ipmi controller 6b1f3d528f0e4a619c3750d4a2e8c911");
    EXPECT_EQ(processor.get(wrong).message, "Failed to Get Instance");
}

TEST_F(Systems, fillReportsWhereMemoryIsShort) {
    DeviceRecord device{};
    const FruRecord fru{};
    for (unsigned nth = 1;; ++nth) {
        HostComputerSystemRecord* records =
            static_cast<HostComputerSystemRecord*>(std::calloc(1, sizeof *records));
        failAllocation(nth);
        const int result = PH_Fill_HostComputerSystem(&device, records, &fru);
        const bool failed = allocationFailed();
        failAllocation(0);
        EXPECT_EQ(result, failed ? -1 : 0) << nth;
        PH_Clean_HostComputerSystem(&records, 1);
        if (!failed)
            break;
    }
}

TEST_F(Systems, switchTheHost) {
    struct {
        const char* name;
        broker::Value state;
        const char* hook;
        const char* power;
        std::uint16_t stored;
    } const cases[] = {
        {"cycle", uint16(11), "CIM_PowerCycle", "on", 11},
        {"soft off, as text", text("3"), "CIM_SoftOff", "on", 3}, // the system shuts down for a minute
        {"on again afterwards", uint16(2), "CIM_PowerUp", "on", 2},
    };
    for (const auto& change : cases) {
        SCOPED_TRACE(change.name);
        platformCalls.clear();
        const Outcome outcome = changeHost(change.state);
        expectDone(outcome);
        EXPECT_TRUE(outcome.reply.done);
        EXPECT_EQ(outcome.reply.values[0].type, CMPI_uint32);
        EXPECT_EQ(outcome.jobName, "Host_RequestStateChange");
        EXPECT_THAT(platformCalls.made, testing::Contains(change.hook));
        EXPECT_EQ(chassis()["power"], change.power);
        EXPECT_EQ(broker::toText(*broker::find(only(host).properties, "RequestedState")),
                  std::to_string(change.stored));
    }
    EXPECT_EQ(chassis()["comingText"], "off, then on");
}

TEST_F(Systems, leaveTheHostAloneForOtherStates) {
    expectDone(changeHost(uint16(2)));
    for (const int state : {0, 1, 4, 5, 7, 10, 12, 65535}) {
        SCOPED_TRACE(state);
        platformCalls.clear();
        const Outcome outcome = changeHost(uint16(state));
        expectFailed(outcome);
        EXPECT_TRUE(outcome.reply.ok()) << "the job tells";
        EXPECT_FALSE(outcome.reply.done);
        EXPECT_EQ(storedState(SMASH_DEVICE_HOST), 2);
        EXPECT_THAT(platformCalls.made, testing::Not(testing::Contains("CIM_Create_IPMI20_Session")));
    }
    EXPECT_EQ(SetHostPowerState(nullptr, 5), 7);
}

TEST_F(Systems, reportABmcThatRefuses) {
    expectDone(requestHostPower(6)); // off: nothing can be cycled
    expectFailed(changeHost(uint16(11)));
    EXPECT_EQ(storedState(SMASH_DEVICE_HOST), 0);
    EXPECT_EQ(SetHostPowerState(nullptr, 11), -1);
    EXPECT_FALSE(isHostOn());
}

TEST_F(Systems, restartTheController) {
    for (const int state : {2, 3, 5})
        expectFailed(changeProcessor(uint16(state)));
    EXPECT_EQ(reboots(), 0);

    setReboot(1);
    expectFailed(changeProcessor(uint16(11)));
    EXPECT_EQ(reboots(), 1);

    setReboot(0);
    // An object manager may leave the reaping of children to the kernel.
    const auto handler = std::signal(SIGCHLD, SIG_IGN);
    const Outcome outcome = changeProcessor(uint16(11));
    std::signal(SIGCHLD, handler);
    expectDone(outcome);
    EXPECT_EQ(outcome.jobName, "SP_RequestStateChange");
    EXPECT_EQ(read("/tmp/reboots"), "reboot \nreboot \n");
    EXPECT_EQ(storedState(SMASH_DEVICE_SP), 11);
    EXPECT_TRUE(std::filesystem::exists(sysroot.place("/conf/spcs_reqstatechange_reboot")));
    setReboot(1);
    expectFailed(changeProcessor(uint16(11)));
    for (int i = 0; i < 2; ++i)
        EXPECT_EQ(broker::toText(*broker::find(only(processor).properties, "RequestedState")), "11");
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
    const broker::Value wrongStates[] = {
        text("abc"), {CMPI_uint32, std::uint64_t{2}}, text("65536"), {CMPI_uint16, {}}};
    for (const broker::Value& state : wrongStates)
        expectRefused(changeHost(state), CMPI_RC_ERR_INVALID_PARAMETER,
                      "RequestedState Parameter is Invalid");
    expectRefused(follow(host.invoke(hostPath, "RequestStateChange")), CMPI_RC_ERR_INVALID_PARAMETER,
                  "RequestedState Parameter is Invalid");

    const broker::NamedValues two = {{"RequestedState", uint16(2)}};
    const auto withKey = [&](std::size_t index, const broker::Value& value) {
        auto path = hostPath;
        path.keys[index].value = value;
        return path;
    };
    auto strange = hostPath;
    strange.keys.push_back({"Colour", text("red")});
    constexpr const char *change = "RequestStateChange", *absent = "Given instance does not exist";
    struct {
        broker::ObjectPath path;
        const char* method;
        CMPIrc code;
        const char* message;
    } const cases[] = {
        {hostPath, "RequestStateChanges", CMPI_RC_ERR_METHOD_NOT_FOUND, "No such method available"},
        {host.path(), "Reset", CMPI_RC_ERR_FAILED, "Key Property Missing"},
        {strange, change, CMPI_RC_ERR_NO_SUCH_PROPERTY, "No Such Key Property"},
        {withKey(0, text("it's")), change, CMPI_RC_ERR_INVALID_PARAMETER, "Invalid Key Value"},
        {withKey(0, text("another host")), change, CMPI_RC_ERR_NOT_FOUND, absent},
        {withKey(0, uint16(1)), change, CMPI_RC_ERR_NOT_FOUND, absent},
        {withKey(1, text("CIM_SPComputerSystem")), change, CMPI_RC_ERR_NOT_FOUND, absent},
    };
    for (const auto& [path, method, code, message] : cases) {
        SCOPED_TRACE(broker::toText(path) + method);
        expectRefused(follow(host.invoke(path, method, two)), code, message);
    }
    EXPECT_EQ(jobCount(), 0U);
    expectDone(follow(host.invoke(hostPath, "requeststatechange", two)));
}

// The functions themselves return a method's value in every case.
TEST_F(Systems, alwaysReturnAValue) {
    broker::Scope scope(broker);
    CMPIStatus status{CMPI_RC_OK, nullptr};
    CMPIResult* result = scope.makeResult();
    EXPECT_EQ(PH_HostRequestStateChange(broker.handle(), result, scope.make(hostPath), nullptr,
                                        scope.makeArgs(), nullptr, &status),
              -1);
    EXPECT_EQ(status.rc, CMPI_RC_ERR_INVALID_PARAMETER);
    EXPECT_EQ(broker::toReply(result).values, std::vector{(broker::Value{CMPI_uint32, std::uint64_t{0}})});

    result = scope.makeResult();
    EXPECT_EQ(PH_SPRequestStateChange(broker.handle(), result, scope.make(processorPath),
                                      scope.makeArgs({{"RequestedState", uint16(2)}}), scope.makeArgs(),
                                      nullptr, nullptr),
              -1);
    EXPECT_EQ(broker::toReply(result).values, std::vector{(broker::Value{CMPI_uint32, std::uint64_t{2}})});
}

TEST_F(Systems, refuseTheOtherRequests) {
    for (const ClassRequests* requests : {&host, &processor, &services, &capabilities}) {
        broker::Instance instance;
        instance.path = requests->path();
        EXPECT_EQ(requests->modify(instance).message, "SetInstance not supported");
        EXPECT_EQ(requests->create(instance).message, "CreateInstance not supported");
        EXPECT_EQ(requests->remove(instance.path).message, "DeleteInstance not supported");
    }
    EXPECT_EQ(capabilities.invoke(capabilities.path(), "RequestStateChange").message,
              "Invoke Method not supported");
}

} // namespace
