// Every platform call of every operation fails in turn.
#include "managed_system.h"

namespace {

using broker::Reply;

// What a client gets when one of the calls fails.
enum class Effect {
    None,       // it was done all the same
    Refused,    // there is no job, and nothing was changed
    Failed,     // the job failed
    Unrecorded, // 2, and the job does not tell what happened
};
using Calls = std::vector<std::pair<std::string, Effect>>;

// Each method is these, in this order.
const Calls findSystem = {
    {"db_init", Effect::None}, {"db_get_device_bytype", Effect::None}, {"db_close", Effect::None}};
const Calls createJob = {
    {"tmp_db_init", Effect::Refused}, {"db_set_concretejob", Effect::Refused}, {"db_close", Effect::Refused}};
// Without settings a session counts as open, and every call on it fails. A session that cannot be opened at
// once is tried again.
const Calls switchHost = {{"db_init", Effect::Failed},     {"db_get_ipmi_session_info", Effect::Failed},
                          {"db_close", Effect::None},      {"CIM_Create_IPMI20_Session", Effect::None},
                          {"CIM_PowerUp", Effect::Failed}, {"CIM_Close_Session", Effect::None}};
const Calls completeJob = {{"tmp_db_init", Effect::Unrecorded},
                           {"db_modify_concretejob", Effect::Unrecorded},
                           {"db_close", Effect::Unrecorded}};
const Calls storeState = {{"db_init", Effect::None},
                          {"db_get_device_bytype", Effect::None},
                          {"db_set_device", Effect::None},
                          {"db_close", Effect::None}};

Calls inOrder(std::initializer_list<Calls> parts) {
    Calls calls;
    for (const Calls& part : parts)
        calls.insert(calls.end(), part.begin(), part.end());
    return calls;
}

class PlatformFaults : public ManagedSystem {
protected:
    // Runs `change` with each of its calls failing, each time on a machine as `prepare` leaves it;
    // `isChanged` tells whether the change was made. A job that does not tell is handed out only where
    // `handsOutAll`.
    template <class Change, class Prepare, class IsChanged>
    void failEach(const Calls& calls, const char* jobName, Change change, Prepare prepare,
                  IsChanged isChanged, bool handsOutAll) {
        for (unsigned nth = 0; nth <= calls.size(); ++nth) { // 0: none fails
            const Effect effect = nth != 0 ? calls[nth - 1].second : Effect::None;
            SCOPED_TRACE(std::to_string(nth) + " " + (nth != 0 ? calls[nth - 1].first : ""));
            prepare();
            platformCalls.clear();
            platformCalls.failing = nth;
            const Reply reply = change();
            EXPECT_EQ(platformCalls.hasFailed, nth != 0);
            platformCalls.failing = 0;
            EXPECT_EQ(platformCalls.openHandles, 0);
            EXPECT_EQ(platformCalls.openSessions, 0);
            if (nth == 0) {
                std::vector<std::string> names;
                std::ranges::transform(calls, std::back_inserter(names), &Calls::value_type::first);
                EXPECT_EQ(platformCalls.made, names) << "and those are all its calls";
            }
            EXPECT_EQ(isChanged(), effect == Effect::None || effect == Effect::Unrecorded);
            switch (effect) {
            case Effect::None:
                expectDone(reply, jobName);
                break;
            case Effect::Refused:
                EXPECT_THAT(reply, Refuses(CMPI_RC_ERR_FAILED, "Unable to create the job."));
                break;
            case Effect::Failed:
                expectFailed(reply, jobName);
                break;
            case Effect::Unrecorded:
                EXPECT_THAT(reply, Returns(2));
                EXPECT_EQ(!reply.arguments.empty(), handsOutAll);
            }
        }
    }
};

TEST_F(PlatformFaults, ofSwitchingTheHost) {
    const auto switchOff = [] { PH_SetPowerState(nullptr, 6); };
    const auto isOn = [&] { return isHostOn(); };
    failEach(
        inOrder({{{"OEM_GetHostSystemName", Effect::None}},
                 findSystem,
                 createJob,
                 switchHost,
                 completeJob,
                 storeState}),
        hostChange, [&] { return changeHost(number(2)); }, switchOff, isOn, true);
    failEach(
        inOrder({createJob, switchHost, completeJob}), hostPower, [&] { return requestHostPower(2); },
        switchOff, isOn, false);
}

TEST_F(PlatformFaults, ofAControllersRestart) {
    failEach(
        inOrder({{{"OEM_GetSPSystemName", Effect::None}}, findSystem, createJob, storeState, completeJob}),
        processorChange, [&] { return changeProcessor(11); }, [&] { commands(); },
        [&] { return !commands().empty(); }, true);
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
    const std::vector<std::string> ignored = {
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
            if (std::ranges::find(ignored, calls[nth - 1]) != ignored.end())
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
