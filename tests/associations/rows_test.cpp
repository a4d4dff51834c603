// What every row promises: both ends exist, and each finds the other.
#include "association_fixture.h"
#include "associations/association.h"
#include "bmc_session.h"
#include "declared_type.h"
#include "sampling.h"

#include <algorithm>
#include <map>

namespace {

using associations::AssociationClass;
using associations::Placement;
using broker::ObjectPath;
using broker::Reply;
using testing::AnyOf;
using testing::Contains;
using testing::ElementsAre;
using testing::IsEmpty;
using testing::SizeIs;
using testing::UnorderedElementsAreArray;

const ObjectPath& end(const ObjectPath& association, const char* role) {
    return **find(association.keys, role)->as<broker::Value::Reference>();
}

class Rows : public Associations, public testing::WithParamInterface<const AssociationClass*> {
protected:
    // Something for every association to show: jobs of every kind, and a log entry.
    void SetUp() override {
        Associations::SetUp();
        if (!broker.enumerateInstanceNames(path("CIM_ConcreteJob")).paths.empty())
            return;
        const broker::NamedValues state{{"RequestedState", number(2)}};
        for (const auto& target :
             {element("CIM_HostComputerSystem"), element("CIM_ProtocolService", "SSH"),
              element("CIM_EthernetPort"), element("CIM_DHCPProtocolEndpoint", "eth0-4")})
            broker.invokeMethod(target, "RequestStateChange", state);
        broker.invokeMethod(
            element("CIM_PowerManagementService", "Host"), "RequestPowerStateChange",
            {{"PowerState", number(2)}, {"ManagedElement", reference(element("CIM_HostComputerSystem"))}});
        broker.invokeMethod(element("CIM_IPConfigurationService"), "ApplySettingToIPProtocolEndpoint",
                            {{"Configuration", reference(element("CIM_IPAssignmentSettingData", "DHCP"))},
                             {"Endpoint", reference(element("CIM_IPProtocolEndpoint", "eth0-4"))}});
        // Add SEL Entry (IPMI 2.0, 31.6): an OEM record.
        const std::uint8_t record[16] = {0, 0, 0xC0};
        std::uint8_t answer[16];
        ipmi::openTransport(virtualBmc(stateFile()))->exchange(0x0A, 0x44, record, answer);
    }
    std::string nameSpace() const {
        return GetParam()->placement == Placement::Interop ? "root/interop" : "root/cimv2";
    }

