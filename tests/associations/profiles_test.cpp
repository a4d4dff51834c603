// From nothing but the interop namespace to everything that the server has.
#include "association_fixture.h"
#include "associations/profiles.h"

namespace {

using broker::ObjectPath;
using broker::Reply;
using testing::Contains;
using testing::ElementsAre;
using testing::Not;
using testing::SizeIs;

using Profiles = Associations;

TEST_F(Profiles, leadAClientToASensor) {
    ObjectPath baseServer;
    for (const auto& each :
         broker.enumerateInstances(path("CIM_RegisteredProfile", {}, "root/interop")).instances)
        if (toText(*find(each.properties, "RegisteredName")) == "Base Server")
            baseServer = each.path;
    const Reply hosts = broker.associatorNames(baseServer, {.assocClass = "CIM_ElementConformsToProfile",
                                                            .resultClass = "CIM_ComputerSystem",
                                                            .role = "ConformantStandard"});
    ASSERT_THAT(hosts.paths, SizeIs(1)) << hosts.message;
    EXPECT_EQ(hosts.paths[0].nameSpace, "root/cimv2");
    const Reply sensors = broker.associators(
        hosts.paths[0], {.assocClass = "CIM_SystemDevice", .resultClass = "CIM_NumericSensor"});
    ASSERT_FALSE(sensors.instances.empty()) << sensors.message;
    EXPECT_NE(find(sensors.instances[0].properties, "CurrentReading"), nullptr);
    // And back.
    const Reply back =
        broker.associatorNames(sensors.instances[0].path, {.assocClass = "CIM_ElementConformsToProfile"});
    EXPECT_THAT(back.paths, ElementsAre(profile("DSP1009")));
}

// The referencing profile is the Dependent.
TEST_F(Profiles, areReferencedInDmtfsDirection) {
    const auto referencedBy = [&](const char* number) {
        return broker
            .associatorNames(profile(number), {.assocClass = "CIM_ReferencedProfile", .role = "Dependent"})
            .paths;
    };
    EXPECT_THAT(referencedBy("DSP1004"), Contains(profile("DSP1009")));
    EXPECT_THAT(referencedBy("DSP1009"), ElementsAre(profile("DSP1033")));
    for (const auto& each : associations::profiles())
        for (const char* referenced : each.referenced)
            EXPECT_THAT(associations::profiles(), Contains(testing::Field(&associations::Profile::instanceId,
                                                                          testing::StrEq(referenced))))
                << each.name << " refers to a profile that is not registered";
}

TEST_F(Profiles, haveCentralInstances) {
    for (const auto& each : associations::profiles()) {
        const ObjectPath source =
            path("CIM_RegisteredProfile", {{"InstanceID", text(each.instanceId)}}, "root/interop");
        EXPECT_FALSE(broker
                         .associatorNames(source, {.assocClass = "CIM_ElementConformsToProfile",
                                                   .role = "ConformantStandard"})
                         .paths.empty())
            << each.name;
    }
}

TEST_F(Profiles, areInTheInteropNamespaceOnly) {
    const Reply all =
        broker.enumerateInstances(path("CIM_RegisteredProfile", {}, "root/interop"), {{"RegisteredVersion"}});
    EXPECT_THAT(all.instances, SizeIs(associations::profiles().size()));
    for (const auto& instance : all.instances)
        EXPECT_THAT(instance.properties, SizeIs(2));
    EXPECT_THAT(broker.getInstance(profile("DSP1004")).instances, SizeIs(1));
    EXPECT_EQ(broker.getInstance(profile("DSP9999")).code, CMPI_RC_ERR_NOT_FOUND);
    for (const auto& elsewhere : {path("CIM_RegisteredProfile"), path("CIM_ReferencedProfile"),
                                  path("CIM_SystemDevice", {}, "root/interop")})
        EXPECT_EQ(broker.enumerateInstances(elsewhere).code, CMPI_RC_ERR_INVALID_CLASS) << toText(elsewhere);
    // The conformance of an element is in its own namespace and in that of the profile.
    for (const char* nameSpace : {"root/cimv2", "root/interop"})
        EXPECT_FALSE(
            broker.enumerateInstanceNames(path("CIM_ElementConformsToProfile", {}, nameSpace)).paths.empty());
}

} // namespace
