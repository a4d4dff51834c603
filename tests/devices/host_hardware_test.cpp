// Processors, memory and PCI devices as the host's firmware describes them, by their sensors.
#include "device_fixture.h"
#include "provider_helper/inventory.h"

namespace {

using testing::Contains;
using testing::ElementsAre;
using testing::ElementsAreArray;
using testing::IsEmpty;
using testing::SizeIs;

class HostHardware : public DeviceFixture {
protected:
    HostHardware() {
        createBmc(R"({
            "smbios": {
                "processors": [
                    {"socket": "CPU1", "version": "CPU 7", "family": 1, "externalClock": 100, "maxSpeed": 4000, "currentSpeed": 2400,
                     "cores": 3, "enabledCores": 3, "characteristics": 252, "upgrade": 38},
                    {"socket": "CPU2", "status": 3, "cores": 2, "enabledCores": 1},
                    {"socket": "CPU3", "installed": false}],
                "memory": {"errorCorrection": "single-bit", "modules": [
                    {"socket": "DIMM 1", "bank": "A", "size": 32768, "manufacturer": "Maker", "speed": 3200, "configuredSpeed": 2933},
                    {"socket": "DIMM 2", "size": 1024, "type": "ddr5", "totalWidth": 0, "dataWidth": 0},
                    {"socket": "DIMM 3"}]},
                "slots": [{"name": "PCIe 1", "type": "pci-express-4", "width": "x8", "usage": "in-use", "number": 1, "hotPlug": true,
                           "bus": 23, "device": 0, "function": 0},
                          {"name": "PCI 2", "type": "pci", "width": 5}],
                "ports": [{"externalName": "COM", "externalConnector": "db-9-male", "type": "serial"}],
                "onboardDevices": [{"name": "NIC", "type": "ethernet", "enabled": false, "bus": 1, "device": 2, "function": 3}]},
            "frus": [{"id": 0, "name": ""}],
            "sensors": [
                {"number": 1, "name": "CPU1 Status", "type": "Processor", "readingType": "sensor-specific", "record": "compact",
                 "entity": 3, "supportedStates": [0, 1, 7], "states": [7]},
                {"number": 2, "name": "CPU2 Status", "type": "Processor", "readingType": "sensor-specific", "record": "compact",
                 "entity": 3, "entityInstance": 2, "supportedStates": [0, 1, 7], "states": [7]},
                {"number": 3, "name": "DIMM 2", "type": "Memory", "readingType": "sensor-specific", "record": "compact",
                 "entity": 32, "entityInstance": 2, "supportedStates": [0, 1, 6], "states": [6]}]})");
        synchronise(stateFile);
        platformCalls.clear();
    }

    const ClassRequests processors{broker, PH_CLASS_FUNCTIONS(Processor)};
    const ClassRequests cores{broker, PH_CLASS_FUNCTIONS(ProcessorCore)};
    const ClassRequests memory{broker, PH_CLASS_FUNCTIONS(Memory)};
    const ClassRequests pciDevices{broker, PH_CLASS_FUNCTIONS(PCIDevice)};
    const ClassRequests modules{broker, PH_CLASS_FUNCTIONS(PhysicalMemory)};
    const ClassRequests slots{broker, PH_CLASS_FUNCTIONS(Slot)};
    const ClassRequests connectors{broker, PH_CLASS_FUNCTIONS(PhysicalConnector)};
};

TEST_F(HostHardware, hasItsProcessors) {
    EXPECT_THAT(propertiesOf(processors.enumerate().instances.at(0)),
                ElementsAre("SystemCreationClassName=CIM_HostComputerSystem", "SystemName=server",
                            "CreationClassName=CIM_Processor", "DeviceID=3.1", "ElementName=Processor 1",
                            "Availability=3", "EnabledState=2", "RequestedState=12", "HealthState=5",
                            "OperationalStatus={2}", "Description=CPU 7", "Role=Central Processor",
                            "Family=1", "OtherFamilyDescription=CPU 7", "UpgradeMethod=38",
                            "MaxClockSpeed=4000", "CurrentClockSpeed=2400", "ExternalBusClockSpeed=100",
                            "DataWidth=64", "CPUStatus=1", "Characteristics={2, 4, 5, 6, 7}",
                            "NumberOfEnabledCores=3"));
    EXPECT_THAT(rows(processors,
                     {"DeviceID", "Family", "MaxClockSpeed", "DataWidth", "CPUStatus", "Characteristics"}),
                Contains("3.2 2 <none> <none> 3 <none>"));
}

TEST_F(HostHardware, showsTheStateOfProcessors) {
    EXPECT_THAT(states(processors), ElementsAre("3.1 3 2 5 {2}", "3.2 8 3 5 {2}"))
        << "the second is disabled by the firmware";
    bmc().setStates("CPU1 Status", 0x82); // thermal trip
    EXPECT_EQ(states(processors)[0], "3.1 10 2 25 {6}");
    bmc().setStates("CPU2 Status", 0); // taken out since
    EXPECT_EQ(states(processors)[1], "3.2 11 3 10 {12}");
    bmc().setAvailability("CPU1 Status", vbmc::Availability::Unreadable);
    EXPECT_EQ(states(processors)[0], "3.1 3 2 0 {0}") << "the firmware enabled it";
}

