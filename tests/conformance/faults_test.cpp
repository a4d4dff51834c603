// What the frame promises of every class's requests when something under them fails: no crash, no exception,
// no session, handle or object left behind.
#include "conformance_fixture.h"
#include "failing_allocation.h"
#include "sampling.h"

#include <algorithm>
#include <map>

namespace {

using broker::Reply;
using broker::Request;

// Requests allocate and call once a record and property: of many places those tried are spread over all.
std::vector<unsigned> tried(unsigned count) {
    constexpr unsigned mostTried = 24;
    std::vector<unsigned> numbers;
    const unsigned most = std::min(count, std::max(1U, mostTried / sampling()));
    for (unsigned i = 0; i < most; ++i)
        numbers.push_back(1 + (most > 1 ? i * (count - 1) / (most - 1) : 0));
    return numbers;
}

bool isRead(const Request& request) {
    return request.operation == Request::Operation::EnumerateInstances ||
           request.operation == Request::Operation::EnumerateInstanceNames ||
           request.operation == Request::Operation::GetInstance;
}

TEST_P(ConformanceFaults, survivesPlatformCallsThatFail) {
    for (const Request& request : requests()) {
        SCOPED_TRACE(toText(request));
        machine().restore();
        platformCalls.clear();
        tested.answer(request);
        const auto made = platformCalls.made;
        for (const unsigned nth : tried(static_cast<unsigned>(made.size()))) {
            SCOPED_TRACE("call " + std::to_string(nth) + " fails: " + made[nth - 1]);
            machine().restore();
            platformCalls.clear();
            platformCalls.failing = nth;
            const Reply reply = tested.answer(request);
            EXPECT_TRUE(platformCalls.hasFailed);
            EXPECT_EQ(reply.ok(), reply.message.empty()) << reply.message;
            platformCalls.failing = 0;
            expectNothingLeft();
        }
    }
    machine().restore();
}

TEST_P(ConformanceFaults, survivesAllocationsThatFail) {
    for (const Request& request : requests()) {
        SCOPED_TRACE(toText(request));
        machine().restore();
        platformCalls.records = false;
        const Reply undisturbed = tested.answer(request);
        bool hasFailed = true;
        for (unsigned nth = 1; hasFailed; nth += sampling()) {
            SCOPED_TRACE("allocation " + std::to_string(nth) + " fails");
            machine().restore();
            failAllocation(nth);
            const Reply reply = tested.answer(request);
            hasFailed = allocationFailed();
            failAllocation(0);
            if (isRead(request) && reply.ok()) {
                EXPECT_EQ(reply.instances, undisturbed.instances) << "whole, or a failure";
                EXPECT_EQ(reply.paths, undisturbed.paths) << "whole, or a failure";
            }
            expectNothingLeft();
        }
    }
    machine().restore();
}

TEST_P(ConformanceFaults, survivesBrokerCallsThatFail) {
    platformCalls.records = false;
    for (const Request& request : requests()) {
        SCOPED_TRACE(toText(request));
        machine().restore();
        broker.resetCalls();
        const Reply undisturbed = tested.answer(request);
        std::map<std::string, unsigned> calls;
        for (const std::string& function : broker::Broker::callNames())
            if (function != "release") // what is not released is left behind
                calls[function] = broker.calls(function);
        for (const auto& [function, count] : calls)
            for (const unsigned nth : tried(count)) {
                SCOPED_TRACE(function + ' ' + std::to_string(nth));
                machine().restore();
                broker.resetCalls();
                broker.failCall(function, nth);
                const Reply reply = tested.answer(request);
                broker.resetCalls();
                if (isRead(request) && reply.ok()) {
                    EXPECT_EQ(reply.instances, undisturbed.instances) << "whole, or a failure";
                    EXPECT_EQ(reply.paths, undisturbed.paths) << "whole, or a failure";
                }
                expectNothingLeft();
            }
    }
    machine().restore();
}

} // namespace
