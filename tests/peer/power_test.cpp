// The power of a host behind OpenIPMI's BMC simulator, switched by methods of the provider module in the
// broker, with ipmitool as the witness. A script stands for the chassis.
#include "provider_on_simulator.h"

#include <sstream>

namespace {

using broker::Reply;
using testing::HasSubstr;

class PeerPower : public ProviderOnSimulator {
protected:
    PeerPower() {
        std::filesystem::remove(sysroot.place("/conf/system_names.ini"));
        smash::sync(*ipmi::openTransport(bmc.settings()));
        writeChassisScript();
    }

    // Knows the power, writes down what it is told, and shuts down at once.
    void writeChassisScript() const {
        const auto script = sysroot.place("/chassis");
        std::ofstream(script) << "#!/bin/sh\n"
                                 "cd '"
                              << sysroot.place("/tmp").string()
                              << "' || exit 1\n"
                                 "case \"$*\" in\n"
                                 "*'get power') echo \"power:$(cat power 2>/dev/null || echo 1)\";;\n"
                                 "*) echo \"$*\" >> told\n"
                                 "   case \"$*\" in\n"
                                 "   *'set power 1') echo 1 > power;;\n"
                                 "   *'set power 0' | *'set shutdown 1') echo 0 > power;;\n"
                                 "   esac;;\n"
                                 "esac\n";
        std::filesystem::permissions(script, std::filesystem::perms::owner_all);
    }
    // What the chassis was told since the last time.
    std::string told() const {
        std::string text = contents("/tmp/told");
        std::filesystem::remove(sysroot.place("/tmp/told"));
        return text;
    }

    // The method's value and the job's state.
    std::string run(const broker::ObjectPath& path, const char* method,
                    const broker::NamedValues& arguments) {
        const Reply reply = broker.invokeMethod(path, method, arguments);
        const broker::Value* job = broker::find(reply.arguments, "Job");
        if (reply.values.size() != 1 || job == nullptr)
            return reply.message;
        const Reply read = broker.getInstance(**job->as<broker::Value::Reference>());
        return read.ok()
                   ? broker::toText(reply.values[0]) + ", job " + textOf(read.instances.at(0), "JobState")
                   : read.message;
    }
    std::string requestPower(int state) {
        return run(list(path("CIM_PowerManagementService")).at(0).path, "RequestPowerStateChange",
                   {{"PowerState", number(state)},
                    {"ManagedElement", reference(only("CIM_HostComputerSystem").path)}});
    }
    std::string requestState(int state) {
        return run(only("CIM_HostComputerSystem").path, "RequestStateChange",
                   {{"RequestedState", number(state)}});
    }
};

constexpr const char* on = "System Power         : on";
constexpr const char* off = "System Power         : off";
constexpr const char* done = "0, job 7";
constexpr const char* failed = "2, job 10";

TEST_F(PeerPower, isSwitchedByThePowerService) {
    struct {
        int state;
        const char* outcome;
        const char* told;
        const char* power;
    } const cases[] = {
        {6, done, "set power 0\n", off},
        {2, done, "set power 1\n", on},
        {10, done, "set reset 1\n", on},
        {8, done, "set shutdown 1\n", off},
        {5, done, "set shutdown 1\nset power 1\n", on},
        {11, failed, "", on}, // the simulator knows no diagnostic interrupt
    };
    EXPECT_THAT(ipmitool("chassis status"), HasSubstr(on));
    for (const auto& change : cases) {
        SCOPED_TRACE(change.state);
        EXPECT_EQ(requestPower(change.state), change.outcome);
        EXPECT_EQ(told(), change.told);
        EXPECT_THAT(ipmitool("chassis status"), HasSubstr(change.power));
    }
}

TEST_F(PeerPower, isSwitchedByTheHostsState) {
    EXPECT_EQ(requestState(3), done);
    EXPECT_THAT(ipmitool("chassis status"), HasSubstr(off));
    EXPECT_EQ(requestState(2), done);
    EXPECT_THAT(ipmitool("chassis status"), HasSubstr(on));
    EXPECT_EQ(requestState(5), failed);
    EXPECT_EQ(told(), "set shutdown 1\nset power 1\n");

    // And the other way round: what somebody else does is no state that was asked for.
    ipmitool("chassis power off");
    EXPECT_EQ(get("CIM_HostComputerSystem", "RequestedState"), "2");
}

} // namespace
