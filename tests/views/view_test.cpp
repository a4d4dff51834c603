// CIM_PhysicalComputerSystemView: it tells what the classes tell that it is a view of, and its methods are theirs.
#include "managed_bmc.h"
#include "provider_helper/computer_system.h"
#include "provider_helper/devices.h"
#include "provider_helper/firmware.h"
#include "provider_helper/inventory.h"
#include "provider_helper/record_log.h"
#include "provider_helper/sensors.h"
#include "provider_helper/software.h"
#include "provider_helper/views.h"

namespace {

using testing::ElementsAre;

constexpr const char* model = R"({
    "device": {"firmwareMajor": 3, "firmwareMinor": 4},
    "frus": [{"id": 0, "name": "Chassis", "entity": 23, "product": {"manufacturer": "Maker", "product": "Model 7",
                                                                    "serialNumber": "SN1", "partNumber": "P1"}},
             {"id": 1, "name": "Board", "board": {"serialNumber": "SN2"}}],
    "smbios": {"processors": [{"socket": "CPU1", "family": 179, "maxSpeed": 4000, "currentSpeed": 2400, "cores": 3, "enabledCores": 3, "threads": 6},
                              {"socket": "CPU2", "family": 179, "cores": 2, "enabledCores": 2, "threads": 4}, {"socket": "CPU3", "installed": false}],
               "memory": {"modules": [{"socket": "DIMM 1", "size": 1024}, {"socket": "DIMM 2", "size": 512}]}},
    "systemInfo": {"firmwareVersion": "1.2.3", "osName": "Linux", "osVersion": "6.1"},
    "sensors": [
        {"number": 1, "name": "Inlet", "analog": {"unit": "degrees C", "format": "twos-complement"}, "reading": -1,
         "thresholds": {"upperNonCritical": 40, "upperCritical": 45}},
        {"number": 2, "name": "Gone", "analog": {"unit": "degrees C"}, "availability": "unreadable"},
        {"number": 3, "name": "Rotor", "type": "Fan", "analog": {"unit": "RPM", "m": 100}, "reading": 5000}]})";

class View : public ManagedBmc {
protected:
    View() : ManagedBmc(model) {}

    broker::Reply invoke(const char* method, const broker::NamedValues& in) {
        return view.invoke(only(view).path, method, in);
    }
    // The texts of a property of another class's instances, as the elements of an array.
    static std::string column(const ClassRequests& requests, const char* property) {
        std::string text;
        for (const broker::Instance& instance : requests.enumerate().instances) {
            const broker::Value* value = broker::find(instance.properties, property);
            const std::string quote = value->type == CMPI_string ? "\"" : "";
            text += (text.empty() ? "" : ", ") + quote + broker::toText(*value) + quote;
        }
        return '{' + text + '}';
    }
    std::string told(const char* property) { return textOf(only(view), property); }

    const ClassRequests view{broker, PH_CLASS_FUNCTIONS(PhysicalComputerSystemView)};
    const ClassRequests sensors{broker, PH_CLASS_FUNCTIONS(NumericSensor)};
    const ClassRequests log{broker, PH_CLASS_FUNCTIONS(RecordLog)};
};

TEST_F(View, TellsWhatTheClassesTell) {
    const ClassRequests chassis{broker, PH_CLASS_FUNCTIONS(Chassis)};
    const ClassRequests hosts{broker, PH_CLASS_FUNCTIONS(HostComputerSystem)};
    const ClassRequests systems{broker, PH_CLASS_FUNCTIONS(OperatingSystem)};
    const auto instance = only(view);
    const auto expectSame = [&](const broker::Instance& other, const char* name,
                                const char* otherName = nullptr) {
        EXPECT_EQ(textOf(instance, name), textOf(other, otherName != nullptr ? otherName : name)) << name;
    };
    for (const char* name : {"ElementName", "OtherIdentifyingInfo", "Dedicated", "OperationalStatus"})
        expectSame(only(hosts), name);
    for (const char* name : {"Tag", "Manufacturer", "Model", "SerialNumber", "PartNumber"})
        expectSame(only(chassis), name);
    EXPECT_EQ(textOf(instance, "SerialNumber"), "SN1");
    EXPECT_EQ(textOf(instance, "Version"), "<none>");
    for (const char* name : {"ElementName", "CurrentState", "EnabledState", "HealthState", "BaseUnits",
                             "UnitModifier", "RateUnits", "CurrentReading", "SensorType"})
        EXPECT_EQ(textOf(instance, std::string("NumericSensor") + name), column(sensors, name)) << name;
    EXPECT_EQ(textOf(instance, "NumericSensorCurrentReading"), "{-100, 500000}") << "the second is not read";
    EXPECT_EQ(textOf(instance, "LogInstanceID"), column(log, "InstanceID"));
    for (const char* name : {"MaxNumberOfRecords", "CurrentNumberOfRecords"})
        EXPECT_EQ(textOf(instance, std::string("Log") + name), column(log, name));
    const ClassRequests memory{broker, PH_CLASS_FUNCTIONS(Memory)};
    expectSame(only(memory), "MemoryBlockSize", "BlockSize");
    expectSame(only(memory), "MemoryNumberOfBlocks", "NumberOfBlocks");
    EXPECT_EQ(textOf(instance, "NumberOfProcessors"), "2");
    EXPECT_EQ(textOf(instance, "NumberOfProcessorCores"), "5");
    EXPECT_EQ(textOf(instance, "NumberOfProcessorThreads"), "10");
    EXPECT_EQ(textOf(instance, "ProcessorFamily"), "179");
    EXPECT_EQ(textOf(instance, "ProcessorMaxClockSpeed"), "4000");
    EXPECT_EQ(textOf(instance, "ProcessorCurrentClockSpeed"), "2400");
    EXPECT_EQ(textOf(instance, "CurrentManagementFirmwareVersionString"), "3.04");
    EXPECT_EQ(textOf(instance, "CurrentBIOSVersionString"), "1.2.3");
    EXPECT_EQ(textOf(instance, "CurrentBIOSRevisionNumber"), "3");
    EXPECT_EQ(textOf(instance, "CurrentBIOSBuildNumber"), "<none>");
    expectSame(only(systems), "OSType");
    expectSame(only(systems), "OSVersion", "Version");
    expectSame(only(systems), "OSEnabledState", "EnabledState");
}

