// Tests of each class of the list, on the machine where all have instances.
#pragma once

#include "declared_type.h"
#include "platform_calls.h"
#include "sample_requests.h"

#include <gmock/gmock.h>

struct TestedClass {
    std::string name;
    bool strictly = false; // under a strict broker
};

class Conformance : public ::testing::TestWithParam<TestedClass> {
protected:
    using Operation = broker::Request::Operation;

    void SetUp() override {
        machine().restore();
        platformCalls.clear();
        if (GetParam().strictly)
            broker.beStrict(declaredType);
    }
    void TearDown() override { expectNothingLeft(); }

    static const Machine& machine() {
        static const Machine shared;
        return shared;
    }
    void expectNothingLeft() const {
        EXPECT_EQ(platformCalls.openSessions, 0);
        EXPECT_EQ(platformCalls.openHandles, 0);
        EXPECT_EQ(broker.liveObjects(), 0U);
    }
    bool isEnumerated() const { return tested.description.enumerates; }

    std::vector<broker::Request> changes() const { return sampleChanges(broker, machine(), tested); }
    std::vector<broker::Request> requests() const { return sampleRequests(broker, machine(), tested); }

    broker::Broker broker;
    const ServedClass tested{broker, *schema::find(GetParam().name)};
};

// Failures are the same under every broker.
class ConformanceFaults : public Conformance {};
