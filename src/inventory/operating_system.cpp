// CIM_OperatingSystem: what the BMC knows of the host's operating system.
#include "computer-system/computer_system.h"
#include "computer-system/power_state.h"
#include "inventory/os_sensors.h"
#include "provider_helper/software.h"
#include "Utility/values/record_fields.h"

#include <strings.h>

constexpr const char* const g_OperatingSystemKeyList[4] = {"CSCreationClassName", "CSName",
                                                           "CreationClassName", "Name"};

namespace ph::operating_system {
namespace {

using Record = OperatingSystemRecord;

constexpr const char* className = "CIM_OperatingSystem";
constexpr const char* systemName = "Operating System";

bool hasVersion(const Record& record) {
    return record.Version[0] != '\0';
}
bool isOfOtherType(const Record& record) {
    return record.OSType == OSType::Other;
}

constexpr Property properties[] = {
    PH_KEY(Record, CSCreationClassName),
    PH_KEY(Record, CSName),
    PH_KEY(Record, CreationClassName),
    PH_KEY(Record, Name),
    PH_PROPERTY(Record, ElementName),
    PH_PROPERTY_IF(Record, Version, hasVersion),
    PH_PROPERTY(Record, OSType),
    PH_PROPERTY_IF(Record, OtherTypeDescription, isOfOtherType),
    PH_PROPERTY(Record, EnabledState),
    PH_PROPERTY(Record, RequestedState),
    PH_PROPERTY(Record, AvailableRequestedStates),
    PH_PROPERTY(Record, OperationalStatus),
    PH_PROPERTY(Record, HealthState),
};

int enumerate(RecordArray<Record>& systems, Detail detail) {
    char hostName[256] = "";
    Record* system = systems.append();
    if (system == nullptr || PH_GetHostSystemName(hostName) != 0)
        return -1;
    copyText(system->CSCreationClassName, hostClass);
    copyText(system->CSName, hostName);
    copyText(system->CreationClassName, className);
    copyText(system->Name, systemName);
    return detail == Detail::Names ? 0 : PH_Fill_OperatingSystem(system);
}

bool shutDown(CMPIString** /*keyValues*/, std::uint16_t state) {
    using namespace RequestedState;
    return (state == Disabled || state == ShutDown) && switchPower(CIM_SoftOff) == 0;
}

MethodAnswer changeState(MethodCall& call) {
    return computer::changeState(call, {"OperatingSystem_RequestStateChange", shutDown, nullptr});
}

constexpr Method methods[] = {computer::stateChangeMethod(changeState)};

constexpr ClassDefinition<Record> definition{
    .name = className,
    .superclass = "CIM_EnabledLogicalElement",
    .source = "Get System Info Parameters 2 to 5; Get Chassis Status, Get ACPI Power State, Get Sensor "
              "Reading; Chassis Control",
    .keys = g_OperatingSystemKeyList,
    .properties = properties,
    .enumerate = enumerate,
    .methods = methods,
    .invocation = {.isLookedUp = true, .missing = {CMPI_RC_ERR_NOT_FOUND, "Given instance does not exist"}}};

// ---- Filling

// A system info parameter; the text is empty where the BMC does not tell.
struct InfoText {
    InfoText(IpmiSession& session, std::uint8_t parameter) {
        if (CIM_GetSystemInfo(session.get(), parameter, text, hookTimeout) != 0)
            text[0] = '\0';
    }
    bool isEmpty() const { return text[0] == '\0'; }

    char text[CIM_SYSTEM_INFO_SIZE] = "";
};

void fillNames(IpmiSession& session, Record& record) {
    const InfoText running(session, CIM_SYSTEM_OS_NAME);
    const InfoText version(session, CIM_SYSTEM_OS_VERSION);
    copyText(record.ElementName, systemName);
    copyText(record.Version, version.text);
    if (!running.isEmpty())
        copyText(record.ElementName, running.text);
    const InfoText primary(session, CIM_SYSTEM_PRIMARY_OS_NAME);
    if (running.isEmpty() && !primary.isEmpty())
        copyText(record.ElementName, primary.text);
    if (running.isEmpty() && primary.isEmpty())
        return;
    const bool isLinux = strcasestr(record.ElementName, "Linux") != nullptr;
    record.OSType = isLinux ? OSType::Linux : OSType::Other;
    copyText(record.OtherTypeDescription, record.ElementName);
}

// Returns whether an ACPI state, as IPMI numbers them, is one of sleep.
bool isAsleep(std::uint8_t acpiState) {
    constexpr std::uint8_t s1 = 1, s3 = 3, sleeping = 8, g1 = 9;
    return (acpiState >= s1 && acpiState <= s3) || acpiState == sleeping || acpiState == g1;
}
constexpr std::uint8_t hibernated = 4; // S4

void fillState(bool isOn, std::uint8_t acpiState, const OsCondition& condition, Record& record) {
    namespace Available = RequestedState;
    if (!isOn) {
        record.EnabledState =
            acpiState == hibernated ? EnabledState::EnabledButOffline : EnabledState::Disabled;
        record.HealthState = HealthState::OK;
        setList(record.OperationalStatus, {OperationalStatus::Stopped});
        return;
    }
    record.EnabledState = condition.isShuttingDown ? EnabledState::ShuttingDown
                          : isAsleep(acpiState)    ? EnabledState::Quiesce
                                                   : EnabledState::Enabled;
    record.HealthState = condition.healthState;
    setList(record.OperationalStatus, {condition.operationalStatus});
    setSlots(record.AvailableRequestedStates, {Available::Disabled, Available::ShutDown});
}

} // namespace
} // namespace ph::operating_system

PH_EXPORT_CLASS_FAMILY(OperatingSystem, OperatingSystemRecord, ph::operating_system::definition)

int PH_Fill_OperatingSystem(OperatingSystemRecord* record) {
    ph::IpmiSession session;
    ph::OsCondition condition;
    if (!session.open() || !condition.read(session))
        return -1;
    ph::operating_system::fillNames(session, *record);
    ph::setSlots(record->AvailableRequestedStates, {});
    ph::setList(record->OperationalStatus, {ph::OperationalStatus::Unknown});
    std::uint8_t acpiState = CIM_ACPI_UNKNOWN, deviceState = CIM_ACPI_UNKNOWN;
    if (CIM_GetACPIPowerState(session.get(), &acpiState, &deviceState, ph::hookTimeout) != 0 ||
        acpiState == CIM_ACPI_UNKNOWN)
        acpiState = condition.acpiState;
    CIM_ChassisStatus chassis{};
    if (CIM_GetChassisStatus(session.get(), &chassis, ph::hookTimeout) == 0)
        ph::operating_system::fillState(ph::isPowerOn(chassis), acpiState, condition, *record);
    return 0;
}
