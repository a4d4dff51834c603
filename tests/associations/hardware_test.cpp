// The sample server's processors, memory modules, slots and cards are all reached: from the chassis down, and from the system.
#include "association_fixture.h"

#include <algorithm>
#include <map>

namespace {

using broker::ObjectPath;
using testing::Contains;
using testing::ElementsAre;
using testing::IsEmpty;
using testing::Pair;
using testing::SizeIs;

class Hardware : public Associations {
protected:
    std::map<std::string, std::size_t> partsOf(const ObjectPath& whole, const char* association) {
        std::map<std::string, std::size_t> counts;
        for (const auto& part :
             broker.associatorNames(whole, {.assocClass = association, .role = "GroupComponent"}).paths)
            ++counts[part.className];
        return counts;
    }
    std::vector<std::string> partners(const ObjectPath& source, const char* association,
                                      const char* resultClass, const char* key) {
        std::vector<std::string> found;
        for (const auto& each :
             broker.associatorNames(source, {.assocClass = association, .resultClass = resultClass}).paths)
            found.push_back(toText(*find(each.keys, key)));
        return found;
    }
    std::size_t contentOf(const ObjectPath& slot) {
        return broker.associatorNames(slot, {.assocClass = "CIM_ElementInConnector", .role = "Antecedent"})
            .paths.size();
    }
};

TEST_F(Hardware, isReachedFromTheChassisAndFromTheSystem) {
    const auto inChassis = partsOf(element("CIM_Chassis"), "CIM_Container");
    EXPECT_THAT(inChassis, Contains(Pair("CIM_Chip", 2)));
    EXPECT_THAT(inChassis, Contains(Pair("CIM_PhysicalMemory", 16)));
    EXPECT_THAT(inChassis, Contains(Pair("CIM_Slot", 2 + 24 + 5)));
    EXPECT_THAT(inChassis, Contains(Pair("CIM_PhysicalConnector", 7)));
    EXPECT_THAT(inChassis, Contains(Pair("CIM_Card", 2 + 2))) << "board and riser; cards in slots";
    const auto ofSystem = partsOf(element("CIM_HostComputerSystem"), "CIM_SystemDevice");
    EXPECT_THAT(ofSystem, Contains(Pair("CIM_Processor", 2)));
    EXPECT_THAT(ofSystem, Contains(Pair("CIM_Memory", 1)));
    EXPECT_THAT(ofSystem, Contains(Pair("CIM_PCIDevice", 4 + 2)));
}

TEST_F(Hardware, isInItsSockets) {
    std::size_t used = 0;
    for (const auto& slot : broker.enumerateInstances(path("CIM_Slot")).instances) {
        const bool isEmpty = toText(*find(slot.properties, "Description")).ends_with("empty");
        EXPECT_EQ(contentOf(slot.path), isEmpty ? 0U : 1U) << toText(slot.path);
        used += isEmpty ? 0 : 1;
    }
    EXPECT_EQ(used, 2U + 16 + 2);
    EXPECT_THAT(partners(element("CIM_Slot", "PCIe Slot 2"), "CIM_ElementInConnector", "CIM_Card", "Tag"),
                ElementsAre("11.0:Slot 2:PCIe Slot 2"));
    EXPECT_THAT(partners(element("CIM_Card", "PCIe Slot 2"), "CIM_Realizes", "CIM_PCIDevice", "DeviceID"),
                ElementsAre("PCI 0000:31:00.0"));
    EXPECT_THAT(partners(element("CIM_Card", "7.1"), "CIM_Realizes", "CIM_PCIDevice", "DeviceID"), SizeIs(4));
}

TEST_F(Hardware, leadsToItsPartsAndSensors) {
    const ObjectPath second = element("CIM_Processor", "3.2");
    EXPECT_THAT(partners(second, "CIM_Realizes", "CIM_Chip", "Tag"), ElementsAre("3.2:CPU2"));
    const auto cores = partners(second, "CIM_ConcreteComponent", "CIM_ProcessorCore", "InstanceID");
    EXPECT_THAT(cores, SizeIs(24));
    EXPECT_TRUE(
        std::ranges::all_of(cores, [](const std::string& id) { return id.find(" 3.2.") != id.npos; }));
    EXPECT_THAT(partners(second, "CIM_AssociatedProcessorMemory", "CIM_Memory", "DeviceID"),
                ElementsAre("Memory"));
    const auto sensorsOf = [&](const ObjectPath& source) {
        std::vector<std::string> names;
        for (const auto& each : partners(source, "CIM_AssociatedSensor", "CIM_Sensor", "DeviceID"))
            names.push_back(each.substr(each.find(':') + 1));
        std::ranges::sort(names);
        names.erase(std::unique(names.begin(), names.end()), names.end());
        return names;
    };
    EXPECT_THAT(sensorsOf(second),
                ElementsAre("CPU2 Margin", "CPU2 Status", "CPU2 Temp", "CPU2 Throttle", "CPU2 VCORE"));
    EXPECT_THAT(sensorsOf(element("CIM_PhysicalMemory", "32.2:")), ElementsAre("DIMM B", "DIMM B1 Temp"));
    EXPECT_THAT(sensorsOf(element("CIM_Memory")), Contains("VDDQ CD"));
    EXPECT_THAT(sensorsOf(element("CIM_Memory")), testing::Not(Contains("P12V")));
}

} // namespace
