// A host and its controller: a virtual BMC, the database that sync fills from it, and a stand-in for
// "reboot".
#pragma once

#include "class_requests.h"
#include "ipmi/transport.h"
#include "platform_calls.h"
#include "provider_helper/computer_system.h"
#include "provider_helper/jobs.h"
#include "smash-db/sync/sync.h"
#include "sysroot_fixture.h"
#include "Utility/back_ends.h"
#include "Utility/shell.h"
#include "virtual-bmc/virtual_bmc.h"

#include <cstdio>
#include <gmock/gmock.h>
#include <nlohmann/json.hpp>
#include <sstream>

inline broker::Value text(std::string value) {
    return {CMPI_string, std::move(value)};
}
inline broker::Value uint16(int value) {
    return {CMPI_uint16, static_cast<std::uint64_t>(value)};
}
inline broker::Value reference(broker::ObjectPath path) {
    return {CMPI_ref, std::make_shared<const broker::ObjectPath>(std::move(path))};
}

// "Name=value" of each property, in order.
inline std::vector<std::string> propertiesOf(const broker::Instance& instance) {
    std::vector<std::string> texts;
    for (const auto& [name, value] : instance.properties)
        texts.push_back(name + '=' + broker::toText(value));
    return texts;
}

class ManagedSystem : public SysrootFixture {
protected:
    static constexpr const char* model = R"({
        "device": {"manufacturerId": 343, "productId": 2858, "deviceRevision": 1,
                   "deviceGuid": "6b1f3d52-8f0e-4a61-9c37-50d4a2e8c911",
                   "systemGuid": "d83a7e04-52c9-4b1d-a6f8-0c94e71b3f25"},
        "frus": [{"id": 0, "name": "Board",
                  "board": {"manufacturer": "Maker", "product": "Model 7", "serialNumber": "SN42"}}],
        "chassis": {"softOffDelay": 60000, "cycleInterval": 0}})";

    void SetUp() override {
        std::filesystem::create_directories(sysroot.place("/usr/sbin"));
        setReboot(0);
        // Nothing here may reach the machine's own.
        std::string reboot;
        ph::readCommand("command -v reboot", 4096, [&](std::string_view line) {
            reboot = line.substr(0, line.find('\n'));
            return false;
        });
        ASSERT_EQ(reboot, sysroot.place("/usr/sbin/reboot").string());

        vbmc::createFromText(stateFile, model, "model");
        ipmi::SessionSettings settings;
        settings.address = stateFile.string();
        settings.interfaceType = ipmi::SessionSettings::VirtualBmc;
        smash::sync(*ipmi::openTransport(settings));
        IPMISessionInfo info{};
        std::snprintf(info.address, sizeof(info.address), "%s", stateFile.c_str());
        std::snprintf(info.interfaceType, sizeof(info.interfaceType), "%d", settings.interfaceType);
        ph::Database database;
        ASSERT_TRUE(database.open());
        ASSERT_EQ(db_set_ipmi_session_info(database.get(), &info), 0);
    }
    void TearDown() override {
        EXPECT_EQ(platformCalls.openHandles, 0);
        EXPECT_EQ(platformCalls.openSessions, 0);
        EXPECT_EQ(broker.liveObjects(), 0U);
        platformCalls.clear();
    }

    // The stand-in writes down how it was called and ends with this code.
    void setReboot(int exitCode) const {
        const auto file = sysroot.place("/usr/sbin/reboot");
        std::ofstream(file) << "#!/bin/sh\necho \"reboot $*\" >> \"$PH_SYSROOT/tmp/reboots\"\nexit "
                            << exitCode << '\n';
        std::filesystem::permissions(file, std::filesystem::perms::owner_all);
    }
    int reboots() const {
        const std::string calls = read("/tmp/reboots");
        return static_cast<int>(std::count(calls.begin(), calls.end(), '\n'));
    }
    std::string read(std::string_view absolutePath) const {
        std::ostringstream content;
        content << std::ifstream(sysroot.place(absolutePath)).rdbuf();
        return content.str();
    }

    nlohmann::ordered_json chassis() const { return vbmc::VirtualBmc(stateFile).describe()["chassis"]; }
    bool isHostOn() const { return chassis()["power"] == "on"; }

    static std::uint16_t storedState(int deviceType) {
        ph::Database database;
        EXPECT_TRUE(database.open());
        const auto device = ph::record(db_get_device_bytype, database.get(), deviceType);
        return device != nullptr ? device->requestedState : 0xFFFF;
    }

    // What became of a method.
    struct Outcome {
        broker::Reply reply;
        std::vector<std::string> job; // JobState, JobStatus, OperationalStatus; empty: no "Job" was returned
        std::string jobName;
        std::size_t errors = 0;

        std::int64_t value() const {
            if (reply.values.size() != 1)
                return -1;
            const broker::Value& value = reply.values[0];
            return value.type == CMPI_sint32 ? *value.as<std::int64_t>()
                                             : static_cast<std::int64_t>(*value.as<std::uint64_t>());
        }
    };
    Outcome follow(broker::Reply reply) const {
        Outcome outcome{.reply = std::move(reply), .job = {}, .jobName = {}, .errors = 0};
        const broker::Value* job = broker::find(outcome.reply.arguments, "Job");
        if (job == nullptr)
            return outcome;
        const auto failing = std::exchange(platformCalls.failing, 0);
        const auto made = platformCalls.made;
        const broker::ObjectPath& path = **job->as<broker::Value::Reference>();
        EXPECT_EQ(path.nameSpace, "root/cimv2");
        EXPECT_EQ(path.className, "CIM_ConcreteJob");
        const broker::Reply read = jobs.get(path);
        if (read.instances.size() == 1) {
            for (const char* name : {"JobState", "JobStatus", "OperationalStatus"})
                outcome.job.push_back(broker::toText(*broker::find(read.instances[0].properties, name)));
            outcome.jobName = broker::toText(*broker::find(read.instances[0].properties, "ElementName"));
        }
        const broker::Reply errors = jobs.invoke(path, "GetErrors");
        if (const broker::Value* array = broker::find(errors.arguments, "Errors"))
            outcome.errors = array->as<broker::Value::Array>()->size();
        platformCalls.failing = failing;
        platformCalls.made = made; // by the method alone
        return outcome;
    }
    static void expectDone(const Outcome& outcome) {
        EXPECT_TRUE(outcome.reply.ok()) << outcome.reply.message;
        EXPECT_EQ(outcome.value(), 0);
        EXPECT_THAT(outcome.job, testing::ElementsAre("7", "Completed", "{17, 2}"));
        EXPECT_EQ(outcome.errors, 0U);
    }
    static void expectFailed(const Outcome& outcome) {
        EXPECT_EQ(outcome.value(), 2);
        expectFailedJob(outcome);
    }
    static void expectFailedJob(const Outcome& outcome) {
        EXPECT_THAT(outcome.job, testing::ElementsAre("10", "Exception", "{17, 6}"));
        EXPECT_EQ(outcome.errors, 1U);
    }
    static void expectRefused(const Outcome& outcome, CMPIrc code, const char* message) {
        EXPECT_EQ(outcome.reply.code, code);
        EXPECT_EQ(outcome.reply.message, message);
        EXPECT_THAT(outcome.reply.arguments, testing::IsEmpty());
    }
    std::size_t jobCount() const { return jobs.names().paths.size(); }

    // The one instance of a class.
    broker::Instance only(const ClassRequests& requests) const {
        const broker::Reply reply = requests.enumerate();
        EXPECT_EQ(reply.instances.size(), 1U) << reply.message;
        return reply.instances.at(0);
    }

    const std::filesystem::path stateFile = sysroot.place("/var/lib/virtual-bmc/bmc.state");
    broker::Broker broker;
    ClassRequests host{broker, PH_CLASS_FUNCTIONS(HostComputerSystem)};
    ClassRequests processor{broker, PH_CLASS_FUNCTIONS(SPComputerSystem)};
    ClassRequests services{broker, PH_CLASS_FUNCTIONS(PowerManagementService)};
    ClassRequests capabilities{broker, PH_CLASS_FUNCTIONS(PowerManagementCapabilities)};
    ClassRequests jobs{broker, PH_CLASS_FUNCTIONS(ConcreteJob)};

    // Requests to change a state, followed to their job.
    const broker::ObjectPath hostPath =
        host.path({{"Name", text("Unknown.IPMI BMC DeviceID.d83a7e0452c94b1da6f80c94e71b3f25")},
                   {"CreationClassName", text("CIM_HostComputerSystem")}});
    const broker::ObjectPath processorPath =
        processor.path({{"Name", text("IPMI Controller 6b1f3d528f0e4a619c3750d4a2e8c911")},
                        {"CreationClassName", text("CIM_SPComputerSystem")}});
    Outcome changeHost(const broker::Value& state) const {
        return follow(host.invoke(hostPath, "RequestStateChange", {{"RequestedState", state}}));
    }
    Outcome changeProcessor(const broker::Value& state) const {
        return follow(processor.invoke(processorPath, "RequestStateChange", {{"RequestedState", state}}));
    }
    broker::ObjectPath servicePath(const char* name) const {
        return services.path({{"SystemCreationClassName", text("CIM_SPComputerSystem")},
                              {"CreationClassName", text("CIM_PowerManagementService")},
                              {"SystemName", text("IPMI Controller 6b1f3d528f0e4a619c3750d4a2e8c911")},
                              {"Name", text(name)}});
    }
    const broker::ObjectPath hostService = servicePath("Host Power Management Service");
    const broker::ObjectPath processorService = servicePath("SP Power Management Service");
    Outcome requestPower(const broker::ObjectPath& service, const broker::NamedValues& arguments) const {
        return follow(services.invoke(service, "RequestPowerStateChange", arguments));
    }
    Outcome requestHostPower(int state) const {
        return requestPower(hostService,
                            {{"PowerState", uint16(state)}, {"ManagedElement", reference(hostPath)}});
    }
};
