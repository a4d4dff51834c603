// The schema of this build: what is served agrees with what DMTF declares.
#include "schema/class_schema.h"

#include <algorithm>
#include <gmock/gmock.h>
#include <string>
#include <vector>

namespace {

using schema::Class;
using schema::Property;
using testing::UnorderedElementsAre;

// A feature that DMTF declares otherwise, or has not at all; in classes of ours, which DMTF has not, new
// names are no contradiction.
template <class Feature>
bool contradicts(const Feature& feature) {
    return feature.isOurs && !schema::find(feature.origin)->isOurs;
}

std::vector<std::string> contradictions() {
    std::vector<std::string> all;
    for (const Class& each : schema::servedClasses()) {
        const auto report = [&](const auto& feature, const char* what) {
            all.push_back(std::string(each.name) + '.' + std::string(feature.name) + what);
        };
        for (const Property& property : each.servedProperties())
            if (contradicts(property))
                report(property, "");
        for (const schema::Method& method : each.servedMethods())
            if (contradicts(method))
                report(method, "()");
        // The indication provider has no table of what it delivers.
        if (!each.isIndication)
            for (const Property& property : std::span(each.properties).subspan(each.servedPropertyCount))
                if (property.isKey)
                    report(property, " is a key that is not served");
    }
    return all;
}

TEST(Agreement, withDmtfIsCompleteButFor) {
    EXPECT_THAT(contradictions(), UnorderedElementsAre(
                                      // It returns the job that it runs as; DMTF's has no parameters.
                                      "CIM_RecordLog.ClearLog()",
                                      // Its value is signed, and clients of the library have relied on that.
                                      "CIM_PowerManagementService.RequestPowerStateChange()"));
}

TEST(Agreement, isOnFeaturesThatWereInherited) {
    const Class& sensor = *schema::find("cim_numericsensor");
    EXPECT_TRUE(sensor.isServed());
    EXPECT_TRUE(schema::isSubclass("CIM_NumericSensor", "cim_logicaldevice"));
    EXPECT_FALSE(schema::isSubclass("CIM_LogicalDevice", "CIM_NumericSensor"));
    const Property& id = *sensor.property("deviceid");
    EXPECT_TRUE(id.isKey);
    EXPECT_EQ(id.origin, "CIM_LogicalDevice");
    EXPECT_EQ(id.maxLength, 64U);
    // Overridden twice below CIM_ManagedSystemElement, which limits it.
    const Property& name = *schema::find("CIM_ProtocolEndpoint")->property("Name");
    EXPECT_EQ(name.origin, "CIM_ManagedSystemElement");
    EXPECT_EQ(name.declaredBy, "CIM_ProtocolEndpoint");
    EXPECT_TRUE(name.isKey);
    EXPECT_EQ(name.maxLength, 1024U);
    const auto& values = sensor.property("RateUnits")->values;
    ASSERT_FALSE(values.empty());
    EXPECT_EQ(values[3].value, "3");
    EXPECT_EQ(values[3].meaning, "Per Second");
}

TEST(Agreement, putsServedFeaturesFirstAndLosesNone) {
    for (const Class& each : schema::allClasses()) {
        SCOPED_TRACE(each.name);
        const Class* superclass = schema::find(each.superclass);
        ASSERT_EQ(superclass == nullptr, each.superclass.empty());
        EXPECT_EQ(each.servedPropertyCount > 0, each.isServed() && !each.isIndication);
        if (superclass != nullptr)
            for (const Property& inherited : superclass->properties) {
                const Property* own = each.property(inherited.name);
                ASSERT_NE(own, nullptr) << inherited.name;
                EXPECT_EQ(own->origin, inherited.origin) << inherited.name;
                EXPECT_GE(own->isKey, inherited.isKey) << inherited.name;
            }
    }
}

} // namespace
