// A host and its controller, with the names that they have by their records.
#pragma once

#include "managed_bmc.h"
#include "provider_helper/computer_system.h"

class ManagedSystem : public ManagedBmc {
protected:
    ManagedSystem()
        : ManagedBmc(R"({
        "device": {"manufacturerId": 343, "productId": 2858, "deviceRevision": 1,
                   "deviceGuid": "6b1f3d52-8f0e-4a61-9c37-50d4a2e8c911",
                   "systemGuid": "d83a7e04-52c9-4b1d-a6f8-0c94e71b3f25"},
        "frus": [{"id": 0, "name": "Board",
                  "board": {"manufacturer": "Maker", "product": "Model 7", "serialNumber": "SN42"}}],
        "chassis": {"softOffDelay": 60000, "cycleInterval": 0}})") {
        std::filesystem::remove(sysroot.place("/conf/system_names.ini"));
    }

    nlohmann::ordered_json chassis() const { return bmc().describe()["chassis"]; }
    bool isHostOn() const { return chassis()["power"] == "on"; }
    // The command that restarts the controller ends with this code from now on.
    void setReboot(int exitCode) const {
        sysroot.standIn("/usr/sbin/reboot", "exit " + std::to_string(exitCode));
    }

    broker::Reply changeHost(const broker::Value& state) const {
        return host.invoke(hostPath, "RequestStateChange", {{"RequestedState", state}});
    }
    broker::Reply changeProcessor(std::uint16_t state) const {
        return processor.invoke(processorPath, "RequestStateChange", {{"RequestedState", number(state)}});
    }
    broker::ObjectPath servicePath(const char* name) const {
        return pathOnProcessor("CIM_PowerManagementService", broker::toText(processorPath.keys[0].value),
                               name);
    }
    broker::Reply requestPower(const broker::ObjectPath& service,
                               const broker::NamedValues& arguments) const {
        return services.invoke(service, "RequestPowerStateChange", arguments);
    }
    broker::Reply requestHostPower(int state) const {
        return requestPower(hostService,
                            {{"PowerState", number(state)}, {"ManagedElement", reference(hostPath)}});
    }
    void expectDone(const broker::Reply& reply, const char* jobName) const {
        EXPECT_THAT(reply, Returns(0));
        EXPECT_EQ(jobOf(reply), Job::completed(jobName));
    }
    // What the job tells the status does not.
    void expectFailed(const broker::Reply& reply, const char* jobName) const {
        EXPECT_THAT(reply, Returns(2));
        EXPECT_FALSE(reply.done);
        EXPECT_EQ(jobOf(reply), Job::failed(jobName));
    }

    static constexpr const char *hostChange = "Host_RequestStateChange",
                                *processorChange = "SP_RequestStateChange",
                                *hostPower = "Host Power Management Service_RequestPowerStateChange",
                                *processorPower = "SP Power Management Service_RequestPowerStateChange";
    ClassRequests host{broker, PH_CLASS_FUNCTIONS(HostComputerSystem)};
    ClassRequests processor{broker, PH_CLASS_FUNCTIONS(SPComputerSystem)};
    ClassRequests services{broker, PH_CLASS_FUNCTIONS(PowerManagementService)};
    ClassRequests capabilities{broker, PH_CLASS_FUNCTIONS(PowerManagementCapabilities)};
    const broker::ObjectPath hostPath =
        host.path({{"Name", text("Unknown.IPMI BMC DeviceID.d83a7e0452c94b1da6f80c94e71b3f25")},
                   {"CreationClassName", text("CIM_HostComputerSystem")}});
    const broker::ObjectPath processorPath =
        processor.path({{"Name", text("IPMI Controller 6b1f3d528f0e4a619c3750d4a2e8c911")},
                        {"CreationClassName", text("CIM_SPComputerSystem")}});
    const broker::ObjectPath hostService = servicePath("Host Power Management Service");
    const broker::ObjectPath processorService = servicePath("SP Power Management Service");
};
