// Both sensor classes: readings become states, unreadable sensors are left out, what is opened is closed.
#include "class_fixture.h"
#include "failing_allocation.h"

namespace {

using broker::Reply;
using ::testing::ElementsAre;
using ::testing::IsEmpty;
using ::testing::SizeIs;

std::vector<std::string> elementNames(const std::vector<broker::Instance>& instances) {
    std::vector<std::string> names;
    names.reserve(instances.size());
    for (const broker::Instance& instance : instances)
        names.push_back(textOf(instance, "ElementName"));
    return names;
}

TEST_F(SensorClasses, StatesAndHealthOfAReading) {
    const CIM_SensorReading refused{0xCB, 1, 0xC0, 1, 0x80};
    const struct {
        const char* what;
        bool answers;
        CIM_SensorReading answer;
        const char* operationalStatus;
        const char* healthState;
        const char* discreteState;
        const char* discreteEnabled;
        const char* numericState;
        const char* numericEnabled;
        const char* reading;
    } cases[] = {
        {"no answer", false, {}, "{0}", "0", "", "2", "", "2", "0"},
        {"refused", true, refused, "{0}", "0", "", "2", "", "2", "0"},
        {"unavailable", true, makeReading(3, 1, 0xE0), "{11}", "0", "Unknown", "5", "Unknown", "5", "0"},
        {"asserted", true, makeReading(3, 1), "{2}", "5", "Good", "2", "Lower Non-Critical", "2", "300"},
        {"not asserted", true, makeReading(3, 0x38), "{2}", "5", "Unknown", "5", "Normal", "2", "300"},
        {"high byte's reserved bit", true, makeReading(3, 0), "{2}", "5", "Unknown", "5", "Normal", "2",
         "300"},
        {"not scanning", true, makeReading(3, 1, 0x00), "{2}", "5", "Good", "2", "Lower Non-Critical", "2",
         "300"},
    };
    for (const auto& expected : cases) {
        SCOPED_TRACE(expected.what);
        platform = {};
        platform.sensors = {makeCompactSdr("Limit", 17, 0x01, 0x05)};
        platform.numericSensors = {makeFullSdr("Inlet", 18)};
        if (expected.answers)
            platform.readings = {{17, expected.answer}, {18, expected.answer}};
        const broker::Instance sensor = only(discrete);
        EXPECT_EQ(textOf(sensor, "CurrentState"), expected.discreteState);
        EXPECT_EQ(textOf(sensor, "EnabledState"), expected.discreteEnabled);
        const broker::Instance inlet = only(numeric);
        EXPECT_EQ(textOf(inlet, "CurrentState"), expected.numericState);
        EXPECT_EQ(textOf(inlet, "EnabledState"), expected.numericEnabled);
        EXPECT_EQ(textOf(inlet, "CurrentReading"), expected.reading);
        for (const broker::Instance& instance : {sensor, inlet}) {
            EXPECT_EQ(textOf(instance, "OperationalStatus"), expected.operationalStatus);
            EXPECT_EQ(textOf(instance, "HealthState"), expected.healthState);
        }
    }
}

TEST_F(SensorClasses, DiscreteSensorWithAllProperties) {
    CompactSdr sdr = makeCompactSdr("PSU 1", 17, 0x08, 0x6F, 1);
    std::snprintf(sdr.otherSensorType, sizeof(sdr.otherSensorType), "Power Supply");
    sdr.entityId = 10;
    platform.sensors = {sdr};
    platform.readings[17] = makeReading(0, 0x02);
    const broker::Instance instance = only(discrete);
    const std::vector<std::pair<const char*, const char*>> expected = {
        {"SystemCreationClassName", "CIM_HostComputerSystem"},
        {"SystemName", "rack7"},
        {"CreationClassName", "CIM_Sensor"},
        {"DeviceID", "32.17.0.8.6f.1:PSU 1"},
        {"SensorType", "1"},
        {"OtherSensorTypeDescription", "Power Supply"},
        {"HealthState", "5"},
        {"OperationalStatus", "{2}"},
        {"PossibleStates", "{\"Power Supply Failure detected Assert\", \"Power Supply Failure detected "
                           "Deassert\", \"Unknown\"}"},
        {"CurrentState", "Power Supply Failure detected Assert"},
        {"Caption", "PowerSupply(17.32.0)"},
        {"Description", "PSU 1(17.32.0):PowerSupply for Power Supply 1"},
        {"ElementName", "PSU 1(17.32.0)"},
        {"RequestedState", "12"},
        {"EnabledState", "2"},
    };
    ASSERT_EQ(instance.properties.size(), expected.size());
    for (std::size_t i = 0; i < expected.size(); ++i) {
        EXPECT_EQ(instance.properties[i].name, expected[i].first);
        EXPECT_EQ(broker::toText(instance.properties[i].value), expected[i].second) << expected[i].first;
    }
}

// Two sensors and a third that cannot be read.
class ThreeSensors : public SensorClasses, public ::testing::WithParamInterface<bool> {
protected:
    void SetUp() override {
        SensorClasses::SetUp();
        for (int number : {1, 2, 3}) {
            const std::string name = "S" + std::to_string(number);
            platform.sensors.push_back(makeCompactSdr(name.c_str(), number, 0x08, 0x0B));
            platform.numericSensors.push_back(makeFullSdr(name.c_str(), number));
        }
        platform.readings = {{1, makeReading(10)}, {3, makeReading(30)}};
    }
    const ClassRequests& requests = GetParam() ? numeric : discrete;
    const char* getAll = GetParam() ? "db_get_all_full_sdrs" : "db_get_all_compact_sdrs";
    const char* getOne = GetParam() ? "db_get_full_sdr" : "db_get_compact_sdr";
};
INSTANTIATE_TEST_SUITE_P(Sensor, ThreeSensors, ::testing::Values(false));
INSTANTIATE_TEST_SUITE_P(NumericSensor, ThreeSensors, ::testing::Values(true));

TEST_P(ThreeSensors, UnreadableOnesAreLeftOut) {
    EXPECT_THAT(elementNames(requests.enumerate().instances), ElementsAre("S1(1.32.0)", "S3(3.32.0)"));
    const auto array = requests.instanceArray();
    ASSERT_TRUE(array.has_value());
    EXPECT_THAT(elementNames(*array), ElementsAre("S1(1.32.0)", "S3(3.32.0)"));
    const Reply names = requests.names();
    ASSERT_THAT(names.paths, SizeIs(3));
    const Reply unreadable = requests.get(names.paths[1]);
    EXPECT_THAT(elementNames(unreadable.instances), ElementsAre("S2(2.32.0)"));
}

TEST_P(ThreeSensors, AreReadOverOneSession) {
    EXPECT_TRUE(requests.enumerate().ok());
    EXPECT_EQ(platform.sessions, 1);
    EXPECT_THAT(platform.read, ElementsAre(1, 2, 3));
    platform.read.clear();
    EXPECT_THAT(requests.names().paths, SizeIs(3));
    EXPECT_EQ(platform.sessions, 1) << "names need none";
    EXPECT_THAT(platform.read, IsEmpty());
}

TEST_P(ThreeSensors, PropertyListIsObeyed) {
    const Reply reply = requests.enumerate({{"currentstate"}});
    ASSERT_THAT(reply.instances, SizeIs(2));
    EXPECT_THAT(reply.instances[0].properties, SizeIs(5)) << "and four keys";
}

TEST_P(ThreeSensors, OnlyAllKeysName) {
    const broker::ObjectPath path = requests.names().paths.at(0);
    for (std::size_t i = 0; i < path.keys.size(); ++i) {
        broker::ObjectPath other = path;
        other.keys[i].value = {CMPI_string, std::string("other")};
        const Reply wrong = requests.get(other);
        EXPECT_EQ(wrong.code, CMPI_RC_ERR_FAILED) << path.keys[i].name;
        EXPECT_EQ(wrong.message, "Failed to Get Instance");
        other.keys.erase(other.keys.begin() + static_cast<std::ptrdiff_t>(i));
        EXPECT_EQ(requests.get(other).message, "Failed to Get Instance") << path.keys[i].name;
    }
}

TEST_P(ThreeSensors, CannotBeChanged) {
    const broker::ObjectPath path = requests.names().paths.at(0);
    EXPECT_EQ(requests.modify({path, {}}).message, "SetInstance not supported");
    EXPECT_EQ(requests.create({path, {}}).message, "CreateInstance not supported");
    EXPECT_EQ(requests.remove(path).message, "DeleteInstance not supported");
    EXPECT_EQ(requests.invoke(path, "Reset").message, "Invoke Method not supported");
    EXPECT_EQ(requests.invoke(path, "Reset").code, CMPI_RC_ERR_NOT_SUPPORTED);
}

TEST_P(ThreeSensors, FailingPlatformFunctions) {
    const broker::ObjectPath path = requests.names().paths.at(0);
    const struct {
        std::set<std::string> functions;
        bool enumerates;
        bool names;
        bool gets;
    } cases[] = {
        {{"OEM_GetHostSystemName", "db_get_device_bytype"}, false, false, false},
        {{"db_init"}, false, false, false},
        {{getAll}, false, false, true},
        {{getOne}, true, true, false},
        {{"CIM_Create_IPMI20_Session"}, false, true, false},
        {{"CIM_GetSensorReading"}, true, true, true},
        {{"db_close", "CIM_Close_Session"}, true, true, true},
    };
    for (const auto& [functions, enumerates, names, gets] : cases) {
        SCOPED_TRACE(*functions.begin());
        platform.failing = functions;
        ::testing::internal::CaptureStdout(); // failures of handles are printed
        const Reply all = requests.enumerate();
        EXPECT_EQ(all.message, enumerates ? "" : "Failed to Enumerate Instance");
        EXPECT_EQ(all.code, enumerates ? CMPI_RC_OK : CMPI_RC_ERR_FAILED);
        EXPECT_EQ(requests.instanceArray().has_value(), enumerates);
        EXPECT_EQ(requests.names().message, names ? "" : "Failed to Enumerate Instance Names");
        EXPECT_EQ(requests.get(path).message, gets ? "" : "Failed to Get Instance");
        ::testing::internal::GetCapturedStdout();
        EXPECT_EQ(platform.openHandles, 0);
        EXPECT_EQ(platform.openSessions, 0);
    }
}

TEST_P(ThreeSensors, FailingAllocations) {
    const broker::ObjectPath path = requests.names().paths.at(0);
    int failures = 0;
    for (unsigned nth = 1; nth < 100; ++nth) {
        failAllocation(nth);
        ::testing::internal::CaptureStdout();
        const Reply all = requests.enumerate();
        const bool failed = allocationFailed();
        failAllocation(nth);
        const Reply one = requests.get(path);
        const bool getFailed = allocationFailed();
        failAllocation(0);
        ::testing::internal::GetCapturedStdout();
        // The session's settings are a row as well: without them every sensor is unreadable.
        EXPECT_TRUE(!failed || !all.ok() || all.instances.empty()) << nth;
        EXPECT_EQ(all.message, all.ok() ? "" : "Failed to Enumerate Instance") << nth;
        EXPECT_EQ(one.message, one.ok() ? "" : "Failed to Get Instance") << nth;
        EXPECT_EQ(platform.openHandles, 0);
        EXPECT_EQ(platform.openSessions, 0);
        failures += failed;
        if (!failed && !getFailed)
            break;
    }
    EXPECT_GT(failures, 8) << "rows, records and possible states are allocated";
    EXPECT_THAT(requests.enumerate().instances, SizeIs(2));
}

TEST_P(ThreeSensors, FailingBrokerCalls) {
    for (const char* call :
         {"newObjectPath", "newInstance", "newArray", "addKey", "setProperty", "setElementAt"}) {
        unsigned nth = 0;
        for (bool reached = true; reached && nth < 200;) {
            broker.resetCalls();
            broker.failCall(call, ++nth);
            const Reply reply = requests.enumerate();
            const unsigned calls = broker.calls(call);
            broker.resetCalls();
            reached = calls >= nth;
            EXPECT_EQ(reply.message, reached ? "Failed to Enumerate Instance" : "") << call << " " << nth;
            EXPECT_EQ(broker.liveObjects(), 0U) << call << " " << nth;
        }
        EXPECT_GT(nth, 1U) << call << " is used";
    }
}

TEST_F(SensorClasses, NoSensorsNeedNoSession) {
    platform.failing = {"CIM_Create_IPMI20_Session"};
    EXPECT_TRUE(discrete.enumerate().ok());
    EXPECT_TRUE(numeric.enumerate().ok());
    EXPECT_TRUE(numeric.instanceArray().has_value());
}

TEST_F(SensorClasses, StatesOfOneSensorShareItsReading) {
    platform.sensors = {makeCompactSdr("PSU", 5, 0x08, 0x6F, 0), makeCompactSdr("PSU", 5, 0x08, 0x6F, 1),
                        makeCompactSdr("Lost", 6, 0x08, 0x6F, 1), makeCompactSdr("Lost", 6, 0x08, 0x6F, 3),
                        makeCompactSdr("PSU", 5, 0x08, 0x6F, 2)};
    platform.readings[5] = makeReading(0, 0x02);
    const Reply reply = discrete.enumerate();
    EXPECT_THAT(platform.read, ElementsAre(5, 6, 5));
    ASSERT_THAT(reply.instances, SizeIs(3));
    EXPECT_EQ(textOf(reply.instances[0], "CurrentState"), "Presence detected Deassert");
    EXPECT_EQ(textOf(reply.instances[1], "CurrentState"), "Power Supply Failure detected Assert");
}

TEST_F(SensorClasses, SkippingGoesByTheStatusAlone) {
    EXPECT_EQ(IsSkipUnkwonError("", nullptr, 0), 1);
    EXPECT_EQ(IsSkipUnkwonError("32.1.0.1.01.99:x", "SDR", 2), 0);
    EXPECT_EQ(IsSkipUnkwonError("32.1.0.1.01.99:x", "SDR", 11), 0);
}

} // namespace
