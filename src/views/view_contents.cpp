// What the view of the host tells, from the instances that it is a view of.
#include "boot/boot_choice.h"
#include "provider_helper/computer_system.h"
#include "provider_helper/devices.h"
#include "provider_helper/inventory.h"
#include "provider_helper/record_log.h"
#include "provider_helper/software.h"
#include "sensors/sensor_family.h"
#include "Utility/values/dmtf_values.h"
#include "Utility/values/record_fields.h"
#include "views/physical_computer_system_view.h"

#include <algorithm>
#include <cstdlib>
#include <cstring>
#include <span>

namespace ph {

extern constinit const ClassFamily family_Chassis, family_HostComputerSystem, family_Memory,
    family_NumericSensor, family_OperatingSystem, family_Processor, family_ProcessorCore,
    family_SoftwareIdentity;

namespace view {
namespace {

using View = PhysicalComputerSystemViewRecord;

// All records of a class.
template <class Record>
class Instances {
public:
    explicit Instances(const ClassFamily& family) : family_(family) {}
    ~Instances() { engine::clean(family_, &records_, count_); }
    Instances(const Instances&) = delete;
    Instances& operator=(const Instances&) = delete;

    bool read(Detail detail = Detail::All) {
        return engine::enumerateAll(family_, &records_, &count_, detail == Detail::Names) == 0;
    }
    std::span<const Record> all() const { return {records_, static_cast<std::size_t>(count_)}; }

private:
    const ClassFamily& family_;
    Record* records_ = nullptr;
    int count_ = 0;
};

template <std::size_t N>
bool copyTexts(char* (&to)[N], char* const (&from)[N]) {
    for (std::size_t i = 0; i < N - 1 && from[i] != nullptr; ++i)
        if ((to[i] = strdup(from[i])) == nullptr)
            return false;
    return true;
}

bool addHost(View& view) {
    Instances<HostComputerSystemRecord> hosts(family_HostComputerSystem);
    std::uint16_t power = 0;
    if (!hosts.read() || hosts.all().empty())
        return false;
    const auto& host = hosts.all().front();
    copyText(view.ElementName, host.ElementName);
    view.EnabledState = PH_GetHostPowerState(&power) != 0 ? EnabledState::Unknown
                        : power == PowerState::On         ? EnabledState::Enabled
                                                          : EnabledState::Disabled;
    view.RequestedState = host.RequestedState;
    std::ranges::copy(host.OperationalStatus, view.OperationalStatus);
    view.HealthState = host.HealthState;
    std::ranges::copy(host.Dedicated, view.Dedicated);
    return copyTexts(view.IdentifyingDescriptions, host.IdentifyingDescriptions) &&
           copyTexts(view.OtherIdentifyingInfo, host.OtherIdentifyingInfo);
}

// What is in the chassis hangs on the first one that is a system's: IPMI entity 23.
bool addChassis(View& view) {
    Instances<PhysicalElementRecord> chassis(family_Chassis);
    if (!chassis.read())
        return false;
    for (const PhysicalElementRecord& each : chassis.all()) {
        if (std::strncmp(each.Tag, "23.", 3) != 0)
            continue;
        view.known |= PH_VIEW_PACKAGE;
        view.FRUInfoSupported = each.CanBeFRUed;
        copyText(view.Tag, each.Tag);
        copyText(view.Manufacturer, each.Manufacturer);
        copyText(view.Model, each.Model);
        copyText(view.SerialNumber, each.SerialNumber);
        copyText(view.Version, each.Version);
        copyText(view.PartNumber, each.PartNumber);
        break;
    }
    return true;
}

// DMTF PrimaryStatus of a HealthState.
std::uint16_t primaryStatus(std::uint16_t health) {
    constexpr std::uint16_t unknown = 0, ok = 1, degraded = 2, error = 3;
    return health == HealthState::Unknown       ? unknown
           : health == HealthState::OK          ? ok
           : health < HealthState::MajorFailure ? degraded
                                                : error;
}

bool addSensors(View& view) {
    Instances<NumericSensorRecord> sensors(family_NumericSensor);
    if (!sensors.read())
        return false;
    std::uint32_t& i = view.sensorCount;
    for (const NumericSensorRecord& each : sensors.all()) {
        if (isUnreadable(each.sensor) || i == PH_VIEW_SENSORS)
            continue;
        const std::uint16_t health = each.sensor.HealthState == HealthState::OK
                                         ? healthByThresholds(each)
                                         : std::uint16_t{HealthState::Unknown}; // it has no reading now
        view.HealthState = std::max(view.HealthState, health);
        view.NumericSensorElementName[i] = strdup(each.sensor.ElementName);
        view.NumericSensorCurrentState[i] = strdup(each.sensor.CurrentState);
        if (view.NumericSensorElementName[i] == nullptr || view.NumericSensorCurrentState[i] == nullptr)
            return false;
        view.NumericSensorEnabledState[i] = each.sensor.EnabledState;
        view.NumericSensorHealthState[i] = each.sensor.HealthState;
        view.NumericSensorPrimaryStatus[i] = primaryStatus(health);
        view.NumericSensorBaseUnits[i] = each.BaseUnits;
        view.NumericSensorUnitModifier[i] = publishedUnitModifier(each);
        view.NumericSensorRateUnits[i] = each.RateUnits;
        view.NumericSensorCurrentReading[i] = publishedReading(each);
        view.NumericSensorSensorType[i] = each.sensor.SensorType;
        ++i;
    }
    return true;
}

bool addProcessors(View& view) {
    Instances<ProcessorRecord> processors(family_Processor);
    Instances<ProcessorCoreRecord> cores(family_ProcessorCore);
    if (!processors.read() || !cores.read(Detail::Names))
        return false;
    if (processors.all().empty())
        return true;
    const ProcessorRecord& first = processors.all().front();
    view.known |= PH_VIEW_PROCESSORS;
    view.NumberOfProcessors = static_cast<std::uint16_t>(processors.all().size());
    view.NumberOfProcessorCores = static_cast<std::uint16_t>(cores.all().size());
    view.ProcessorFamily = first.Family;
    view.ProcessorMaxClockSpeed = first.MaxClockSpeed;
    view.ProcessorCurrentClockSpeed = first.CurrentClockSpeed;
    bool areThreadsKnown = true; // of each processor
    for (const ProcessorRecord& each : processors.all()) {
        view.HealthState = std::max(view.HealthState, each.device.HealthState);
        areThreadsKnown = areThreadsKnown && each.threads != 0;
        view.NumberOfProcessorThreads =
            static_cast<std::uint16_t>(view.NumberOfProcessorThreads + each.threads);
    }
    if (!areThreadsKnown)
        view.NumberOfProcessorThreads = 0;
    return true;
}

bool addMemory(View& view) {
    Instances<MemoryRecord> memories(family_Memory);
    if (!memories.read())
        return false;
    for (const MemoryRecord& memory : memories.all()) {
        view.known |= PH_VIEW_MEMORY;
        view.MemoryBlockSize = memory.BlockSize;
        view.MemoryNumberOfBlocks = memory.NumberOfBlocks;
        view.HealthState = std::max(view.HealthState, memory.device.HealthState);
    }
    return true;
}

bool addLog(View& view) {
    RecordLogRecord log{};
    if (PH_Fill_RecordLog(&log) != 0)
        return true;
    view.known |= PH_VIEW_LOG;
    view.LogMaxNumberOfRecords[0] = log.MaxNumberOfRecords;
    view.LogCurrentNumberOfRecords[0] = log.CurrentNumberOfRecords;
    view.LogOverWritePolicy[0] = log.OverwritePolicy;
    view.LogState[0] = log.LogState;
    return (view.LogInstanceID[0] = strdup(log.InstanceID)) != nullptr;
}

bool addBootSources(View& view) {
    boot::Flags flags;
    if (!flags.read() || !flags.areThere())
        return true;
    const std::uint8_t device = flags.device();
    std::uint8_t i = 0;
    for (const boot::Source& source : boot::sources()) {
        if (source.structuredBootString == nullptr || i == PH_VIEW_BOOT_SOURCES - 1)
            continue;
        if ((view.StructuredBootString[i] = strdup(source.structuredBootString)) == nullptr)
            return false;
        if (device != CIM_BOOT_NO_OVERRIDE && source.device == device)
            for (const boot::Configuration& configuration : boot::configurations()) {
                if (!flags.isNext(configuration))
                    continue;
                if (!configuration.isPersistent)
                    view.known |= PH_VIEW_ONE_TIME_BOOT_SOURCE;
                (configuration.isPersistent ? view.PersistentBootConfigOrder[0] : view.OneTimeBootSource) = i;
                view.bootOrderCount = configuration.isPersistent ? 1 : 0;
            }
        ++i;
    }
    return true;
}

void addHostFirmware(View& view, const SoftwareIdentityRecord& bios) {
    constexpr struct {
        std::uint32_t isKnown, becomesKnown;
    } groups[] = {{PH_VERSION_KNOWN, PH_VIEW_BIOS_VERSION},
                  {PH_REVISION_KNOWN, PH_VIEW_BIOS_REVISION},
                  {PH_BUILD_KNOWN, PH_VIEW_BIOS_BUILD}};
    for (const auto& group : groups)
        if ((bios.known & group.isKnown) != 0)
            view.known |= group.becomesKnown;
    view.known |= PH_VIEW_BIOS_TEXT;
    view.CurrentBIOSMajorVersion = bios.MajorVersion;
    view.CurrentBIOSMinorVersion = bios.MinorVersion;
    view.CurrentBIOSRevisionNumber = bios.RevisionNumber;
    view.CurrentBIOSBuildNumber = bios.BuildNumber;
    copyText(view.CurrentBIOSVersionString, bios.VersionString);
}

bool addFirmware(View& view) {
    Instances<SoftwareIdentityRecord> identities(family_SoftwareIdentity);
    if (!identities.read())
        return false;
    for (const SoftwareIdentityRecord& each : identities.all())
        if (each.Classifications[0] == Classifications::Bios) {
            addHostFirmware(view, each);
        } else if (std::strcmp(each.InstanceID, "IPMI:BMC Firmware") == 0) {
            view.CurrentManagementFirmwareMajorVersion = each.MajorVersion;
            view.CurrentManagementFirmwareMinorVersion = each.MinorVersion;
            copyText(view.CurrentManagementFirmwareElementName, each.ElementName);
            copyText(view.CurrentManagementFirmwareVersionString, each.VersionString);
        }
    return true;
}

bool addOperatingSystem(View& view) {
    Instances<OperatingSystemRecord> systems(family_OperatingSystem);
    if (!systems.read())
        return false;
    if (systems.all().empty())
        return true;
    const auto& system = systems.all().front();
    view.known |= PH_VIEW_OS;
    view.OSType = system.OSType;
    view.OSEnabledState = system.EnabledState;
    copyText(view.OSVersion, system.Version);
    return true;
}

} // namespace

// A BMC that does not answer fails the first of these that asks it.
int fill(View& view) {
    const bool isFilled = addHost(view) && addFirmware(view) && addChassis(view) && addSensors(view) &&
                          addProcessors(view) && addMemory(view) && addLog(view) && addBootSources(view) &&
                          addOperatingSystem(view);
    return isFilled ? 0 : -1;
}

} // namespace view
} // namespace ph
