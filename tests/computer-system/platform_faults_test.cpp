// Every platform call of every operation fails in turn.
#include "managed_system.h"

#include <functional>

namespace {

using broker::Reply;

// What a client gets when one of the calls fails.
enum class Effect {
    None,       // it was done all the same
    Refused,    // there is no job, and nothing was changed
    Failed,     // the job failed
    Unrecorded, // 2, and the job does not tell what happened
};

struct Call {
    const char* name;
    Effect effect;
};
using Calls = std::vector<Call>;

// Each method is these, in this order.
const Calls findSystem = {
    {"db_init", Effect::None}, {"db_get_device_bytype", Effect::None}, {"db_close", Effect::None}};
const Calls createJob = {
    {"tmp_db_init", Effect::Refused}, {"db_set_concretejob", Effect::Refused}, {"db_close", Effect::Refused}};
// Without settings a session counts as open, and every call on it fails. A session that cannot be opened at
// once is tried again.
const Calls openSession = {{"db_init", Effect::Failed},
                           {"db_get_ipmi_session_info", Effect::Failed},
                           {"db_close", Effect::None},
                           {"CIM_Create_IPMI20_Session", Effect::None}};
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
    void failEach(const Calls& calls, const std::function<Outcome()>& change,
                  const std::function<void()>& prepare, const std::function<bool()>& isChanged,
                  bool handsOutAll) {
        for (unsigned nth = 1; nth <= calls.size(); ++nth) {
            const auto& [name, effect] = calls[nth - 1];
            SCOPED_TRACE(std::to_string(nth) + " " + name);
            prepare();
            platformCalls.clear();
            platformCalls.failing = nth;
            const Outcome outcome = change();
            ASSERT_TRUE(platformCalls.hasFailed);
            ASSERT_EQ(platformCalls.made.at(nth - 1), name);
            platformCalls.failing = 0;
            EXPECT_EQ(platformCalls.openHandles, 0);
            EXPECT_EQ(platformCalls.openSessions, 0);
            EXPECT_EQ(isChanged(), effect == Effect::None || effect == Effect::Unrecorded);
            switch (effect) {
            case Effect::None:
                expectDone(outcome);
                break;
            case Effect::Refused:
                expectRefused(outcome, CMPI_RC_ERR_FAILED, "Unable to create the job.");
                break;
            case Effect::Failed:
                expectFailed(outcome);
                break;
            case Effect::Unrecorded:
                EXPECT_TRUE(outcome.reply.ok());
                EXPECT_EQ(outcome.value(), 2);
                EXPECT_EQ(!outcome.job.empty(), handsOutAll);
            }
        }
        // And those are all its calls.
        prepare();
        platformCalls.clear();
        std::vector<std::string> expected;
        for (const Call& call : calls)
            expected.emplace_back(call.name);
        expectDone(change());
        EXPECT_EQ(platformCalls.made, expected);
    }

    void expectEnumerationReportsEachFailure(const ClassRequests& requests,
                                             const std::vector<std::string>& ignored) {
        platformCalls.clear();
        const std::size_t count = requests.enumerate().instances.size();
        const std::vector<std::string> calls = platformCalls.made;
        ASSERT_GT(count, 0U);
        EXPECT_EQ(calls.back(), "db_close") << "after the session";
        for (unsigned nth = 1; nth <= calls.size(); ++nth) {
            SCOPED_TRACE(std::to_string(nth) + " " + calls[nth - 1]);
            platformCalls.clear();
            platformCalls.failing = nth;
            const Reply reply = requests.enumerate();
            EXPECT_TRUE(platformCalls.hasFailed);
            EXPECT_EQ(platformCalls.openHandles, 0);
            EXPECT_EQ(platformCalls.openSessions, 0);
            if (std::ranges::find(ignored, calls[nth - 1]) != ignored.end()) {
                EXPECT_EQ(reply.instances.size(), count) << reply.message;
            } else {
                EXPECT_EQ(reply.code, CMPI_RC_ERR_FAILED);
                EXPECT_EQ(reply.message, "Failed to Enumerate Instance");
            }
        }
    }
};

