// CIM_PhysicalComputerSystemView: most of the host in one instance.
#include "views/physical_computer_system_view.h"

#include "computer-system/computer_system.h"
#include "Utility/back-ends/back_ends.h"
#include "Utility/engine/class_family.h"

#include <cstdio>

constexpr const char* const g_PhysicalComputerSystemViewKeyList[1] = {"InstanceID"};

namespace ph::physical_computer_system_view {
namespace {

using Record = PhysicalComputerSystemViewRecord;

template <std::uint32_t bit>
bool knows(const Record& view) {
    return (view.known & bit) != 0;
}

template <auto text>
bool has(const Record& view) {
    return *(view.*text) != '\0';
}

template <auto number>
bool isNumber(const Record& view) {
    return view.*number != 0;
}

// The lists of the sensors, the log and the boot order are as long as there are such.
template <class T, std::size_t N, T (Record::*list)[N]>
std::span<const T> ofSensors(const Record& view) {
    return {view.*list, view.sensorCount};
}
template <class T, std::size_t N, T (Record::*list)[N]>
std::span<const T> ofLog(const Record& view) {
    return {view.*list, knows<PH_VIEW_LOG>(view) ? N : 0};
}
std::span<const std::uint8_t> bootOrder(const Record& view) {
    return {view.PersistentBootConfigOrder, view.bootOrderCount};
}

#define SENSORS(T, name) PH_COMPUTED(#name, (ofSensors<T, PH_VIEW_SENSORS, &Record::name>))
#define LOG(T, name) PH_COMPUTED(#name, (ofLog<T, 1, &Record::name>))
#define IF_KNOWN(name, group) PH_PROPERTY_IF(Record, name, knows<group>)
#define IF_NUMBER(name) PH_PROPERTY_IF(Record, name, isNumber<&Record::name>)
#define IF_TEXT(name) PH_PROPERTY_IF(Record, name, has<&Record::name>)

constexpr Property properties[] = {
    PH_KEY(Record, InstanceID),
    PH_PROPERTY(Record, ElementName),
    PH_PROPERTY(Record, EnabledState),
    PH_PROPERTY(Record, RequestedState),
    PH_PROPERTY(Record, OperationalStatus),
    PH_PROPERTY(Record, HealthState),
    PH_PROPERTY(Record, Dedicated),
    PH_PROPERTY(Record, IdentifyingDescriptions),
    PH_PROPERTY(Record, OtherIdentifyingInfo),
    IF_KNOWN(FRUInfoSupported, PH_VIEW_PACKAGE),
    IF_TEXT(Tag),
    IF_TEXT(Manufacturer),
    IF_TEXT(Model),
    IF_TEXT(SerialNumber),
    IF_TEXT(Version),
    IF_TEXT(PartNumber),
    PH_PROPERTY(Record, NumericSensorElementName),
    PH_PROPERTY(Record, NumericSensorCurrentState),
    SENSORS(std::uint16_t, NumericSensorEnabledState),
    SENSORS(std::uint16_t, NumericSensorHealthState),
    SENSORS(std::uint16_t, NumericSensorPrimaryStatus),
    SENSORS(std::uint16_t, NumericSensorBaseUnits),
    SENSORS(std::int32_t, NumericSensorUnitModifier),
    SENSORS(std::uint16_t, NumericSensorRateUnits),
    SENSORS(std::int32_t, NumericSensorCurrentReading),
    SENSORS(std::uint16_t, NumericSensorSensorType),
    PH_PROPERTY(Record, LogInstanceID),
    LOG(std::uint64_t, LogMaxNumberOfRecords),
    LOG(std::uint64_t, LogCurrentNumberOfRecords),
    LOG(std::uint16_t, LogOverWritePolicy),
    LOG(std::uint16_t, LogState),
    PH_PROPERTY(Record, StructuredBootString),
    PH_COMPUTED("PersistentBootConfigOrder", bootOrder),
    IF_KNOWN(OneTimeBootSource, PH_VIEW_ONE_TIME_BOOT_SOURCE),
    IF_KNOWN(NumberOfProcessors, PH_VIEW_PROCESSORS),
    IF_NUMBER(NumberOfProcessorCores),
    IF_NUMBER(NumberOfProcessorThreads),
    IF_KNOWN(ProcessorFamily, PH_VIEW_PROCESSORS),
    IF_NUMBER(ProcessorMaxClockSpeed),
    IF_NUMBER(ProcessorCurrentClockSpeed),
    IF_KNOWN(MemoryBlockSize, PH_VIEW_MEMORY),
    IF_KNOWN(MemoryNumberOfBlocks, PH_VIEW_MEMORY),
    IF_KNOWN(CurrentBIOSMajorVersion, PH_VIEW_BIOS_VERSION),
    IF_KNOWN(CurrentBIOSMinorVersion, PH_VIEW_BIOS_VERSION),
    IF_KNOWN(CurrentBIOSRevisionNumber, PH_VIEW_BIOS_REVISION),
    IF_KNOWN(CurrentBIOSBuildNumber, PH_VIEW_BIOS_BUILD),
    IF_KNOWN(CurrentBIOSVersionString, PH_VIEW_BIOS_TEXT),
    PH_PROPERTY(Record, CurrentManagementFirmwareMajorVersion),
    PH_PROPERTY(Record, CurrentManagementFirmwareMinorVersion),
    PH_PROPERTY(Record, CurrentManagementFirmwareElementName),
    PH_PROPERTY(Record, CurrentManagementFirmwareVersionString),
    IF_KNOWN(OSType, PH_VIEW_OS),
    IF_TEXT(OSVersion),
    IF_KNOWN(OSEnabledState, PH_VIEW_OS),
};

int enumerate(RecordArray<Record>& views, Detail detail) {
    char systemName[256] = "";
    Record* view = PH_GetHostSystemName(systemName) == 0 ? views.append() : nullptr;
    if (view == nullptr)
        return -1;
    std::snprintf(view->InstanceID, sizeof(view->InstanceID), "PhysicalComputerSystemView:%s", systemName);
    return detail == Detail::Names ? 0 : view::fill(*view);
}

constexpr Parameter job{"Job", CMPI_ref, Direction::Out, "CIM_ConcreteJob"};
constexpr Parameter clearLogParameters[] = {{"LogInstanceID", CMPI_string}};
constexpr Parameter installParameters[] = {job,
                                           {"Classifications", CMPI_uint16A},
                                           {"URI", CMPI_string},
                                           {"InstallOptions", CMPI_uint16A},
                                           {"InstallOptionsValues", CMPI_stringA}};
constexpr Parameter bootOrderParameters[] = {{"StructuredBootString", CMPI_stringA}, job};
constexpr Parameter bootSourceParameters[] = {{"StructuredBootString", CMPI_string}, job};

constexpr Method methods[] = {
    computer::stateChangeMethod(computer::changeHostState),
    {.name = "ClearLog", .parameters = clearLogParameters, .carryOut = view::clearLog},
    {.name = "InstallSoftwareFromURI",
     .parameters = installParameters,
     .carryOut = view::installSoftware,
     .job = JobReport{}},
    {.name = "ModifyPersistentBootConfigOrder",
     .parameters = bootOrderParameters,
     .carryOut = view::modifyBootOrder,
     .job = JobReport{}},
    {.name = "SetOneTimeBootSource",
     .parameters = bootSourceParameters,
     .carryOut = view::setBootSource,
     .job = JobReport{}},
};

constexpr ClassDefinition<Record> definition{
    .name = "CIM_PhysicalComputerSystemView",
    .superclass = "CIM_View",
    .source =
        "the classes of the system, its chassis, sensors, processors, memory, log, boot sources, software",
    .keys = g_PhysicalComputerSystemViewKeyList,
    .properties = properties,
    .enumerate = enumerate,
    .methods = methods,
    .invocation = {.isLookedUp = true, .missing = noSuchInstance}};

} // namespace
} // namespace ph::physical_computer_system_view

PH_EXPORT_CLASS_FAMILY(PhysicalComputerSystemView, PhysicalComputerSystemViewRecord,
                       ph::physical_computer_system_view::definition)