TEST_F(HostHardware, hasItsCores) {
    EXPECT_THAT(rows(cores, {"InstanceID", "ElementName", "EnabledState", "CoreEnabledState"}),
                ElementsAre("SMBIOS:server 3.1.1 Core 1 of Processor 1 2 2",
                            "SMBIOS:server 3.1.2 Core 2 of Processor 1 2 2",
                            "SMBIOS:server 3.1.3 Core 3 of Processor 1 2 2",
                            "SMBIOS:server 3.2.1 Core 1 of Processor 2 0 0",
                            "SMBIOS:server 3.2.2 Core 2 of Processor 2 0 0"));
}

TEST_F(HostHardware, hasItsMemory) {
    EXPECT_THAT(rows(memory, {"DeviceID", "ElementName", "BlockSize", "NumberOfBlocks", "Volatile", "Access",
                              "ErrorMethodology"}),
                ElementsAre("Memory System Memory 1 35433480192 TRUE 3 Single-bit ECC"));
    EXPECT_THAT(states(memory), ElementsAre("Memory 3 2 5 {2}"));
    bmc().setStates("DIMM 2", 0x42); // uncorrectable error
    EXPECT_THAT(states(memory), ElementsAre("Memory 10 2 25 {6}"));
    bmc().setAvailability("DIMM 2", vbmc::Availability::Unreadable);
    EXPECT_THAT(states(memory), ElementsAre("Memory 2 5 0 {0}"));

    EXPECT_THAT(
        rows(modules,
             {"Tag", "Description", "Manufacturer", "FormFactor", "MemoryType", "TotalWidth", "DataWidth",
              "Capacity", "BankLabel", "ConfiguredMemoryClockSpeed", "IsSpeedInMhz", "MaxMemorySpeed"}),
        ElementsAre(
            "32.1:DIMM 1 Memory Device 1 Maker 8 26 72 64 34359738368 A 2933 TRUE 3200",
            "32.2:DIMM 2 Memory Device 2 <none> 8 1 <none> <none> 1073741824 <none> <none> <none> <none>"));
}

TEST_F(HostHardware, hasItsSlotsAndPorts) {
    EXPECT_THAT(
        rows(slots, {"Tag", "Description", "ConnectorLayout", "MaxLinkWidth", "MaxDataWidth",
                     "SupportsHotPlug", "Number"}),
        ElementsAre("Processor Socket 1:CPU1 processor socket with 3.1 1 <none> <none> FALSE <none>",
                    "Processor Socket 2:CPU2 processor socket with 3.2 1 <none> <none> FALSE <none>",
                    "Processor Socket 3:CPU3 processor socket, empty 1 <none> <none> FALSE <none>",
                    "Memory Socket 1:DIMM 1 memory socket with 32.1:DIMM 1 1 <none> <none> FALSE <none>",
                    "Memory Socket 2:DIMM 2 memory socket with 32.2:DIMM 2 1 <none> <none> FALSE <none>",
                    "Memory Socket 3:DIMM 3 memory socket, empty 1 <none> <none> FALSE <none>",
                    "Slot 1:PCIe 1 PCI Express Gen 4 x8 slot with 11.0:Slot 1:PCIe 1 22 5 <none> TRUE 1",
                    "Slot 2:PCI 2 PCI slot, empty 16 <none> 32 FALSE <none>"));
    EXPECT_THAT(rows(connectors, {"Tag", "ElementName", "Description", "ConnectorLayout", "ConnectorGender",
                                  "ConnectorDescription"}),
                ElementsAre("Port 1:COM COM Serial Port 16550A 6 2 DB-9 pin male"));
    EXPECT_THAT(rows(pciDevices, {"DeviceID", "ElementName", "Description", "EnabledState", "ClassCode",
                                  "BusNumber", "DeviceNumber", "FunctionNumber"}),
                ElementsAre("PCI 0000:17:00.0 PCIe 1 Device on 11.0:Slot 1:PCIe 1 5 <none> 23 0 0",
                            "PCI 0000:01:02.3 NIC Ethernet on 7.1.0 3 2 1 2 3"));
    EXPECT_THAT(rows(ClassRequests(broker, PH_CLASS_FUNCTIONS(Card)),
                     {"Tag", "ElementName", "Description", "HostingBoard"}),
                Contains("11.0:Slot 1:PCIe 1 PCIe 1 Add-in Card FALSE"));
}

TEST_F(HostHardware, isNoneWithoutATable) {
    serve("[]");
    for (const ClassRequests* each :
         {&processors, &cores, &memory, &pciDevices, &modules, &slots, &connectors}) {
        const auto reply = each->enumerate();
        EXPECT_TRUE(reply.ok()) << reply.message;
        EXPECT_THAT(reply.instances, IsEmpty());
    }
}

} // namespace
