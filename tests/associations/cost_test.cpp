// What a request costs: arrays that are asked for, and IPMI messages.
#include "association_fixture.h"

#include "ipmi/transport.h"

#include <set>

namespace {

using broker::ObjectPath;
using testing::ElementsAre;
using testing::IsEmpty;

class Cost : public Associations {
protected:
    void TearDown() override {
        const bool isCached = features().words[CORE_FEATURE_INSTANCE_ARRAY_CACHE] == 1;
        features() = {};
        ipmi::observeExchanges({});
        EXPECT_EQ(broker.liveObjects(), isCached ? 1U : 0U) << "the cache has an array of its own";
    }
    // The arrays that a request asks for.
    template <class Request>
    std::vector<std::string> asked(Request request) {
        askedArrays.clear();
        EXPECT_TRUE(request().ok());
        return askedArrays;
    }
    template <class Request>
    unsigned messages(Request request) {
        unsigned count = 0;
        ipmi::observeExchanges([&](auto...) { ++count; });
        EXPECT_TRUE(request().ok());
        ipmi::observeExchanges({});
        return count;
    }
};

TEST_F(Cost, isOnePassOverEachClassThatIsLeft) {
    const ObjectPath host = element("CIM_HostComputerSystem");
    const ObjectPath sensor = element("CIM_NumericSensor");
    const ObjectPath log = element("CIM_RecordLog");
    // Each class once, though two associations lead to it; keys, and what the rows match by.
    EXPECT_THAT(asked([&] { return broker.associatorNames(host, {.resultClass = "CIM_Sensor"}); }),
                ElementsAre("CIM_NumericSensor(SystemName)", "CIM_Sensor(SystemName)"));
    EXPECT_THAT(asked([&] {
                    return broker.associators(host, {.resultClass = "CIM_NumericSensor"}, {{"CurrentState"}});
                }),
                ElementsAre("CIM_NumericSensor(SystemName,CurrentState)"));
    EXPECT_THAT(asked([&] { return broker.associators(host, {.resultClass = "CIM_NumericSensor"}); }),
                ElementsAre("CIM_NumericSensor(*)"));
    EXPECT_THAT(asked([&] { return broker.associatorNames(sensor, {.assocClass = "CIM_SystemDevice"}); }),
                ElementsAre("CIM_HostComputerSystem(Name)"));
    EXPECT_THAT(asked([&] { return broker.referenceNames(log, {.resultClass = "CIM_LogManagesRecord"}); }),
                ElementsAre("CIM_LogEntry(LogInstanceID)"));
    EXPECT_THAT(asked([&] {
                    return broker.references(element("CIM_IPProtocolEndpoint"),
                                             {.resultClass = "CIM_ElementSettingData"}, {{"IsDefault"}});
                }),
                ElementsAre("CIM_IPAssignmentSettingData()", "CIM_DHCPSettingData(InstanceID)"));
    // What no row is left for costs nothing.
    EXPECT_THAT(asked([&] { return broker.associators(host, {.role = "PartComponent"}); }), IsEmpty());
    EXPECT_EQ(messages([&] { return broker.associatorNames(host, {.assocClass = "CIM_UseOfLog"}); }), 0U);
    EXPECT_EQ(messages([&] {
                  return broker.associatorNames(profile("DSP1009"), {.assocClass = "CIM_ReferencedProfile"});
              }),
              0U);
}

// Whether the host is on is asked once, and only for those who want to know.
TEST_F(Cost, ofTheHostsPowerIsOneMessage) {
    const ObjectPath powered = path("CIM_AssociatedPowerManagementService");
    const auto list = [&](const broker::PropertyList& properties) {
        return messages([&] { return broker.enumerateInstances(powered, properties); });
    };
    const unsigned without = list({{"RequestedPowerState"}});
    EXPECT_EQ(messages([&] { return broker.enumerateInstanceNames(powered); }), without);
    EXPECT_EQ(list({{"PowerState"}}), without + 1);
    EXPECT_EQ(list({}), without + 1);
}

TEST_F(Cost, ofAnEnumerationIsOnePassOverEachEnd) {
    const auto all = asked([&] { return broker.enumerateInstanceNames(path("CIM_HostedAccessPoint")); });
    EXPECT_THAT(all, testing::IsSupersetOf({"CIM_SPComputerSystem(Name)", "CIM_LANEndpoint(SystemName)",
                                            "CIM_IPProtocolEndpoint(SystemName)"}));
    EXPECT_EQ(std::set<std::string>(all.begin(), all.end()).size(), all.size());
}

TEST_F(Cost, ofWhatIsLiveIsPaidOnceAndOnlyIfItIsWanted) {
    const ObjectPath once = element("CIM_BootConfigSetting", "Once");
    const auto cost = [&](const char* property) {
        return messages(
            [&] { return broker.references(once, {.resultClass = "CIM_OrderedComponent"}, {{property}}); });
    };
    EXPECT_EQ(cost("AssignedSequence"), cost("GroupComponent") + 1);
}

// The cache answers with what it was first filled with: it has to be filled with everything.
TEST_F(Cost, ofSensorsIsPaidOnceWithTheCacheOfArrays) {
    features().words[CORE_FEATURE_INSTANCE_ARRAY_CACHE] = 1;
    const ObjectPath host = element("CIM_HostComputerSystem");
    const auto sensors = [&](const char* property) {
        return broker.associators(
            host, {.assocClass = "CIM_SystemDevice", .resultClass = "CIM_NumericSensor"}, {{property}});
    };
    EXPECT_THAT(asked([&] { return sensors("ElementName"); }), ElementsAre("CIM_NumericSensor(*)"));
    const broker::Reply states = sensors("CurrentState");
    ASSERT_FALSE(states.instances.empty());
    for (const auto& sensor : states.instances) {
        EXPECT_NE(find(sensor.properties, "CurrentState"), nullptr);
        EXPECT_EQ(sensor.properties.size(), 5U) << "what was asked for, and the keys";
    }
    const unsigned hostAlone = messages([&] { return broker.getInstance(host); });
    EXPECT_EQ(messages([&] { return sensors("CurrentReading"); }), hostAlone);
}

} // namespace