TEST_F(View, IsAsHealthyAsItsSensors) {
    EXPECT_EQ(told("HealthState"), "5");
    EXPECT_EQ(told("NumericSensorPrimaryStatus"), "{1, 1}");
    bmc().setReading("Inlet", 42);
    EXPECT_EQ(told("NumericSensorPrimaryStatus"), "{2, 1}") << told("NumericSensorCurrentState");
    EXPECT_EQ(told("HealthState"), "15");
    bmc().setReading("Inlet", 47);
    EXPECT_EQ(told("NumericSensorPrimaryStatus"), "{3, 1}");
    EXPECT_EQ(told("HealthState"), "25");
}

TEST_F(View, LeavesOutWhatTheBmcDoesNotTell) {
    failCommand(ipmi::command::getSelInfo);
    addFault(ipmi::command::getSystemBootOptions);
    const auto instance = only(view);
    for (const char* name : {"LogInstanceID", "LogMaxNumberOfRecords", "LogState", "StructuredBootString"})
        EXPECT_EQ(textOf(instance, name), "<none>") << name;
    EXPECT_EQ(textOf(instance, "SerialNumber"), "SN1");
    failCommand(ipmi::command::getDeviceId);
    EXPECT_FALSE(view.enumerate().ok()) << "a BMC that does not say what it is is none";
}

TEST_F(View, ChoosesWhatTheHostBootsFrom) {
    EXPECT_EQ(told("PersistentBootConfigOrder"), "<none>");
    EXPECT_EQ(told("OneTimeBootSource"), "<none>");
    const std::string sources = told("StructuredBootString");
    EXPECT_EQ(sources.find("\"CIM:Network:1\", \"CIM:Hard-Disk:1\", \"CIM:CD/DVD:1\""), 1U) << sources;
    const auto once = invoke("SetOneTimeBootSource", {{"StructuredBootString", text("CIM:Hard-Disk:1")}});
    EXPECT_EQ(jobOf(once), Job::completed("View_SetOneTimeBootSource"));
    EXPECT_EQ(told("OneTimeBootSource"), "1");
    constexpr const char* order = "ModifyPersistentBootConfigOrder";
    EXPECT_THAT(invoke(order, {{"StructuredBootString", texts({"CIM:CD/DVD:1"})}}), Returns(0));
    EXPECT_EQ(told("PersistentBootConfigOrder"), "{2}");
    EXPECT_EQ(told("OneTimeBootSource"), "<none>");
    EXPECT_THAT(invoke(order, {{"StructuredBootString", texts({})}}), Returns(0));
    EXPECT_EQ(told("PersistentBootConfigOrder"), "<none>");

    const auto jobsBefore = jobCount();
    for (const auto& in : {broker::NamedValues{},
                           {{"StructuredBootString", texts({"CIM:Network:1", "CIM:CD/DVD:1"})}},
                           {{"StructuredBootString", texts({"CIM:Network:9"})}},
                           {{"StructuredBootString", text("CIM:Network:1")}}})
        EXPECT_EQ(invoke(order, in).code, CMPI_RC_ERR_INVALID_PARAMETER);
    EXPECT_EQ(invoke("SetOneTimeBootSource", {{"StructuredBootString", text("disk")}}).code,
              CMPI_RC_ERR_INVALID_PARAMETER);
    EXPECT_EQ(jobCount(), jobsBefore);
}

TEST_F(View, HasTheMethodsOfTheClasses) {
    bmc().fillSel(5);
    EXPECT_EQ(told("LogCurrentNumberOfRecords"), "{5}");
    EXPECT_EQ(invoke("ClearLog", {{"LogInstanceID", text("another")}}).code, CMPI_RC_ERR_INVALID_PARAMETER);
    EXPECT_EQ(told("LogCurrentNumberOfRecords"), "{5}");
    EXPECT_THAT(invoke("ClearLog", {{"LogInstanceID", text("IPMI:controller SEL Log")}}), Returns(0));
    EXPECT_EQ(told("LogCurrentNumberOfRecords"), "{0}");

    EXPECT_EQ(told("EnabledState"), "2");
    const auto reply = invoke("RequestStateChange", {{"RequestedState", number(2)}});
    EXPECT_EQ(jobOf(reply), Job::completed("Host_RequestStateChange"));

    EXPECT_THAT(invoke("InstallSoftwareFromURI", {{"URI", text("file:///none")},
                                                  {"Classifications", arrayOf(CMPI_uint16, {number(11)})}}),
                Returns(1));
    EXPECT_THAT(invoke("InstallSoftwareFromURI", {{"URI", text("file:///none")},
                                                  {"Classifications", arrayOf(CMPI_uint16, {number(14)})}}),
                Returns(4096));
    EXPECT_EQ(PH_WaitForInstallation(60), 0);
    EXPECT_EQ(lastJob(), Job::failed("InstallFromURI"));
}

} // namespace
