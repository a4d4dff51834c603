// CIM_PowerManagementService with RequestPowerStateChange, and CIM_PowerManagementCapabilities.
#include "managed_system.h"

namespace {

using testing::ElementsAre;
using testing::IsEmpty;

class PowerManagement : public ManagedSystem {
protected:
    broker::Reply requestProcessorPower(int state) const {
        return requestPower(processorService,
                            {{"PowerState", number(state)}, {"ManagedElement", reference(processorPath)}});
    }
    std::vector<std::string> sessions() const {
        std::vector<std::string> calls;
        std::ranges::copy_if(platformCalls.made, std::back_inserter(calls),
                             [](const std::string& name) { return name.find("Session") != name.npos; });
        return calls;
    }
};

TEST_F(PowerManagement, isOfferedForEachSystem) {
    const auto all = services.enumerate().instances;
    ASSERT_EQ(all.size(), 2U);
    for (std::size_t i = 0; i < 2; ++i) {
        const std::string name = i == 0 ? "Host Power Management Service" : "SP Power Management Service";
        EXPECT_THAT(propertiesOf(all[i]),
                    ElementsAre("SystemCreationClassName=CIM_SPComputerSystem",
                                "CreationClassName=CIM_PowerManagementService",
                                "SystemName=IPMI Controller 6b1f3d528f0e4a619c3750d4a2e8c911", "Name=" + name,
                                "ElementName=" + name, "OperationalStatus={2}", "HealthState=5",
                                "EnabledState=2", "RequestedState=12", "Started=TRUE"));
    }
    const auto capable = capabilities.enumerate().instances;
    ASSERT_EQ(capable.size(), 2U);
    EXPECT_THAT(propertiesOf(capable[0]),
                ElementsAre("InstanceID=HostPowerManagementCapabilities",
                            "ElementName=Host Power Management Capabilities",
                            "PowerChangeCapabilities={3, 4, 6, 7, 8}",
                            "PowerStatesSupported={2, 5, 6, 8, 9, 10, 11}",
                            "RequestedPowerStatesSupported={2, 5, 6, 8, 9, 10, 11}"));
    EXPECT_THAT(propertiesOf(capable[1]), testing::IsSupersetOf({"InstanceID=SPPowerManagementCapabilities",
                                                                 "PowerStatesSupported={5}"}));
}

TEST_F(PowerManagement, bringsTheHostToEachStateItCanHave) {
    const std::tuple<int, std::vector<std::string>, const char*> cases[] = {
        {6, {"CIM_PowerOff(30)"}, "off"},
        {2, {"CIM_PowerUp(30)"}, "on"},
        {9, {"CIM_PowerCycle(30)"}, "on"},
        {6, {"CIM_PowerOff(30)"}, "off"},
        {1, {"CIM_PowerUp(30)"}, "on"},
        {10, {"CIM_HardReset(30)"}, "on"},
        {8, {"CIM_SoftOff(30)"}, "on"},
        {11, {"CIM_DiagnosticInt(30)"}, "on"},
        {5, {"CIM_SoftOff(30)", "CIM_PowerUp(30)"}, "on"},
    };
    for (const auto& [state, hooks, power] : cases) {
        SCOPED_TRACE(state);
        platformCalls.clear();
        const broker::Reply reply = requestHostPower(state);
        expectDone(reply, hostPower);
        EXPECT_FALSE(reply.done) << "the provider closes it";
        EXPECT_EQ(reply.values[0].type, CMPI_sint32);
        EXPECT_EQ(platformCalls.hooks(), hooks);
        EXPECT_THAT(sessions(), ElementsAre("CIM_Create_IPMI20_Session", "CIM_Close_Session"));
        EXPECT_EQ(chassis()["power"], power);
        EXPECT_EQ(contents("/conf/PowerState.ini"), "RequestedPowerState  " + std::to_string(state));
    }
    EXPECT_EQ(chassis()["resets"], 1);
    EXPECT_EQ(chassis()["diagnosticInterrupts"], 1);
    EXPECT_EQ(chassis()["comingText"], "off, then on") << "soft off, then on again";
    EXPECT_THAT(commands(), IsEmpty());
}

TEST_F(PowerManagement, refusesOtherStatesThroughTheJob) {
    for (const int state : {3, 4, 7, 0, 12, 65535}) {
        SCOPED_TRACE(state);
        platformCalls.clear();
        expectFailed(requestHostPower(state), hostPower);
        EXPECT_THAT(platformCalls.hooks(), IsEmpty());
        // The sleep states and hibernation leave the session open that they had.
        const std::size_t opened = state == 3 || state == 4 || state == 7 ? 1 : 0;
        EXPECT_EQ(sessions(), std::vector<std::string>(opened, "CIM_Create_IPMI20_Session"));
        EXPECT_EQ(platformCalls.closeSessions(), static_cast<int>(opened));
    }
    EXPECT_EQ(PH_SetPowerState(nullptr, 12), -1);
    EXPECT_FALSE(std::filesystem::exists(sysroot.place("/conf/PowerState.ini")));
}

TEST_F(PowerManagement, reportsABmcThatRefuses) {
    expectDone(requestHostPower(6), hostPower);
    for (const int state : {8, 9, 10, 11})
        expectFailed(requestHostPower(state), hostPower);
    expectDone(requestHostPower(5), hostPower); // what the soft shutdown says is not asked
    EXPECT_TRUE(isHostOn());

    failCommand(ipmi::command::chassisControl);
    for (const int state : {1, 2, 5, 6, 8, 9, 10, 11})
        expectFailed(requestHostPower(state), hostPower);
    EXPECT_TRUE(isHostOn());
    EXPECT_EQ(contents("/conf/PowerState.ini"), "RequestedPowerState  5");

    std::filesystem::remove(stateFile);
    platformCalls.clear();
    expectFailed(requestHostPower(2), hostPower);
    EXPECT_EQ(platformCalls.pauses.size(), 6U) << "opening the session is tried again";
}

TEST_F(PowerManagement, restartsTheController) {
    for (const int state : {0, 2, 8, 9, 11})
        expectFailed(requestProcessorPower(state), processorPower);
    EXPECT_THAT(commands(), IsEmpty());
    setReboot(1);
    expectFailed(requestProcessorPower(5), processorPower);
    EXPECT_FALSE(std::filesystem::exists(sysroot.place("/conf/PowerState.ini")));
    setReboot(0);
    platformCalls.clear();
    expectDone(requestProcessorPower(5), processorPower);
    EXPECT_THAT(commands(), ElementsAre("reboot", "reboot"));
    EXPECT_THAT(platformCalls.hooks(), IsEmpty());
    EXPECT_EQ(contents("/conf/PowerState.ini"), "RequestedPowerState  5");
}

TEST_F(PowerManagement, isOfTheManagedElementThatTheServiceHas) {
    const auto request = [&](const broker::ObjectPath& service, const char* className) {
        auto element = hostPath;
        element.className = className;
        return requestPower(service, {{"PowerState", number(5)}, {"ManagedElement", reference(element)}});
    };
    const std::tuple<broker::ObjectPath, const char*, const char*> wrong[] = {
        {hostService, "CIM_SPComputerSystem", hostPower},
        {hostService, "CIM_ComputerSystem", hostPower},
        {processorService, "CIM_HostComputerSystem", processorPower},
        {servicePath("sp power management service"), "CIM_SPComputerSystem",
         "sp power management service_RequestPowerStateChange"}, // is any other service: the host's
    };
    for (const auto& [service, className, jobName] : wrong) {
        const broker::Reply reply = request(service, className);
        EXPECT_EQ(reply.code, CMPI_RC_ERR_TYPE_MISMATCH) << className;
        EXPECT_EQ(reply.message, "ManagedElement Param is Missing or incorrect");
        EXPECT_EQ(jobOf(reply), Job::failed(jobName));
    }
    EXPECT_THAT(platformCalls.hooks(), IsEmpty());
    EXPECT_THAT(commands(), IsEmpty());
    expectDone(request(hostService, "cim_hostcomputersystem"), hostPower);
    expectDone(request(processorService, "CIM_SPCOMPUTERSYSTEM"), processorPower);
}

TEST_F(PowerManagement, refusesWrongRequestsBeforeThereIsAJob) {
    const broker::NamedValue on{"PowerState", number(2)}, element{"ManagedElement", reference(hostPath)};
    const auto withoutName = reference(host.path({{"CreationClassName", text("CIM_HostComputerSystem")}}));
    constexpr CMPIrc invalid = CMPI_RC_ERR_INVALID_PARAMETER, mismatch = CMPI_RC_ERR_TYPE_MISMATCH;
    constexpr const char *noElement = "ManagedElement Param is Missing",
                         *mismatched = "PowerState Parameter is mismatched";
    const std::tuple<broker::NamedValues, CMPIrc, const char*> cases[] = {
        {{}, invalid, "Invalid or Empty Input"},
        {{element}, invalid, "CMPI_RC_ERR_INVALID_PARAMETER"},
        {{on}, invalid, noElement},
        {{on, {"ManagedElement", {CMPI_ref, {}}}}, invalid, noElement},
        {{on, {"ManagedElement", text(broker::toText(hostPath))}}, invalid, noElement},
        {{on, {"ManagedElement", withoutName}}, mismatch, mismatched},
        {{{"PowerState", text("on")}, element}, mismatch, mismatched},
        {{{"PowerState", number(2, CMPI_uint8)}, element}, mismatch, mismatched},
    };
    for (const auto& [arguments, code, message] : cases)
        EXPECT_THAT(requestPower(hostService, arguments), Refuses(code, message));
    const broker::NamedValues right = {{"PowerState", text("0x2")}, element};
    EXPECT_THAT(services.invoke(hostService, "SetPowerState", right),
                Refuses(CMPI_RC_ERR_METHOD_NOT_FOUND, "No such method available"));
    EXPECT_THAT(services.invoke(services.path(), "RequestPowerStateChange", right),
                Refuses(CMPI_RC_ERR_FAILED, "Key Property Missing"));
    EXPECT_EQ(jobCount(), 0U);
    std::filesystem::create_directory(sysroot.place("/conf/PowerState.ini")); // which it does not need
    expectDone(services.invoke(hostService, "REQUESTPOWERSTATECHANGE", right), hostPower);
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
    EXPECT_EQ(request(services.path(), scope.makeArgs({{"PowerState", number(2)}})), value(0));
    EXPECT_EQ(request(hostService, scope.makeArgs({{"PowerState", number(2)},
                                                   {"ManagedElement", reference(processorPath)}})),
              value(2))
        << "the job tells it too, and the status says why";
}

} // namespace
