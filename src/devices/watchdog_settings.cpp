#include "devices/watchdog_settings.h"

#include "Utility/values/dmtf_values.h"

#include <bit>
#include <limits>

namespace ph::watchdog {
namespace {

// The first use of an entity is the one that it is set to.
struct Use {
    std::uint8_t use;
    std::uint16_t entity;
};
constexpr Use uses[] = {
    {CIM_WATCHDOG_OS, MonitoredEntity::OperatingSystem},
    {CIM_WATCHDOG_OS_LOAD, MonitoredEntity::OperatingSystemBoot},
    {CIM_WATCHDOG_BIOS_POST, MonitoredEntity::BiosBoot},
    {CIM_WATCHDOG_BIOS_FRB2, MonitoredEntity::BiosBoot},
    {CIM_WATCHDOG_OEM, MonitoredEntity::Other},
};

// CIM takes an interrupt for an action; IPMI has it beside the action, and earlier.
struct Action {
    std::uint16_t action;
    std::uint8_t atEnd;
    std::uint8_t interrupt;
};
constexpr Action actions[] = {
    {ActionOnExpiration::NonMaskableInterrupt, CIM_WATCHDOG_NO_ACTION, CIM_WATCHDOG_NMI},
    {ActionOnExpiration::SystemManagementInterrupt, CIM_WATCHDOG_NO_ACTION, CIM_WATCHDOG_SMI},
    {ActionOnExpiration::None, CIM_WATCHDOG_NO_ACTION, CIM_WATCHDOG_NO_INTERRUPT},
    {ActionOnExpiration::SystemReset, CIM_WATCHDOG_HARD_RESET, CIM_WATCHDOG_NO_INTERRUPT},
    {ActionOnExpiration::SystemPowerOff, CIM_WATCHDOG_POWER_DOWN, CIM_WATCHDOG_NO_INTERRUPT},
    {ActionOnExpiration::SystemPowerCycle, CIM_WATCHDOG_POWER_CYCLE, CIM_WATCHDOG_NO_INTERRUPT},
};

} // namespace

std::uint16_t entityOf(std::uint8_t use) {
    for (const Use& each : uses)
        if (each.use == use)
            return each.entity;
    return MonitoredEntity::Unknown;
}

std::uint16_t lastEntity(std::uint8_t expired) {
    return std::has_single_bit(expired) ? entityOf(static_cast<std::uint8_t>(std::countr_zero(expired)))
                                        : std::uint16_t{MonitoredEntity::Unknown};
}

std::uint16_t actionOf(const CIM_WatchdogTimer& timer) {
    for (const Action& each : actions)
        if (each.atEnd == timer.action &&
            (each.interrupt == timer.interrupt || each.interrupt == CIM_WATCHDOG_NO_INTERRUPT))
            return each.action;
    return ActionOnExpiration::None;
}

std::uint32_t intervalOf(const CIM_WatchdogTimer& timer) {
    const std::uint64_t microseconds = std::uint64_t{timer.interval} * resolution;
    return microseconds <= std::numeric_limits<std::uint32_t>::max()
               ? static_cast<std::uint32_t>(microseconds)
               : 0;
}

bool setEntity(CIM_WatchdogTimer& timer, std::uint64_t entity) {
    if (entityOf(timer.use) == entity && entity != MonitoredEntity::Unknown)
        return true; // another use for the same entity stays
    for (const Use& each : uses)
        if (each.entity == entity) {
            timer.use = each.use;
            return true;
        }
    return false;
}

bool setAction(CIM_WatchdogTimer& timer, std::uint64_t action) {
    if (actionOf(timer) == action)
        return true; // with whatever interrupt it has
    for (const Action& each : actions)
        if (each.action == action) {
            timer.action = each.atEnd;
            timer.interrupt = each.interrupt;
            timer.interruptSeconds = 0;
            return true;
        }
    return false;
}

bool setInterval(CIM_WatchdogTimer& timer, std::uint64_t microseconds) {
    const std::uint64_t counts = microseconds / resolution;
    if (counts == 0 || counts > std::numeric_limits<std::uint16_t>::max() || microseconds % resolution != 0 ||
        (timer.interrupt != CIM_WATCHDOG_NO_INTERRUPT && counts < timer.interruptSeconds * 10U))
        return false;
    timer.interval = static_cast<std::uint16_t>(counts);
    return true;
}

} // namespace ph::watchdog
