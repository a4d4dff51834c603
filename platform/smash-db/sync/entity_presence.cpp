#include "smash-db/sync/entity_presence.h"

#include "ipmi/command.h"
#include "smash-db/sync/presence_sensors.h"

#include <optional>

namespace smash {
namespace {

std::optional<PresenceStates> presenceStates(const CompactSdr& sensor) {
    for (const PresenceRule& rule : presenceRules)
        if (const auto states = presenceStates(rule, sensor))
            return states;
    return std::nullopt;
}

// Returns nothing where the sensor has no reading at present, or cannot be read.
std::optional<std::uint16_t> readStates(ipmi::Transport& bmc, std::uint8_t sensorNumber) {
    constexpr std::uint8_t scanningEnabled = 0x40, unavailable = 0x20;
    try {
        const auto answer = ipmi::run(bmc, ipmi::command::getSensorReading, {sensorNumber});
        auto reader = answer.reader();
        reader.skip(1); // reading
        const std::uint8_t flags = reader.u8();
        const std::uint16_t low = reader.u8();
        if (!reader.ok() || (flags & (scanningEnabled | unavailable)) != scanningEnabled)
            return std::nullopt;
        const std::uint16_t high = reader.left() > 0 ? reader.u8() : 0; // optional
        return static_cast<std::uint16_t>(high << 8 | low);
    } catch (const ipmi::CompletionCodeError&) {
        return std::nullopt;
    }
}

} // namespace

Presence readPresence(ipmi::Transport& bmc, std::span<const CompactSdr> sensors, std::uint8_t entityId,
                      std::uint8_t entityInstance) {
    Presence presence = Presence::Unknown;
    const CompactSdr* last = nullptr;
    for (const CompactSdr& sensor : sensors) {
        // A sensor has a row for each of its states.
        const bool isRead = last != nullptr && last->sensorNumber == sensor.sensorNumber;
        const auto told = presenceStates(sensor);
        if (isRead || !told || sensor.entityId != entityId || sensor.entityInstance != entityInstance)
            continue;
        last = &sensor;
        const auto states = readStates(bmc, sensor.sensorNumber);
        if (!states)
            continue;
        if (told->isInstalled(*states))
            return Presence::Present;
        presence = Presence::Absent;
    }
    return presence;
}

} // namespace smash
