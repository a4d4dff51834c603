// CIM_Watchdog: the BMC's watchdog timer, which watches over the host's software.
#include "provider_helper/watchdog.h"
#include "devices/watchdog_settings.h"
#include "Utility/back-ends/back_ends.h"
#include "Utility/engine/class_family.h"
#include "Utility/engine/current_record.h"
#include "Utility/engine/hosted_element.h"
#include "Utility/requests/changes.h"
#include "Utility/requests/request_status.h"
#include "Utility/values/dmtf_values.h"

#include <iterator>

constexpr const char* const g_WatchdogKeyList[4] = {"SystemCreationClassName", "CreationClassName",
                                                    "SystemName", "DeviceID"};

namespace ph {
extern const ClassFamily family_Watchdog;
}

namespace ph::watchdog {
namespace {

using Record = WatchdogRecord;

constexpr const char* className = "CIM_Watchdog";

bool hasInterval(const Record& record) {
    return record.TimeoutInterval != 0;
}
bool hasExpired(const Record& record) {
    return record.hasExpired;
}

constexpr Property properties[] = {
    PH_KEY(Record, SystemCreationClassName),
    PH_KEY(Record, CreationClassName),
    PH_KEY(Record, SystemName),
    PH_KEY(Record, DeviceID),
    PH_PROPERTY(Record, ElementName),
    PH_PROPERTY(Record, OperationalStatus),
    PH_PROPERTY(Record, HealthState),
    PH_PROPERTY(Record, EnabledState),
    PH_PROPERTY(Record, RequestedState),
    PH_PROPERTY(Record, MonitoredEntity),
    PH_PROPERTY(Record, MonitoredEntityDescription),
    PH_PROPERTY_IF(Record, TimeoutInterval, hasInterval),
    PH_PROPERTY(Record, TimerResolution),
    PH_PROPERTY(Record, ActionOnExpiration),
    PH_PROPERTY_IF(Record, MonitoredEntityOnLastExpiration, hasExpired),
};

// Timer holds a session that stays open between reading the timer and changing it.
class Timer {
public:
    bool read() {
        return session_.open() && CIM_GetWatchdogTimer(session_.get(), &settings_, hookTimeout) == 0;
    }
    bool isThere() const { return settings_.isSupported != 0; }
    bool isRunning() const { return settings_.isRunning != 0; }
    const CIM_WatchdogTimer& settings() const { return settings_; }

