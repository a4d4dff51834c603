// Threads of a provider: their objects, and the broker's thread, mutex and condition functions.
#include "broker/broker.h"

#include <cmpimacs.h>
#include <gtest/gtest.h>
#include <thread>

namespace {

using broker::Broker;
using broker::Scope;

TEST(Threads, attachedThreadsHaveObjectsUntilTheyDetach) {
    Broker broker;
    const CMPIContext* prepared = nullptr;
    {
        Scope scope(broker);
        prepared = CBPrepareAttachThread(
            broker.handle(), scope.makeContext({{CMPIPrincipal, {CMPI_string, std::string("admin")}}}));
    }
    EXPECT_EQ(broker.liveObjects(), 1U) << "the prepared context outlives the request";
    std::thread([&] {
        EXPECT_EQ(CBAttachThread(broker.handle(), prepared).rc, CMPI_RC_OK);
        const CMPIData user = CMGetContextEntry(prepared, CMPIPrincipal, nullptr);
        EXPECT_STREQ(CMGetCharPtr(user.value.string), "admin");
        CMNewString(broker.handle(), "text", nullptr);
        EXPECT_EQ(broker.liveObjects(), 3U);
        EXPECT_EQ(CBDetachThread(broker.handle(), prepared).rc, CMPI_RC_OK);
        EXPECT_EQ(broker.liveObjects(), 0U);
        Scope scope(broker);
        EXPECT_EQ(CBDetachThread(broker.handle(), scope.makeContext()).rc, CMPI_RC_ERR_FAILED);
    }).join();
    EXPECT_EQ(broker.liveObjects(), 0U);
}

TEST(Threads, forgottenDetachEndsWithTheThread) {
    Broker broker;
    Scope scope(broker);
    const CMPIContext* context = scope.makeContext();
    std::thread([&] {
        CBAttachThread(broker.handle(), context);
        CMNewString(broker.handle(), "text", nullptr);
    }).join();
    EXPECT_EQ(broker.liveObjects(), 1U) << "the context";
    EXPECT_EQ(CBPrepareAttachThread(broker.handle(), nullptr), nullptr);
    EXPECT_EQ(CBAttachThread(broker.handle(), nullptr).rc, CMPI_RC_ERR_INVALID_HANDLE);
}

struct Meeting {
    const CMPIBrokerExtFT* xft;
    void* mutex;
    void* condition;
    int arrived = 0;
};

void* arrive(void* parameter) {
    auto& meeting = *static_cast<Meeting*>(parameter);
    meeting.xft->lockMutex2(meeting.mutex);
    ++meeting.arrived;
    meeting.xft->signalCondition(meeting.condition);
    meeting.xft->unlockMutex2(meeting.mutex);
    return parameter;
}

TEST(Threads, waitForAnotherThread) {
    Broker broker;
    const CMPIBrokerExtFT* xft = broker.handle()->xft;
    Meeting meeting{.xft = xft, .mutex = xft->newMutex(0), .condition = xft->newCondition(0)};
    xft->lockMutex(meeting.mutex);
    void* thread = xft->newThread(arrive, &meeting, 0);
    while (meeting.arrived == 0)
        EXPECT_EQ(xft->condWait(meeting.condition, meeting.mutex), 0);
    timespec past{.tv_sec = 1, .tv_nsec = 0};
    EXPECT_EQ(xft->timedCondWait(meeting.condition, meeting.mutex, &past), ETIMEDOUT);
    xft->unlockMutex(meeting.mutex);
    void* result = nullptr;
    EXPECT_EQ(xft->joinThread(thread, &result), 0);
    EXPECT_EQ(result, &meeting);
    EXPECT_EQ(xft->destroyCondition2(meeting.condition), 0);
    xft->destroyMutex(meeting.mutex);
}

int cleanedKeys;
void* setKey(void* parameter) {
    const auto* xft = static_cast<const CMPIBrokerExtFT*>(parameter);
    unsigned int key = 0;
    xft->createThreadKey(&key, [](void*) { ++cleanedKeys; });
    xft->setThreadSpecific(key, &cleanedKeys);
    return xft->getThreadSpecific(key);
}

int onceCalls;

TEST(Threads, keysAndOnce) {
    Broker broker;
    const CMPIBrokerExtFT* xft = broker.handle()->xft;
    void* result = nullptr;
    xft->joinThread(xft->newThread(setKey, const_cast<CMPIBrokerExtFT*>(xft), 0), &result);
    EXPECT_EQ(result, &cleanedKeys);
    EXPECT_EQ(cleanedKeys, 1);
    int once = 0;
    for (int i = 0; i < 2; ++i)
        xft->threadOnce(&once, [] { ++onceCalls; });
    EXPECT_EQ(onceCalls, 1);
}

} // namespace
