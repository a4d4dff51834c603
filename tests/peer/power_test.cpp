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
        // It knows the power, writes down what it is told, and shuts down at once.
        sysroot.standIn("/chassis", R"sh(cd "$PH_SYSROOT/tmp" || exit 1
case "$*" in
*'get power') echo "power:$(cat power 2>/dev/null || echo 1)";;
*) echo "$*" >>told;;
esac
case "$*" in
*'set power 1') echo 1 >power;;
*'set power 0' | *'set shutdown 1') echo 0 >power;;
esac)sh");
    }
    // What the chassis was told since the last time.
    std::string told() const {
        std::string text = contents("/tmp/told");
        std::filesystem::remove(sysroot.place("/tmp/told"));
        return text;
    }

    // "2" on, "8" off.
    std::string powerState() {
        return textOf(broker
                          .references(only("CIM_HostComputerSystem").path,
                                      {.resultClass = "CIM_AssociatedPowerManagementService"})
                          .instances.at(0),
                      "PowerState");
    }
    // The method's value and the job's state.
    std::string requestPower(int state) {
        const Reply reply = broker.invokeMethod(
            list(path("CIM_PowerManagementService")).at(0).path, "RequestPowerStateChange",
            {{"PowerState", number(state)},
             {"ManagedElement", reference(only("CIM_HostComputerSystem").path)}});
        const broker::Value* job = broker::find(reply.arguments, "Job");
        if (reply.values.size() != 1 || job == nullptr)
            return reply.message;
        const Reply read = broker.getInstance(**job->as<broker::Value::Reference>());
        return read.ok()
                   ? broker::toText(reply.values[0]) + ", job " + textOf(read.instances.at(0), "JobState")
                   : read.message;
    }
};

constexpr const char* on = "System Power         : on";
constexpr const char* off = "System Power         : off";
constexpr const char* done = "0, job 7";
constexpr const char* failed = "2, job 10";

TEST_F(PeerPower, isSwitchedByThePowerService) {
    const std::tuple<int, const char*, const char*, const char*> cases[] = {
        {6, done, "set power 0\n", off},
        {2, done, "set power 1\n", on},
        {10, done, "set reset 1\n", on},
        {8, done, "set shutdown 1\n", off},
        {5, done, "set shutdown 1\nset power 1\n", on},
        {11, failed, "", on}, // the simulator knows no diagnostic interrupt
    };
    EXPECT_THAT(ipmitool("chassis status"), HasSubstr(on));
    for (const auto& [state, outcome, words, power] : cases) {
        SCOPED_TRACE(state);
        EXPECT_EQ(requestPower(state), outcome);
        EXPECT_EQ(told(), words);
        EXPECT_THAT(ipmitool("chassis status"), HasSubstr(power));
        EXPECT_EQ(powerState(), power == on ? "2" : "8");
        EXPECT_EQ(textOf(only("CIM_OperatingSystem"), "EnabledState"), power == on ? "2" : "3");
    }
}

} // namespace