    bool start() { return CIM_ResetWatchdogTimer(session_.get(), hookTimeout) == 0; }
    bool stop() {
        CIM_WatchdogTimer stopped = settings_;
        stopped.isRunning = 0;
        return write(stopped);
    }
    bool write(const CIM_WatchdogTimer& settings) {
        return CIM_SetWatchdogTimer(session_.get(), &settings, hookTimeout) == 0;
    }

private:
    IpmiSession session_;
    CIM_WatchdogTimer settings_{};
};

int enumerate(RecordArray<Record>& watchdogs, Detail) {
    char systemName[256] = "";
    Timer timer;
    if (PH_GetHostSystemName(systemName) != 0 || !timer.read())
        return -1;
    if (!timer.isThere())
        return 0;
    Record* watchdog = watchdogs.append();
    if (watchdog == nullptr)
        return -1;
    setHostedKeys(*watchdog, hostClass, systemName, className);
    copyText(watchdog->DeviceID, "Watchdog1");
    return PH_Fill_Watchdog(&timer.settings(), watchdog);
}

// ---- Modify

using Setter = bool (*)(CIM_WatchdogTimer& timer, std::uint64_t value);
struct Settable {
    const char* name;
    CMPIType type;
    Setter set;
    const char* refusal;
};
// In this order: an action brings its interrupt, which an interval has to be longer than.
constexpr Settable settables[] = {
    {"MonitoredEntity", CMPI_uint16, setEntity, "The timer cannot watch over this entity"},
    {"ActionOnExpiration", CMPI_uint16, setAction, "The timer has no such action"},
    {"TimeoutInterval", CMPI_uint32, setInterval,
     "TimeoutInterval is no multiple of TimerResolution, or out of range"},
};

bool numberOf(const PHPropertyRow& row, CMPIType type, std::uint64_t& number) {
    const CMPIData data = valueOf(row);
    std::uint32_t wide = 0;
    std::uint16_t narrow = 0;
    if (data.state != CMPI_goodValue ||
        (type == CMPI_uint32 ? GetUINT32Value(data, &wide) : GetUINT16Value(data, &narrow)) != 0)
        return false;
    number = type == CMPI_uint32 ? wide : narrow;
    return true;
}

const PHPropertyRow* find(const PHPropertyList& changes, const char* name) {
    for (int i = 0; i < changes.count; ++i)
        if (std::strcmp(changes.rows[i].name, name) == 0)
            return &changes.rows[i];
    return nullptr;
}

// Returns nullptr, or why the timer cannot have the changes.
const char* apply(const PHPropertyList& changes, CIM_WatchdogTimer& timer) {
    for (const Settable& settable : settables) {
        const PHPropertyRow* change = find(changes, settable.name);
        std::uint64_t value = 0;
        if (change != nullptr && (!numberOf(*change, settable.type, value) || !settable.set(timer, value)))
            return settable.refusal;
    }
    return timer.use == 0 ? "The timer was never used: MonitoredEntity has to be set" : nullptr;
}

CMPIStatus modify(const Request& request) {
    CurrentRecord current(family_Watchdog);
    PHPropertyList changes{};
    if (const CMPIStatus status = current.readChanges(request, namesOf(settables), changes);
        status.rc != CMPI_RC_OK || changes.count == 0)
        return status;
    Timer timer;
    if (!timer.read())
        return fail(request.broker, "The watchdog timer cannot be read");
    CIM_WatchdogTimer settings = timer.settings();
    if (const char* refusal = apply(changes, settings))
        return fail(request.broker, CMPI_RC_ERR_INVALID_PARAMETER, refusal);
    // To write what it has would start a timer that runs anew.
    if (std::memcmp(&settings, &timer.settings(), sizeof(settings)) == 0)
        return success;
    return timer.write(settings) ? success : fail(request.broker, "The BMC refuses the settings");
}

// ---- Methods

// A timer that is in the state already is left alone: to start it anew would keep a host that hangs alive.
bool changeTimer(std::uint16_t state) {
    Timer timer;
    if (!timer.read() || !timer.isThere())
        return false;
    switch (state) {
    case RequestedState::Enabled:
        return timer.isRunning() || timer.start();
    case RequestedState::Disabled:
        return !timer.isRunning() || timer.stop();
    default:
        return timer.start();
    }
}

MethodAnswer changeState(MethodCall& call) {
    using namespace RequestedState;
    std::uint16_t state = 0;
    if (!call.readRequestedState(state))
        return std::nullopt;
    if (state != Enabled && state != Disabled && state != Reset)
        return call.refuse(CMPI_RC_ERR_INVALID_PARAMETER, "The watchdog has no such state");
    return call.report("Watchdog_RequestStateChange", [&] { return changeTimer(state); });
}

MethodAnswer keepAlive(MethodCall&) {
    Timer timer;
    return timer.read() && timer.isRunning() && timer.start() ? methodDone : methodFailed;
}

constexpr Method methods[] = {
    {.name = requestStateChange,
     .parameters = requestStateChangeParameters,
     .carryOut = changeState,
     .job = JobReport{}},
    {.name = "KeepAlive", .parameters = {}, .carryOut = keepAlive},
};

constexpr ClassDefinition<Record> definition{.name = className,
                                             .superclass = "CIM_LogicalDevice",
                                             .source = "Get, Set and Reset Watchdog Timer",
                                             .keys = g_WatchdogKeyList,
                                             .properties = properties,
                                             .enumerate = enumerate,
                                             .modify = modify,
                                             .methods = methods,
                                             .invocation = {.isLookedUp = true, .missing = noSuchInstance}};

} // namespace
} // namespace ph::watchdog

PH_EXPORT_CLASS_FAMILY(Watchdog, WatchdogRecord, ph::watchdog::definition)

int PH_Fill_Watchdog(const CIM_WatchdogTimer* timer, WatchdogRecord* record) {
    ph::copyText(record->ElementName, "Watchdog Timer");
    ph::setList(record->OperationalStatus, {ph::OperationalStatus::OK});
    record->HealthState = ph::HealthState::OK;
    record->EnabledState = timer->isRunning != 0 ? ph::EnabledState::Enabled : ph::EnabledState::Disabled;
    record->RequestedState = ph::RequestedState::NotApplicable;
    record->MonitoredEntity = ph::watchdog::entityOf(timer->use);
    record->MonitoredEntityDescription = timer->use == CIM_WATCHDOG_OEM ? "OEM" : nullptr;
    record->TimeoutInterval = ph::watchdog::intervalOf(*timer);
    record->TimerResolution = ph::watchdog::resolution;
    record->ActionOnExpiration = ph::watchdog::actionOf(*timer);
    record->hasExpired = timer->expired != 0;
    record->MonitoredEntityOnLastExpiration = ph::watchdog::lastEntity(timer->expired);
    return 0;
}
