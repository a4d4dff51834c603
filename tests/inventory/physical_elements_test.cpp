// Chassis, cards, chips and other packages: their class by the entity, their properties by the FRU.
#include "managed_bmc.h"
#include "provider_helper/inventory.h"

namespace {

using testing::ElementsAre;
using testing::ElementsAreArray;
using testing::IsEmpty;

class PhysicalElements : public ManagedBmc {
protected:
    // Another machine, as a sync finds it.
    void find(const std::string& model) const {
        createBmc(model);
        synchronise(stateFile);
    }
    // Properties of a class's instances, without the keys.
    std::vector<std::vector<std::string>> described(const ClassFunctions& functions) const {
        std::vector<std::vector<std::string>> all;
        for (const auto& instance : ClassRequests(broker, functions).enumerate().instances) {
            auto properties = propertiesOf(instance);
            std::erase_if(properties,
                          [](const std::string& each) { return each.starts_with("CreationClassName="); });
            all.push_back(properties);
        }
        return all;
    }
};

TEST_F(PhysicalElements, tellWhatTheirFruDoesAndNoMore) {
    find(R"({"frus": [
        {"id": 0, "name": "", "chassis": {"type": "0x97", "partNumber": "CN", "serialNumber": "CS"},
         "board": {"manufactured": "2024-03-01", "manufacturer": "BM", "product": "BP", "serialNumber": "BS"},
         "product": {"manufacturer": "PM", "product": "PP", "version": "PV", "assetTag": "PA"}},
        {"id": 1, "name": "PSU1", "entity": 10, "product": {"manufacturer": "SM"}, "powerSupply": {"hotSwap": true}},
        {"id": 2, "name": "PSU2", "entity": 10, "entityInstance": 2, "powerSupply": {}},
        {"id": 3, "name": "Riser", "entity": 22, "data": "00"}],
      "sdrRepository": {"genericDevices": [{"name": "CPU", "entity": 3, "entityInstance": 2}],
                        "controllers": [{"name": "BMC", "entity": 6}, {"name": "?", "entity": 200}]}})");
    EXPECT_THAT(described(PH_CLASS_FUNCTIONS(Chassis)),
                ElementsAre(ElementsAre("Tag=23.1.0", "ElementName=System Chassis 1",
                                        "Description=System Chassis 1", "Manufacturer=PM", "Model=PP",
                                        "SerialNumber=CS", "PartNumber=CN", "Version=PV", "UserTracking=PA",
                                        "CanBeFRUed=TRUE", "PackageType=3", "ChassisPackageType=1",
                                        "ChassisTypeDescription=Rack Mount Chassis", "RackMountable=1")));
    EXPECT_THAT(
        described(PH_CLASS_FUNCTIONS(Card)),
        ElementsAre(ElementsAre("Tag=7.1.0", "ElementName=System Board 1", "Description=System Board 1",
                                "Manufacturer=BM", "Model=BP", "SerialNumber=BS",
                                "ManufactureDate=20240301000000.000000+000", "CanBeFRUed=TRUE",
                                "PackageType=1", "OtherPackageType=System Board", "HostingBoard=TRUE"),
                    ElementsAre("Tag=22.1.3:Riser", "ElementName=Riser",
                                "Description=Chassis Back Panel Board 1", "CanBeFRUed=TRUE", "PackageType=1",
                                "OtherPackageType=Chassis back panel board", "HostingBoard=FALSE")));
    EXPECT_THAT(described(PH_CLASS_FUNCTIONS(Chip)),
                ElementsAre(ElementsAre("Tag=3.2:CPU", "ElementName=CPU", "Description=Processor 2")));
    EXPECT_THAT(
        described(PH_CLASS_FUNCTIONS(PhysicalPackage)),
        ElementsAre(ElementsAre("Tag=10.1.1:PSU1", "ElementName=PSU1", "Description=Power Supply 1",
                                "Manufacturer=SM", "CanBeFRUed=TRUE", "PackageType=6", "RemovalConditions=4"),
                    ElementsAre("Tag=10.2.2:PSU2", "ElementName=PSU2", "Description=Power Supply 2",
                                "CanBeFRUed=TRUE", "PackageType=6", "RemovalConditions=3"),
                    ElementsAre("Tag=6.1:BMC", "ElementName=BMC", "Description=System Management Module 1",
                                "PackageType=1", "OtherPackageType=System Management Module")));
    const auto capabilities =
        ClassRequests(broker, PH_CLASS_FUNCTIONS(PhysicalAssetCapabilities)).enumerate();
    std::vector<std::string> supported;
    for (const auto& each : capabilities.instances)
        supported.push_back(textOf(each, "InstanceID") + " " + textOf(each, "FRUInfoSupported"));
    EXPECT_THAT(
        supported,
        ElementsAre("PhysicalAssetCapabilities:7.1.0 TRUE", "PhysicalAssetCapabilities:10.1.1:PSU1 TRUE",
                    "PhysicalAssetCapabilities:10.2.2:PSU2 FALSE",
                    "PhysicalAssetCapabilities:22.1.3:Riser FALSE", "PhysicalAssetCapabilities:6.1:BMC FALSE",
                    "PhysicalAssetCapabilities:3.2:CPU FALSE", "PhysicalAssetCapabilities:23.1.0 TRUE"));
    // A tag of another class's is none of this one's.
    const ClassRequests chips(broker, PH_CLASS_FUNCTIONS(Chip));
    EXPECT_FALSE(
        chips.get(chips.path({{"Tag", text("7.1.0")}, {"CreationClassName", text("CIM_Chip")}})).ok());
}

