// The filters of DSP0200, and what an answer holds.
#include "association_fixture.h"

namespace {

using broker::AssociationFilter;
using broker::ObjectPath;
using broker::Reply;
using testing::Each;
using testing::ElementsAre;
using testing::IsEmpty;
using testing::SizeIs;

class Filters : public Associations {
protected:
    std::vector<std::string> classes(const ObjectPath& source, const AssociationFilter& filter) {
        const Reply reply = broker.associatorNames(source, filter);
        EXPECT_TRUE(reply.ok()) << reply.message;
        return classesOf(reply.paths);
    }
    std::vector<std::string> referenced(const ObjectPath& source, const AssociationFilter& filter) {
        const Reply reply = broker.referenceNames(source, filter);
        EXPECT_TRUE(reply.ok()) << reply.message;
        return classesOf(reply.paths);
    }
};

TEST_F(Filters, leaveWhatTheyName) {
    const ObjectPath host = element("CIM_HostComputerSystem");
    const ObjectPath processor = element("CIM_SPComputerSystem");
    const ObjectPath port = element("CIM_EthernetPort", "eth0");
    const std::tuple<const ObjectPath&, AssociationFilter, std::vector<std::string>> cases[] = {
        {host, {.assocClass = "CIM_HostedService", .role = "Dependent"}, {}},
        {processor, {.assocClass = "CIM_SystemDevice"}, {"CIM_EthernetPort", "CIM_PortController"}},
        // Superclasses, of associations as of elements, and names without regard to case.
        {processor,
         {.assocClass = "cim_component"},
         {"CIM_HostComputerSystem", "CIM_EthernetPort", "CIM_PortController", "CIM_Account"}},
        {host, {.assocClass = "CIM_Component", .resultClass = "CIM_System"}, {"CIM_SPComputerSystem"}},
        {host, {.resultClass = "CIM_NumericSensor"}, {"CIM_NumericSensor"}},
        {host, {.resultClass = "CIM_Sensor"}, {"CIM_NumericSensor", "CIM_Sensor"}},
        {host,
         {.resultClass = "CIM_Service"},
         {"CIM_BootService", "CIM_TextRedirectionService", "CIM_RedirectionService",
          "CIM_USBRedirectionService", "CIM_PowerManagementService"}},
        {host,
         {.assocClass = "CIM_AssociatedSensor", .role = "DEPENDENT"},
         {"CIM_NumericSensor", "CIM_Sensor"}},
        {host, {.resultRole = "serviceprovided"}, {"CIM_PowerManagementService"}},
        {host, {.role = "PartComponent"}, {}},
        {port, {.role = "Antecedent"}, {"CIM_LANEndpoint"}},
        {port, {.role = "Dependent"}, {"CIM_PortController"}},
        {port, {.assocClass = "CIM_HostedService"}, {}},
        {port, {.assocClass = "CIM_NoSuchClass"}, {}},
        {port, {.resultClass = "CIM_NoSuchClass"}, {}},
    };
    for (const auto& [source, filter, expected] : cases)
        EXPECT_EQ(classes(source, filter), expected) << filter.assocClass << '|' << filter.resultClass << '|'
                                                     << filter.role << '|' << filter.resultRole;
}

TEST_F(Filters, ofReferencesNameTheAssociation) {
    const ObjectPath endpoint = element("CIM_LANEndpoint");
    EXPECT_THAT(referenced(endpoint, {.resultClass = "CIM_Dependency"}),
                ElementsAre("CIM_HostedAccessPoint", "CIM_DeviceSAPImplementation", "CIM_BindsTo"));
    EXPECT_THAT(referenced(endpoint, {.resultClass = "CIM_SAPSAPDependency"}), ElementsAre("CIM_BindsTo"));
    EXPECT_THAT(referenced(endpoint, {.role = "antecedent"}), ElementsAre("CIM_BindsTo"));
    EXPECT_THAT(referenced(endpoint, {.resultClass = "CIM_LANEndpoint"}), IsEmpty());
}

TEST_F(Filters, propertyListsHoldForWhatIsReturned) {
    const ObjectPath host = element("CIM_HostComputerSystem");
    // Two properties of which a row needs neither; keys come always.
    const Reply sensors = broker.associators(
        host, {.assocClass = "CIM_SystemDevice", .resultClass = "CIM_Sensor"}, {{"currentState"}});
    ASSERT_TRUE(sensors.ok()) << sensors.message;
    ASSERT_GT(sensors.instances.size(), 100U);
    for (const auto& sensor : sensors.instances) {
        EXPECT_EQ(sensor.properties.size(), 5U) << toText(sensor.path);
        EXPECT_NE(find(sensor.properties, "CurrentState"), nullptr);
    }
    // The row matches by AddressOrigin, which nobody asked for.
    const Reply parts = broker.associators(element("CIM_IPAssignmentSettingData", "Static"),
                                           {.assocClass = "CIM_OrderedComponent"}, {{"Nothing"}});
    ASSERT_THAT(parts.instances, SizeIs(1)) << parts.message;
    EXPECT_THAT(parts.instances[0].properties, SizeIs(1));
    const Reply references = broker.references(host, {.resultClass = "CIM_ServiceAvailableToElement"},
                                               broker::PropertyList(std::in_place));
    ASSERT_THAT(references.instances, SizeIs(1)) << references.message;
    EXPECT_THAT(references.instances[0].properties, SizeIs(2)) << "both keys";
}

TEST_F(Filters, anAssociatedInstanceIsTheClassesOwn) {
    const Reply reply = broker.associators(element("CIM_HostComputerSystem"),
                                           {.assocClass = "CIM_SystemDevice", .resultClass = "CIM_Sensor"});
    std::vector<broker::Instance> expected;
    for (const char* className : {"CIM_NumericSensor", "CIM_Sensor"})
        for (auto& instance : broker.enumerateInstances(path(className)).instances)
            expected.push_back(std::move(instance));
    EXPECT_EQ(reply.instances, expected);
}

// A sensor belongs to the host in two ways: as a device, and as what measures it.
TEST_F(Filters, anObjectIsReturnedOnce) {
    const auto paths = texts(broker.associatorNames(element("CIM_HostComputerSystem")).paths);
    EXPECT_EQ(std::set<std::string>(paths.begin(), paths.end()).size(), paths.size());
}

TEST_F(Filters, anObjectThatIsNotThereHasNoAssociations) {
    ObjectPath host = element("CIM_HostComputerSystem");
    ObjectPath elsewhere = host;
    elsewhere.nameSpace = "root/interop";
    set(host.keys, "Name", {CMPI_string, std::string("another")});
    ObjectPath sensor = element("CIM_NumericSensor");
    set(sensor.keys, "DeviceID", {CMPI_string, std::string("32.1.0.1.01.99:No Such")});
    for (const ObjectPath& source :
         {host, elsewhere, sensor, element("CIM_NumericSensor", "Riser2 Temp"), // which cannot be read
          path("CIM_HostComputerSystem"), path("CIM_NoSuchClass"), path("CIM_Error"), profile("DSP9999")}) {
        const Reply reply = broker.associatorNames(source);
        EXPECT_TRUE(reply.ok()) << reply.message;
        EXPECT_TRUE(reply.done);
        EXPECT_THAT(reply.paths, IsEmpty()) << toText(source);
        EXPECT_THAT(broker.references(source).instances, IsEmpty()) << toText(source);
    }
}

} // namespace
