// Every platform call of every operation fails in turn.
#include "managed_system.h"

namespace {

using broker::Reply;

// What a client gets when one of the calls fails.
enum Effect {
    done,       // nothing of it
    refused,    // there is no job, and nothing was changed
    failed,     // the job failed
    unrecorded, // 2, and the job does not tell what happened
};
struct Call {
    std::string name;
    Effect effect;
};
using Calls = std::vector<Call>;

// Each method is these, in this order.
const Calls findSystem = {{"db_init", done}, {"db_get_device_bytype", done}, {"db_close", done}};
const Calls createJob = {{"tmp_db_init", refused}, {"db_set_concretejob", refused}, {"db_close", refused}};
// Without settings a session counts as open, and every call on it fails. A session that cannot be opened at
// once is tried again.
const Calls switchHost = {{"db_init", failed},     {"db_get_ipmi_session_info", failed},
                          {"db_close", done},      {"CIM_Create_IPMI20_Session", done},
                          {"CIM_PowerUp", failed}, {"CIM_Close_Session", done}};
const Calls completeJob = {
    {"tmp_db_init", unrecorded}, {"db_modify_concretejob", unrecorded}, {"db_close", unrecorded}};
const Calls storeState = {
    {"db_init", done}, {"db_get_device_bytype", done}, {"db_set_device", done}, {"db_close", done}};

class PlatformFaults : public ManagedSystem {
protected:
    // Runs `change` with each of its calls failing, each time on a machine as `prepare` leaves it;
    // `isChanged` tells whether the change was made. A job that does not tell is handed out only where
    // `handsOutAll`.
    template <class Change, class Prepare, class IsChanged>
    void failEach(std::initializer_list<Calls> parts, const char* jobName, Change change, Prepare prepare,
                  IsChanged isChanged, bool handsOutAll) {
        Calls calls;
        for (const Calls& part : parts)
            calls.insert(calls.end(), part.begin(), part.end());
        for (unsigned nth = 0; nth <= calls.size(); ++nth) { // 0: none fails
            const auto [name, effect] = nth != 0 ? calls[nth - 1] : Call{"", done};
            SCOPED_TRACE(std::to_string(nth) + " " + name);
            prepare();
            platformCalls.clear();
            platformCalls.failing = nth;
            const Reply reply = change();
            platformCalls.failing = 0;
            if (nth == 0) {
                EXPECT_TRUE(std::ranges::equal(platformCalls.made, calls, {}, {}, &Call::name))
                    << "these are all its calls: " << testing::PrintToString(platformCalls.made);
            } else {
                EXPECT_EQ(platformCalls.made.at(nth - 1), name);
            }
            EXPECT_EQ(platformCalls.openHandles, 0);
            EXPECT_EQ(platformCalls.openSessions, 0);
            EXPECT_EQ(isChanged(), effect == done || effect == unrecorded);
            if (effect == done) {
                expectDone(reply, jobName);
            } else if (effect == refused) {
                EXPECT_THAT(reply, Refuses(CMPI_RC_ERR_FAILED, "Unable to create the job."));
            } else if (effect == failed) {
                expectFailed(reply, jobName);
            } else {
                EXPECT_THAT(reply, Returns(2));
                EXPECT_EQ(reply.arguments.empty(), !handsOutAll);
            }
        }
    }
};

TEST_F(PlatformFaults, ofSwitchingTheHost) {
    const auto switchOff = [] { PH_SetPowerState(nullptr, 6); };
    const auto isOn = [&] { return isHostOn(); };
    failEach(
        {{{"OEM_GetHostSystemName", done}}, findSystem, createJob, switchHost, completeJob, storeState},
        hostChange, [&] { return changeHost(number(2)); }, switchOff, isOn, true);
    failEach(
        {createJob, switchHost, completeJob}, hostPower, [&] { return requestHostPower(2); }, switchOff, isOn,
        false);
}

TEST_F(PlatformFaults, ofAControllersRestart) {
    failEach(
        {{{"OEM_GetSPSystemName", done}}, findSystem, createJob, storeState, completeJob}, processorChange,
        [&] { return changeProcessor(11); }, [&] { commands(); }, [&] { return !commands().empty(); }, true);
}

// Where the failure itself cannot be recorded, a power request hands out no job.
TEST_F(PlatformFaults, ofRecordingAFailure) {
    for (const char* function : {"db_modify_concretejob", "db_set_error_info"}) {
        platformCalls.broken = {function};
        const Reply power = requestHostPower(0);
        EXPECT_THAT(power, Returns(2));
        EXPECT_TRUE(power.arguments.empty()) << function;
        const Reply state = changeHost(number(5));
        EXPECT_THAT(state, Returns(2));
        EXPECT_FALSE(state.arguments.empty()) << function;
    }
}

TEST_F(PlatformFaults, ofEnumerations) {
    const std::set<std::string> ignored{
        "db_close",          "db_get_ipmi_session_info", "CIM_Create_IPMI20_Session",
        "CIM_Close_Session", "OEM_GetHostSystemName",    "OEM_GetSPSystemName"};
    for (const ClassRequests* requests : {&host, &processor, &services, &capabilities}) {
        platformCalls.clear();
        const auto undisturbed = requests->enumerate().instances;
        const auto calls = platformCalls.made;
        EXPECT_EQ(calls.back(), "db_close") << "after the session";
        for (unsigned nth = 1; nth <= calls.size(); ++nth) {
            platformCalls.clear();
            platformCalls.failing = nth;
            const Reply reply = requests->enumerate();
            if (ignored.contains(calls[nth - 1]))
                EXPECT_EQ(reply.instances, undisturbed) << nth << ' ' << calls[nth - 1];
            else
                EXPECT_THAT(reply, Refuses(CMPI_RC_ERR_FAILED, "Failed to Enumerate Instance"));
        }
    }
}

TEST_F(PlatformFaults, ofTheBroker) {
    const auto request = [&](const char* call) {
        broker.failCall(call, 1);
        const Reply reply = host.invoke(hostPath, "RequestStateChange", {{"RequestedState", number(2)}});
        broker.resetCalls();
        return reply;
    };
    EXPECT_THAT(request("newObjectPath"), Refuses(CMPI_RC_ERR_FAILED, "Create CMPIObjectPath failed."));
    EXPECT_EQ(jobCount(), 0U);
    for (const char* call : {"addKey", "addArg"}) {
        const Reply reply = request(call);
        EXPECT_THAT(reply, Returns(2)) << call;
        EXPECT_TRUE(reply.arguments.empty());
    }
}

} // namespace
