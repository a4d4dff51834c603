// CIM_PowerManagementService with RequestPowerStateChange, and CIM_PowerManagementCapabilities.
#include "managed_system.h"

namespace {

using testing::ElementsAre;
using testing::IsEmpty;

class PowerManagement : public ManagedSystem {
protected:
    // The chassis and session hooks that were called.
    static std::vector<std::string> hooks() {
        std::vector<std::string> called;
        for (const std::string& name : platformCalls.made)
            if (name.starts_with("CIM_"))
                called.push_back(name.substr(4));
        return called;
    }
};

TEST_F(PowerManagement, isOfferedForEachSystem) {
    const broker::Reply reply = services.enumerate();
    ASSERT_EQ(reply.instances.size(), 2U) << reply.message;
    for (std::size_t i = 0; i < 2; ++i) {
        const std::string name = i == 0 ? "Host Power Management Service" : "SP Power Management Service";
        EXPECT_THAT(propertiesOf(reply.instances[i]),
                    ElementsAre("SystemCreationClassName=CIM_SPComputerSystem",
                                "CreationClassName=CIM_PowerManagementService",
                                "SystemName=IPMI Controller 6b1f3d528f0e4a619c3750d4a2e8c911", "Name=" + name,
                                "ElementName=" + name, "OperationalStatus={2}", "HealthState=5",
                                "EnabledState=2", "RequestedState=12", "Started=TRUE"));
    }
    EXPECT_EQ(services.get(processorService).instances.size(), 1U);
    EXPECT_EQ(services.get(servicePath("Other Service")).message, "Failed to Get Instance");

    const broker::Reply capable = capabilities.enumerate();
    ASSERT_EQ(capable.instances.size(), 2U) << capable.message;
    EXPECT_THAT(propertiesOf(capable.instances[0]),
                ElementsAre("InstanceID=HostPowerManagementCapabilities",
                            "ElementName=Host Power Management Capabilities",
                            "PowerChangeCapabilities={3, 4, 6, 7, 8}",
                            "PowerStatesSupported={2, 5, 6, 8, 9, 10, 11}",
                            "RequestedPowerStatesSupported={2, 5, 6, 8, 9, 10, 11}"));
    EXPECT_THAT(
        propertiesOf(capable.instances[1]),
        testing::IsSupersetOf({"InstanceID=SPPowerManagementCapabilities", "PowerStatesSupported={5}"}));
    for (const auto& path : capabilities.names().paths)
        EXPECT_EQ(capabilities.get(path).instances.size(), 1U);
}

TEST_F(PowerManagement, bringsTheHostToEachStateItCanHave) {
    struct {
        std::uint16_t state;
        std::vector<std::string> hooks;
        const char* power;
    } const cases[] = {
        {6, {"PowerOff"}, "off"}, {2, {"PowerUp"}, "on"},        {9, {"PowerCycle"}, "on"},
        {6, {"PowerOff"}, "off"}, {1, {"PowerUp"}, "on"},        {10, {"HardReset"}, "on"},
        {8, {"SoftOff"}, "on"},   {11, {"DiagnosticInt"}, "on"}, {5, {"SoftOff", "PowerUp"}, "on"},
    };
    for (const auto& change : cases) {
        SCOPED_TRACE(change.state);
        platformCalls.clear();
        const Outcome outcome = requestHostPower(change.state);
        expectDone(outcome);
        EXPECT_FALSE(outcome.reply.done) << "the provider closes it";
        EXPECT_EQ(outcome.reply.values[0].type, CMPI_sint32);
        EXPECT_EQ(outcome.jobName, "Host Power Management Service_RequestPowerStateChange");
        auto expected = change.hooks;
        expected.insert(expected.begin(), "Create_IPMI20_Session");
        expected.emplace_back("Close_Session");
        EXPECT_EQ(hooks(), expected);
        EXPECT_EQ(chassis()["power"], change.power);
        EXPECT_EQ(read("/conf/PowerState.ini"), "RequestedPowerState  " + std::to_string(change.state));
    }
    EXPECT_EQ(chassis()["resets"], 1);
    EXPECT_EQ(chassis()["diagnosticInterrupts"], 1);
    EXPECT_EQ(chassis()["comingText"], "off, then on") << "soft off, then on again";
    EXPECT_EQ(reboots(), 0);
}

TEST_F(PowerManagement, refusesOtherStatesThroughTheJob) {
    for (const int state : {3, 4, 7, 0, 12, 65535}) {
        SCOPED_TRACE(state);
        platformCalls.clear();
        const Outcome outcome = requestHostPower(state);
        expectFailed(outcome);
        EXPECT_TRUE(outcome.reply.ok());
        EXPECT_FALSE(outcome.reply.done);
        // The sleep states and hibernation leave the session open that they had.
        const bool isSleep = state == 3 || state == 4 || state == 7;
        EXPECT_EQ(hooks(),
                  isSleep ? std::vector<std::string>{"Create_IPMI20_Session"} : std::vector<std::string>{});
        EXPECT_EQ(platformCalls.closeSessions(), isSleep ? 1 : 0);
    }
    EXPECT_EQ(PH_SetPowerState(nullptr, 12), -1);
    EXPECT_FALSE(std::filesystem::exists(sysroot.place("/conf/PowerState.ini")));
}

TEST_F(PowerManagement, reportsABmcThatRefuses) {
    expectDone(requestHostPower(6));
    for (const int state : {8, 9, 10, 11})
        expectFailed(requestHostPower(state));
    expectDone(requestHostPower(5)); // what the soft shutdown says is not asked
    EXPECT_TRUE(isHostOn());

    vbmc::VirtualBmc(stateFile).addFault(
        {.netFn = 0x00, .command = 0x02, .kind = vbmc::Fault::CompletionCode, .value = 0xC3});
    for (const int state : {1, 2, 5, 6, 8, 9, 10, 11})
        expectFailed(requestHostPower(state));
    EXPECT_TRUE(isHostOn());
    EXPECT_EQ(read("/conf/PowerState.ini"), "RequestedPowerState  5");
}

TEST_F(PowerManagement, restartsTheController) {
    const auto request = [&](int state) {
        return requestPower(processorService,
                            {{"PowerState", uint16(state)}, {"ManagedElement", reference(processorPath)}});
    };
    for (const int state : {0, 2, 8, 9, 11})
        expectFailed(request(state));
    EXPECT_EQ(reboots(), 0);
    setReboot(1);
    expectFailed(request(5));
    EXPECT_FALSE(std::filesystem::exists(sysroot.place("/conf/PowerState.ini")));
    setReboot(0);
    platformCalls.clear();
    const Outcome outcome = request(5);
    expectDone(outcome);
    EXPECT_EQ(outcome.jobName, "SP Power Management Service_RequestPowerStateChange");
    EXPECT_EQ(reboots(), 2);
    EXPECT_THAT(hooks(), IsEmpty());
    EXPECT_EQ(read("/conf/PowerState.ini"), "RequestedPowerState  5");
}

TEST_F(PowerManagement, isOfTheManagedElementThatTheServiceHas) {
    const auto request = [&](const broker::ObjectPath& service, const char* className) {
        auto element = hostPath;
        element.className = className;
        return requestPower(service, {{"PowerState", uint16(5)}, {"ManagedElement", reference(element)}});
    };
    const std::pair<broker::ObjectPath, const char*> wrong[] = {
        {hostService, "CIM_SPComputerSystem"},
        {hostService, "CIM_ComputerSystem"},
        {processorService, "CIM_HostComputerSystem"},
        {servicePath("sp power management service"),
         "CIM_SPComputerSystem"}, // is any other service: the host's
    };
    for (const auto& [service, className] : wrong) {
        SCOPED_TRACE(className);
        const Outcome outcome = request(service, className);
        EXPECT_EQ(outcome.reply.code, CMPI_RC_ERR_TYPE_MISMATCH);
        EXPECT_EQ(outcome.reply.message, "ManagedElement Param is Missing or incorrect");
        expectFailedJob(outcome);
    }
    EXPECT_THAT(hooks(), IsEmpty());
    EXPECT_EQ(reboots(), 0);
    expectDone(request(hostService, "cim_hostcomputersystem"));
    expectDone(request(processorService, "CIM_SPCOMPUTERSYSTEM"));
}

TEST_F(PowerManagement, refusesWrongRequestsBeforeThereIsAJob) {
    const auto on = uint16(2);
    const auto element = reference(hostPath);
    const auto withoutName = reference(host.path({{"CreationClassName", text("CIM_HostComputerSystem")}}));
    constexpr CMPIrc invalid = CMPI_RC_ERR_INVALID_PARAMETER, mismatch = CMPI_RC_ERR_TYPE_MISMATCH;
    constexpr const char *noElement = "ManagedElement Param is Missing",
                         *mismatched = "PowerState Parameter is mismatched";
    const std::tuple<broker::NamedValues, CMPIrc, const char*> cases[] = {
        {{}, invalid, "Invalid or Empty Input"},
        {{{"ManagedElement", element}}, invalid, "CMPI_RC_ERR_INVALID_PARAMETER"},
        {{{"PowerState", on}}, invalid, noElement},
        {{{"PowerState", on}, {"ManagedElement", {CMPI_ref, {}}}}, invalid, noElement},
        {{{"PowerState", on}, {"ManagedElement", text(broker::toText(hostPath))}}, invalid, noElement},
        {{{"PowerState", on}, {"ManagedElement", withoutName}}, mismatch, mismatched},
        {{{"PowerState", text("on")}, {"ManagedElement", element}}, mismatch, mismatched},
        {{{"PowerState", {CMPI_uint8, std::uint64_t{2}}}, {"ManagedElement", element}}, mismatch, mismatched},
    };
    for (const auto& [arguments, code, message] : cases)
        expectRefused(requestPower(hostService, arguments), code, message);
    const broker::NamedValues right = {{"PowerState", text("0x2")}, {"ManagedElement", element}};
    expectRefused(follow(services.invoke(hostService, "SetPowerState", right)), CMPI_RC_ERR_METHOD_NOT_FOUND,
                  "No such method available");
    expectRefused(follow(services.invoke(services.path(), "RequestPowerStateChange", right)),
                  CMPI_RC_ERR_FAILED, "Key Property Missing");
    EXPECT_EQ(jobCount(), 0U);
    expectDone(follow(services.invoke(hostService, "REQUESTPOWERSTATECHANGE", right)));
}

// The function itself returns a method's value in every case.
TEST_F(PowerManagement, alwaysReturnsAValue) {
    broker::Scope scope(broker);
    const auto request = [&](const broker::ObjectPath& service, const CMPIArgs* in) {
        CMPIResult* result = scope.makeResult();
        CMPIStatus status{CMPI_RC_OK, nullptr};
        EXPECT_EQ(PH_RequestPowerStateChange(broker.handle(), result, scope.make(service), in,
                                             scope.makeArgs(), nullptr, &status),
                  -1);
        EXPECT_NE(status.rc, CMPI_RC_OK);
        return broker::toReply(result).values;
    };
    const auto value = [](std::int64_t number) { return std::vector{broker::Value{CMPI_sint32, number}}; };
    EXPECT_EQ(request(hostService, nullptr), value(0));
    EXPECT_EQ(request(services.path(), scope.makeArgs({{"PowerState", uint16(2)}})), value(0));
    EXPECT_EQ(request(hostService, scope.makeArgs({{"PowerState", uint16(2)},
                                                   {"ManagedElement", reference(processorPath)}})),
              value(2))
        << "the job tells it too, and the status says why";
}

TEST_F(PowerManagement, doesNotNeedItsFile) {
    std::filesystem::create_directory(sysroot.place("/conf/PowerState.ini"));
    expectDone(requestHostPower(6));
    EXPECT_FALSE(isHostOn());
}

} // namespace