TEST_F(PhysicalElements, haveTheirChassisTypeInCim) {
    const std::tuple<int, const char*, const char*, const char*, const char*> cases[] = {
        {0x00, "0", "<none>", "<none>", "<none>"},        {0x02, "0", "<none>", "<none>", "<none>"},
        {0x01, "1", "<none>", "<none>", "<none>"},        {0x11, "17", "<none>", "<none>", "<none>"},
        {0x17, "1", "Rack Mount Chassis", "1", "<none>"}, {0x19, "1", "Multi-system Chassis", "<none>", "1"},
        {0x1C, "1", "Blade", "<none>", "<none>"},         {0x1D, "28", "<none>", "<none>", "1"},
        {0x20, "32", "<none>", "<none>", "<none>"},       {0x30, "0", "<none>", "<none>", "<none>"},
    };
    for (const auto& [type, packageType, description, isRackMountable, holdsSystems] : cases) {
        SCOPED_TRACE(type);
        find(R"({"frus": [{"id": 0, "name": "Box", "entity": 23, "chassis": {"type": )" +
             std::to_string(type) + "}}]}");
        const auto chassis = only(ClassRequests(broker, PH_CLASS_FUNCTIONS(Chassis)));
        EXPECT_EQ(textOf(chassis, "ChassisPackageType"), packageType);
        EXPECT_EQ(textOf(chassis, "ChassisTypeDescription"), description);
        EXPECT_EQ(textOf(chassis, "RackMountable"), isRackMountable);
        EXPECT_EQ(textOf(chassis, "MultipleSystemSupport"), holdsSystems);
    }
}

TEST_F(PhysicalElements, mayBeNone) {
    find("{}");
    for (const ClassFunctions& functions : {PH_CLASS_FUNCTIONS(Chassis), PH_CLASS_FUNCTIONS(PhysicalPackage),
                                            PH_CLASS_FUNCTIONS(PhysicalAssetCapabilities)}) {
        const auto reply = ClassRequests(broker, functions).enumerate();
        EXPECT_TRUE(reply.ok()) << reply.message;
        EXPECT_THAT(reply.instances, IsEmpty());
    }
}

} // namespace
