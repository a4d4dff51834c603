// How long objects live, who shares them, and calls that are made to fail.
#include "broker/broker.h"
#include "chars.h"

#include <cmpimacs.h>
#include <gtest/gtest.h>
#include <optional>
#include <thread>

namespace {

using broker::Broker;
using broker::Instance;
using broker::NamedValues;
using broker::Scope;

TEST(Lifetime, objectsGoWithTheInnermostScope) {
    Broker broker;
    std::optional<Scope> outer(broker);
    CMPIString* first = CMNewString(broker.handle(), "first", nullptr);
    {
        const Scope inner(broker);
        CMNewString(broker.handle(), "second", nullptr);
        EXPECT_EQ(broker.liveObjects(), 2U);
    }
    EXPECT_EQ(broker.liveObjects(), 1U);
    EXPECT_STREQ(CMGetCharPtr(first), "first");
    outer.reset();
    EXPECT_EQ(broker.liveObjects(), 0U);
}

TEST(Lifetime, releasedObjectsGoAtOnce) {
    Broker broker;
    const Scope scope(broker);
    CMPIString* strings[3];
    for (CMPIString*& string : strings)
        string = CMNewString(broker.handle(), "text", nullptr);
    CMRelease(strings[1]); // from the middle of the arena's list, then from its ends
    CMRelease(strings[2]);
    CMRelease(strings[0]);
    EXPECT_EQ(broker.liveObjects(), 0U);
}

// A thread that stays attached asks the objects that it makes for texts and arrays all its life.
TEST(Lifetime, partsGoWithWhatWasAskedForThem) {
    Broker broker;
    const Scope scope(broker);
    CMPIInstance* instance =
        CMNewInstance(broker.handle(), CMNewObjectPath(broker.handle(), "root", "CIM_X", nullptr), nullptr);
    CMSetProperty(instance, "Name", chars("first"), CMPI_chars);
    const std::size_t before = broker.liveObjects();
    CMPIString* name = nullptr;
    const CMPIData property = CMGetPropertyAt(instance, 0, &name, nullptr);
    const CMPIObjectPath* path = CMGetObjectPath(instance, nullptr);
    const CMPIString* className = CMGetClassName(path, nullptr);
    EXPECT_STREQ(CMGetCharPtr(className), "CIM_X");
    EXPECT_STREQ(CMGetCharPtr(property.value.string), "first");
    EXPECT_EQ(broker.liveObjects(), before + 4);
    CMPIString* kept = CMClone(property.value.string, nullptr);
    CMRelease(name); // before its owner
    CMRelease(instance);
    EXPECT_EQ(broker.liveObjects(), before);
    EXPECT_STREQ(CMGetCharPtr(kept), "first");
    CMRelease(kept);
}

TEST(Lifetime, clonesOutliveScopeAndBroker) {
    std::optional<Broker> broker(std::in_place);
    CMPIString* clone = nullptr;
    {
        const Scope scope(*broker);
        clone = CMClone(CMNewString(broker->handle(), "kept", nullptr), nullptr);
    }
    EXPECT_EQ(broker->liveObjects(), 1U);
    broker.reset();
    EXPECT_STREQ(CMGetCharPtr(clone), "kept");
    EXPECT_EQ(CMRelease(clone).rc, CMPI_RC_OK);
}

// Under the leak checker.
TEST(Lifetime, objectsWithoutScopeGoWithTheBroker) {
    Broker broker;
    CMPIString* string = CMNewString(broker.handle(), "text", nullptr);
    CMNewString(broker.handle(), "other", nullptr);
    EXPECT_EQ(broker.liveObjects(), 2U);
    CMRelease(string);
    EXPECT_EQ(broker.liveObjects(), 1U);
}

TEST(Lifetime, scopesBelongToTheirThread) {
    Broker broker;
    const Scope scope(broker);
    std::thread([&] {
        const Scope own(broker);
        CMNewString(broker.handle(), "text", nullptr);
    }).join();
    EXPECT_EQ(broker.liveObjects(), 0U);
}

// Clones, arrays and results share the instance's content; none sees what another one changes.
TEST(Lifetime, sharedInstancesAreCopiedWhenTheyChange) {
    Broker broker;
    Scope scope(broker);
    CMPIInstance* original = scope.make(Instance{});
    CMSetProperty(original, "P", chars("1"), CMPI_chars);

    const CMPIResult* result = scope.makeResult();
    CMReturnInstance(result, original);
    CMPIArray* array = CMNewArray(broker.handle(), 1, CMPI_instance, nullptr);
    CMPIValue value{.inst = original};
    CMSetArrayElementAt(array, 0, &value, CMPI_instance);
    CMPIInstance* clone = CMClone(original, nullptr);
    CMSetProperty(clone, "P", chars("2"), CMPI_chars);
    CMSetProperty(original, "P", chars("3"), CMPI_chars);
    CMPIInstance* element = CMGetArrayElementAt(array, 0, nullptr).value.inst;
    CMSetProperty(element, "P", chars("4"), CMPI_chars);

    const auto content = [](const Instance& instance) { return toText(*find(instance.properties, "P")); };
    EXPECT_EQ(content(broker::toReply(result).instances.at(0)), "1");
    EXPECT_EQ(content(broker::toInstance(clone)), "2");
    EXPECT_EQ(content(broker::toInstance(original)), "3");
    EXPECT_EQ(content(broker::toInstance(element)), "4");
    EXPECT_EQ(content(broker::toInstance(CMGetArrayElementAt(array, 0, nullptr).value.inst)), "1");
    CMRelease(clone);
}

// The fault tests fail calls by their names.
TEST(Faults, haveNamesOfCalls) {
    Broker broker;
    EXPECT_THROW(broker.calls("setproperty"), std::invalid_argument);
    EXPECT_THROW(broker.failCall("", 1), std::invalid_argument);
    for (const std::string& name : Broker::callNames())
        EXPECT_EQ(broker.calls(name), 0U);
}

} // namespace