    const std::vector<std::string>& partnersOf(const ObjectPath& source, int role) {
        auto [known, isNew] = partners_.try_emplace(toText(source) + GetParam()->ends[role].role);
        if (isNew)
            known->second =
                texts(broker
                          .associatorNames(source, {.assocClass = GetParam()->name,
                                                    .role = GetParam()->ends[role].role,
                                                    .resultRole = GetParam()->ends[1 - role].role})
                          .paths);
        return known->second;
    }

private:
    std::map<std::string, std::vector<std::string>> partners_;
};

std::string nameOf(const testing::TestParamInfo<const AssociationClass*>& info) {
    return info.param->name;
}
TEST_P(Rows, areTheSameUnderAStrictBroker) {
    const ObjectPath all = path(GetParam()->name, {}, nameSpace());
    const Reply before = broker.enumerateInstances(all);
    broker.beStrict(declaredType);
    const Reply strictly = broker.enumerateInstances(all);
    EXPECT_TRUE(strictly.ok()) << strictly.message;
    EXPECT_EQ(strictly.instances, before.instances);
    if (before.instances.empty())
        return;
    const broker::Instance& first = before.instances.front();
    EXPECT_EQ(broker.getInstance(first.path).instances, std::vector{first});
}

INSTANTIATE_TEST_SUITE_P(Every, Rows,
                         testing::ValuesIn(associations::allAssociations().begin(),
                                           associations::allAssociations().end()),
                         nameOf);

TEST_P(Rows, endsExistAndFindEachOther) {
    const Reply all = broker.enumerateInstances(path(GetParam()->name, {}, nameSpace()));
    ASSERT_TRUE(all.ok()) << all.message;
    ASSERT_FALSE(all.instances.empty());
    const Reply names = broker.enumerateInstanceNames(path(GetParam()->name, {}, nameSpace()));
    std::vector<ObjectPath> paths;
    for (const auto& instance : all.instances)
        paths.push_back(instance.path);
    EXPECT_EQ(names.paths, paths);
    // Of hundreds of sensors a few dozen tell as much.
    for (std::size_t i = 0; i < all.instances.size(); i += 1 + all.instances.size() * sampling() / 24) {
        const broker::Instance& instance = all.instances[i];
        EXPECT_THAT(broker.getInstance(instance.path).instances, ElementsAre(instance));
        for (int role = 0; role < 2; ++role) {
            const ObjectPath& source = end(instance.path, GetParam()->ends[role].role);
            EXPECT_THAT(broker.getInstance(source, {{"Nothing"}}).instances, SizeIs(1)) << toText(source);
            EXPECT_THAT(partnersOf(source, role),
                        Contains(toText(end(instance.path, GetParam()->ends[1 - role].role))));
        }
    }
}

TEST_P(Rows, referencesAreTheAssociationsThemselves) {
    const Reply all = broker.enumerateInstances(path(GetParam()->name, {}, nameSpace()));
    ASSERT_FALSE(all.instances.empty());
    for (int role = 0; role < 2; ++role) {
        const char* name = GetParam()->ends[role].role;
        const ObjectPath source = end(all.instances[0].path, name);
        // Where both ends may be the same class, the role tells which one the source is.
        std::vector<broker::Instance> expected;
        for (const auto& instance : all.instances)
            if (toText(end(instance.path, name)) == toText(source))
                expected.push_back(instance);
        Reply found = broker.references(source, {.resultClass = GetParam()->name, .role = name});
        ASSERT_TRUE(found.ok()) << found.message;
        EXPECT_TRUE(found.done);
        std::erase_if(found.instances, [](const auto& each) { // of a class that derives from it
            return each.path.className != GetParam()->name;
        });
        for (auto& instance : found.instances)
            instance.path.nameSpace = nameSpace(); // that of the request
        EXPECT_THAT(found.instances, UnorderedElementsAreArray(expected));
        std::vector<ObjectPath> paths;
        for (const auto& instance : expected)
            paths.push_back(instance.path);
        for (auto& each :
             broker.referenceNames(source, {.resultClass = GetParam()->name, .role = name}).paths) {
            each.nameSpace = nameSpace();
            EXPECT_EQ(each.className == GetParam()->name,
                      std::find(paths.begin(), paths.end(), each) != paths.end())
                << toText(each);
        }
    }
}

TEST_P(Rows, nobodyChangesThem) {
    const ObjectPath one = broker.enumerateInstanceNames(path(GetParam()->name, {}, nameSpace())).paths.at(0);
    for (const Reply& reply : {broker.modifyInstance(one, {}), broker.createInstance(one, {}),
                               broker.deleteInstance(one), broker.invokeMethod(one, "Reset")}) {
        EXPECT_EQ(reply.code, CMPI_RC_ERR_NOT_SUPPORTED);
        EXPECT_THAT(reply.message, testing::EndsWith("not supported"));
    }
}

using AssociationInstances = Associations;

TEST_F(AssociationInstances, ofElementsThatDoNotBelongTogetherAreNotFound) {
    ObjectPath device = broker.enumerateInstanceNames(path("CIM_SystemDevice")).paths.at(0);
    ObjectPath processor = element("CIM_SPComputerSystem");
    set(device.keys, "GroupComponent", reference(processor)); // a sensor is the host's
    EXPECT_EQ(broker.getInstance(device).code, CMPI_RC_ERR_NOT_FOUND);

    set(device.keys, "GroupComponent", {CMPI_string, toText(processor)});
    EXPECT_EQ(broker.getInstance(device).code, CMPI_RC_ERR_INVALID_PARAMETER);
    EXPECT_EQ(broker.getInstance(path("CIM_SystemDevice")).code, CMPI_RC_ERR_INVALID_PARAMETER);
}

TEST_F(AssociationInstances, keysComeWithoutANamespaceToo) {
    ObjectPath host = element("CIM_HostComputerSystem");
    ObjectPath sensor = element("CIM_NumericSensor");
    host.nameSpace.clear();
    sensor.nameSpace.clear();
    const Reply reply = broker.getInstance(path(
        "cim_systemdevice", {{"partcomponent", reference(sensor)}, {"GROUPCOMPONENT", reference(host)}}));
    ASSERT_THAT(reply.instances, SizeIs(1)) << reply.message;
    EXPECT_THAT(toText(reply.instances[0].path),
                testing::StartsWith("root/cimv2:CIM_SystemDevice.GroupComponent=\"root/cimv2:CIM_Host"));
}

// In the interop namespace the service has elements of its own and those of the other namespace around it.
TEST_F(AssociationInstances, leadFromOneNamespaceToTheOther) {
    ObjectPath service = element("CIM_IndicationService");
    service.nameSpace = "root/interop";
    const auto around = texts(broker.associatorNames(service).paths);
    EXPECT_THAT(around, Contains(testing::StartsWith("root/cimv2:CIM_SPComputerSystem.")));
    EXPECT_THAT(around, Contains(testing::StartsWith("root/interop:CIM_IndicationServiceSettingData.")));
    for (const auto& hosted : broker.references(service, {.resultClass = "CIM_HostedService"}).instances) {
        EXPECT_EQ(hosted.path.nameSpace, "root/interop");
        EXPECT_THAT(broker.getInstance(hosted.path).instances, ElementsAre(hosted));
    }
    ObjectPath host = element("CIM_HostComputerSystem");
    host.nameSpace = "root/interop";
    EXPECT_THAT(broker.associatorNames(host).paths, IsEmpty()) << "it is not there";
}

// From the service down to the plug, over what it is carried by.
TEST_F(AssociationInstances, leadFromAServiceToItsPort) {
    const std::pair<const char*, const char*> steps[] = {{"CIM_ProvidesEndpoint", "CIM_SSHProtocolEndpoint"},
                                                         {"CIM_BindsTo", "CIM_TCPProtocolEndpoint"},
                                                         {"CIM_BindsTo", "CIM_IPProtocolEndpoint"},
                                                         {"CIM_BindsTo", "CIM_LANEndpoint"},
                                                         {"CIM_DeviceSAPImplementation", "CIM_EthernetPort"}};
    ObjectPath place = element("CIM_ProtocolService", "SSH");
    for (const auto& [association, next] : steps) {
        const Reply reply = broker.associatorNames(place, {.assocClass = association, .resultClass = next});
        ASSERT_FALSE(reply.paths.empty()) << next << ": " << reply.message;
        place = reply.paths.front();
    }
    EXPECT_EQ(place, element("CIM_EthernetPort"));

    const auto portsOf = [&](const char* service) {
        return texts(broker
                         .associatorNames(element("CIM_ProtocolService", service),
                                          {.assocClass = "CIM_ServiceAccessBySAP",
                                           .resultClass = "CIM_TCPProtocolEndpoint"})
                         .paths);
    };
    EXPECT_THAT(portsOf("HTTPP"), ElementsAre(testing::EndsWith("-web-clear\"")));
    EXPECT_THAT(portsOf("HTTPSP"), ElementsAre(testing::EndsWith("-web-encrypted\"")));
    EXPECT_THAT(portsOf("WEBP"), SizeIs(2));
    EXPECT_THAT(portsOf("CDMEDIA"), SizeIs(2));
    EXPECT_THAT(portsOf("CLP"), IsEmpty());
}

// An access point of redirection has the service that switches it, its own ports, and none of another.
TEST_F(AssociationInstances, leadFromAnAccessPointToItsServicesAndPorts) {
    const auto partners = [&](const char* point, const char* name, const char* association) {
        return texts(broker.associatorNames(element(point, name), {.assocClass = association}).paths);
    };
    using testing::EndsWith;
    EXPECT_THAT(partners("CIM_MediaRedirectionSAP", "FDMEDIA", "CIM_ServiceAccessBySAP"),
                testing::UnorderedElementsAre(EndsWith("\"FDMEDIAProtocolService\""),
                                              EndsWith("\"MediaRedirectionService\"")));
    EXPECT_THAT(partners("CIM_USBRedirectionSAP", "HDMEDIA", "CIM_BindsTo"),
                ElementsAre(EndsWith("-hd-media-clear\""), EndsWith("-hd-media-encrypted\"")));
    EXPECT_THAT(partners("CIM_KVMRedirectionSAP", "", "CIM_BindsTo"),
                ElementsAre(EndsWith("-kvm-clear\""), EndsWith("-kvm-encrypted\"")));
    EXPECT_THAT(partners("CIM_TextRedirectionSAP", "", "CIM_ServiceAccessBySAP"),
                ElementsAre(EndsWith("*Channel-1\""), EndsWith("*Channel-8\"")));
}

TEST_F(AssociationInstances, ownPropertiesSayWhatIsSo) {
    const auto values = [&](const char* className, const ObjectPath& source, const char* property) {
        return textsOf(broker.references(source, {.resultClass = className}, {{property}}).instances,
                       property);
    };
    // The model's first endpoint has its address by DHCP (4), and that setting comes first; the client's last.
    const ObjectPath endpoint = element("CIM_IPProtocolEndpoint", "eth0-4");
    for (const char* use : {"IsCurrent", "IsNext"})
        EXPECT_THAT(values("CIM_ElementSettingData", endpoint, use), ElementsAre("1", "2", "1"));
    EXPECT_THAT(values("CIM_ElementSettingData", endpoint, "IsDefault"), ElementsAre("0", "0", "0"));
    EXPECT_THAT(values("CIM_ElementSettingData", element("CIM_DHCPSettingData", "eth1-4"), "IsCurrent"),
                ElementsAre("2", "2"));
    EXPECT_THAT(values("CIM_RemoteAccessAvailableToElement", element("CIM_DNSProtocolEndpoint", "eth0-4"),
                       "IsDefault"),
                ElementsAre("TRUE", "FALSE"));
    // Boot flags: none hold, and then those of a boot from the network, once.
    const ObjectPath once = element("CIM_BootConfigSetting", "Once");
    const auto bootUses = [&] {
        const auto references =
            broker.references(element("CIM_HostComputerSystem"), {.resultClass = "CIM_ElementSettingData"})
                .instances;
        return testing::PrintToString(textsOf(references, "IsDefault")) +
               testing::PrintToString(textsOf(references, "IsNext")) +
               testing::PrintToString(values("CIM_OrderedComponent", once, "AssignedSequence"));
    };
    EXPECT_EQ(bootUses(),
              R"({ "1", "2" }{ "1", "2" }{ "0", "0", "0", "0", "0", "0", "0", "0", "0", "0", "0" })");
    broker.invokeMethod(
        once, "ChangeBootOrder",
        {{"Source", arrayOf(CMPI_ref, {reference(element("CIM_BootSourceSetting", "Network"))})}});
    EXPECT_EQ(bootUses(),
              R"({ "1", "2" }{ "2", "3" }{ "1", "0", "0", "0", "0", "0", "0", "0", "0", "0", "0" })");
    broker.invokeMethod(once, "ChangeBootOrder", {{"Source", arrayOf(CMPI_ref, {})}});
    constexpr const char* powered = "CIM_AssociatedPowerManagementService";
    EXPECT_THAT(values(powered, element("CIM_SPComputerSystem"), "PowerState"), ElementsAre("2"));
    const ObjectPath host = element("CIM_HostComputerSystem");
    const auto bmc = ipmi::openTransport(virtualBmc(stateFile()));
    for (const auto& [control, state] : {std::pair<std::uint8_t, const char*>{0, "8"}, {1, "2"}}) {
        std::uint8_t answer[16];
        bmc->exchange(0x00, 0x02, {&control, 1}, answer); // Chassis Control
        EXPECT_THAT(values(powered, host, "PowerState"), ElementsAre(state));
    }
    vbmc::VirtualBmc(stateFile()).addFault({.netFn = 0x00, .command = 0x01, .value = 0xC1, .calls = 1});
    EXPECT_THAT(values(powered, host, "PowerState"), ElementsAre("<none>")) << "the BMC does not tell";
    EXPECT_THAT(values("CIM_InstalledOS", host, "PrimaryOS"), ElementsAre("TRUE"));
    EXPECT_THAT(values("CIM_ServiceAffectsElement", element("CIM_Account"), "ElementEffects"),
                ElementsAre("{5}"));
    const ObjectPath view = element("CIM_PhysicalComputerSystemView");
    broker.invokeMethod(view, "SetOneTimeBootSource", {{"StructuredBootString", text("CIM:Network:1")}});
    const auto jobs = broker.associatorNames(view, {.assocClass = "CIM_OwningJobElement"}).paths;
    ASSERT_THAT(jobs, SizeIs(1));
    EXPECT_THAT(values("CIM_AffectedJobElement", jobs[0], "ElementEffects"), ElementsAre("{4}", "{4}"));
}

} // namespace
