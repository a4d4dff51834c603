// The power of a host behind OpenIPMI's BMC simulator, switched by methods of the provider module in the
// broker, with ipmitool as the witness. A script stands for the chassis.
#include "broker/broker.h"
#include "ipmi_sim.h"
#include "simulator_session.h"
#include "smash-db/sync/sync.h"
#include "sysroot_fixture.h"

#include <cstdio>
#include <gmock/gmock.h>
#include <platform/smash_db.h>
#include <sstream>

namespace {

using broker::ObjectPath;
using broker::Reply;
using testing::HasSubstr;

class PeerPower : public SysrootFixture {
protected:
    void SetUp() override {
        simulator = std::make_unique<ph_test::IpmiSim>(std::vector<ph_test::SimSensor>{}, chassisScript());
        const auto settings = simulator->settings();
        smash::sync(*ipmi::openTransport(settings));
        ph_test::storeSession(settings);
        broker.loadProvider(PROVIDERS, "ProviderHelperProviders");
    }

    // Knows the power, writes down what it is told, and shuts down at once.
    std::string chassisScript() const {
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
        return script.string();
    }
    // What the chassis was told since the last time.
    std::string told() const {
        std::ostringstream text;
        text << std::ifstream(sysroot.place("/tmp/told")).rdbuf();
        std::filesystem::remove(sysroot.place("/tmp/told"));
        return text.str();
    }

    ObjectPath only(const char* className) {
        return broker
            .enumerateInstanceNames(
                {.host = {}, .nameSpace = "root/cimv2", .className = className, .keys = {}})
            .paths.at(0);
    }
    // The method's value and the job's state.
    std::string run(const ObjectPath& path, const char* method, const broker::NamedValues& arguments) {
        const Reply reply = broker.invokeMethod(path, method, arguments);
        const broker::Value* job = broker::find(reply.arguments, "Job");
        if (reply.values.size() != 1 || job == nullptr)
            return reply.message;
        const Reply read = broker.getInstance(**job->as<broker::Value::Reference>());
        return read.ok() ? broker::toText(reply.values[0]) + ", job " +
                               broker::toText(*broker::find(read.instances.at(0).properties, "JobState"))
                         : read.message;
    }
    std::string requestPower(std::uint64_t state) {
        return run(only("CIM_PowerManagementService"), "RequestPowerStateChange",
                   {{"PowerState", {CMPI_uint16, state}},
                    {"ManagedElement",
                     {CMPI_ref, std::make_shared<const ObjectPath>(only("CIM_HostComputerSystem"))}}});
    }
    std::string requestState(std::uint64_t state) {
        return run(only("CIM_HostComputerSystem"), "RequestStateChange",
                   {{"RequestedState", {CMPI_uint16, state}}});
    }

    std::unique_ptr<ph_test::IpmiSim> simulator;
    broker::Broker broker;
};

constexpr const char* on = "System Power         : on";
constexpr const char* off = "System Power         : off";
constexpr const char* done = "0, job 7";
constexpr const char* failed = "2, job 10";

TEST_F(PeerPower, isSwitchedByThePowerService) {
    struct {
        std::uint64_t state;
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
    EXPECT_THAT(simulator->ipmitool("chassis status"), HasSubstr(on));
    for (const auto& change : cases) {
        SCOPED_TRACE(change.state);
        EXPECT_EQ(requestPower(change.state), change.outcome);
        EXPECT_EQ(told(), change.told);
        EXPECT_THAT(simulator->ipmitool("chassis status"), HasSubstr(change.power));
    }
}

TEST_F(PeerPower, isSwitchedByTheHostsState) {
    EXPECT_EQ(requestState(3), done);
    EXPECT_THAT(simulator->ipmitool("chassis status"), HasSubstr(off));
    EXPECT_EQ(requestState(2), done);
    EXPECT_THAT(simulator->ipmitool("chassis status"), HasSubstr(on));
    EXPECT_EQ(requestState(5), failed);
    EXPECT_EQ(told(), "set shutdown 1\nset power 1\n");

    // And the other way round: what somebody else does is no state that was asked for.
    simulator->ipmitool("chassis power off");
    const Reply host = broker.getInstance(only("CIM_HostComputerSystem"));
    EXPECT_EQ(broker::toText(*broker::find(host.instances.at(0).properties, "RequestedState")), "2");
}

} // namespace
