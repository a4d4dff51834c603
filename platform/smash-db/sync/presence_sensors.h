// Which sensors tell whether their entity is installed (IPMI 2.0 tables 42-2 and 42-3).
#pragma once

#include <platform/smash_db_inventory.h>

#include <cstdint>
#include <optional>

namespace smash {

struct PresenceRule {
    std::uint8_t sensorType; // 0: any
    std::uint8_t eventReadingType;
    std::uint8_t presentStates; // bits, of which one is set while the entity is installed; 0: there are none
    std::uint8_t absentStates;  // bits that are set while it is not
};

// The most explicit rules come first.
inline constexpr PresenceRule presenceRules[] = {
    {0x25, 0x6F, 0x05, 0x02}, // entity presence: present or disabled; absent
    {0x00, 0x08, 0x02, 0x01}, // any sensor of type 08h: inserted; removed
    {0x08, 0x6F, 0x01, 0x00}, // power supply: presence detected
    {0x07, 0x6F, 0x80, 0x00}, // processor
    {0x0C, 0x6F, 0x40, 0x00}, // memory
    {0x0D, 0x6F, 0x01, 0x00}, // drive
    {0x29, 0x6F, 0x04, 0x00}, // battery
    {0x2C, 0x6F, 0x00, 0x01}, // FRU state: not installed
};

struct PresenceStates {
    std::uint8_t present;
    std::uint8_t absent;

    // Tells it from the states that are set.
    bool isInstalled(std::uint16_t states) const {
        return (states & absent) == 0 && (present == 0 || (states & present) != 0);
    }
};

// Returns the states that the sensor supports; nothing when the rule is not about it.
inline std::optional<PresenceStates> presenceStates(const PresenceRule& rule, const CompactSdr& sensor) {
    const PresenceStates states{static_cast<std::uint8_t>(rule.presentStates & sensor.supportedStates),
                                static_cast<std::uint8_t>(rule.absentStates & sensor.supportedStates)};
    if (sensor.eventReadingType != rule.eventReadingType ||
        (rule.sensorType != 0 && sensor.ipmiSensorType != rule.sensorType) ||
        (states.present | states.absent) == 0)
        return std::nullopt;
    return states;
}

} // namespace smash