TEST_F(PlatformFaults, ofAHostsStateChange) {
    failEach(
        inOrder({findSystem,
                 createJob,
                 openSession,
                 {{"CIM_PowerUp", Effect::Failed}, {"CIM_Close_Session", Effect::None}},
                 completeJob,
                 storeState}),
        [&] { return changeHost(uint16(2)); }, [&] { PH_SetPowerState(nullptr, 6); },
        [&] { return isHostOn(); }, true);
}

TEST_F(PlatformFaults, ofAControllersRestart) {
    int before = 0;
    failEach(
        inOrder({findSystem, createJob, storeState, completeJob}),
        [&] { return changeProcessor(uint16(11)); }, [&] { before = reboots(); },
        [&] { return reboots() == before + 1; }, true);
}

TEST_F(PlatformFaults, ofAPowerRequest) {
    failEach(
        inOrder({createJob,
                 openSession,
                 {{"CIM_PowerUp", Effect::Failed}, {"CIM_Close_Session", Effect::None}},
                 completeJob}),
        [&] { return requestHostPower(2); }, [&] { PH_SetPowerState(nullptr, 6); },
        [&] { return isHostOn(); }, false);
}

// Where the failure itself cannot be recorded, a power request hands out no job.
TEST_F(PlatformFaults, ofRecordingAFailure) {
    const Calls recordFailure = {
        {"tmp_db_init", Effect::Unrecorded},       {"db_modify_concretejob", Effect::Unrecorded},
        {"db_close", Effect::Unrecorded},          {"tmp_db_init", Effect::Unrecorded},
        {"db_set_error_info", Effect::Unrecorded}, {"db_close", Effect::Unrecorded}};
    for (unsigned nth = 1; nth <= recordFailure.size(); ++nth) {
        SCOPED_TRACE(nth);
        platformCalls.clear();
        platformCalls.failing = static_cast<unsigned>(createJob.size()) + nth;
        const Outcome power = requestHostPower(0);
        EXPECT_TRUE(platformCalls.hasFailed);
        EXPECT_EQ(power.value(), 2);
        EXPECT_EQ(broker::find(power.reply.arguments, "Job"), nullptr);
        EXPECT_EQ(platformCalls.openHandles, 0);

        platformCalls.clear();
        platformCalls.failing = static_cast<unsigned>(findSystem.size() + createJob.size()) + nth;
        const Outcome state = changeHost(uint16(5));
        EXPECT_EQ(state.value(), 2);
        EXPECT_NE(broker::find(state.reply.arguments, "Job"), nullptr);
    }
}

TEST_F(PlatformFaults, ofASessionThatNeverOpens) {
    std::filesystem::remove(stateFile);
    platformCalls.clear();
    expectFailed(requestHostPower(2));
    EXPECT_EQ(platformCalls.pauses, 6);
}

TEST_F(PlatformFaults, ofEnumerations) {
    const std::vector<std::string> ignored = {"db_close", "db_get_ipmi_session_info",
                                              "CIM_Create_IPMI20_Session", "CIM_Close_Session"};
    for (const ClassRequests* requests : {&host, &processor, &services, &capabilities})
        expectEnumerationReportsEachFailure(*requests, ignored);
}

TEST_F(PlatformFaults, ofTheBroker) {
    const auto request = [&](const char* call) {
        broker.failCall(call, 1);
        Outcome outcome{.reply = host.invoke(hostPath, "RequestStateChange", {{"RequestedState", uint16(2)}}),
                        .job = {},
                        .jobName = {},
                        .errors = 0};
        broker.resetCalls();
        return outcome;
    };
    expectRefused(request("newObjectPath"), CMPI_RC_ERR_FAILED, "Create CMPIObjectPath failed.");
    EXPECT_EQ(jobCount(), 0U);
    for (const char* call : {"addKey", "addArg"}) {
        const Outcome outcome = request(call);
        EXPECT_TRUE(outcome.reply.ok());
        EXPECT_EQ(outcome.value(), 2) << call;
        EXPECT_THAT(outcome.reply.arguments, testing::IsEmpty());
    }
}

} // namespace
