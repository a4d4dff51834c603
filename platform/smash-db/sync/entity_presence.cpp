#include "smash-db/sync/entity_presence.h"

#include "ipmi/command.h"

#include <algorithm>
#include <iterator>
#include <optional>

namespace smash {
namespace {

// A state that says whether the sensor's entity is there (IPMI 2.0 tables 42-2 and 42-3).
struct PresenceState {
    std::uint8_t sensorType; // 0: any
    std::uint8_t eventReadingType;
    std::uint8_t offset;
    Presence whileAsserted;
    Presence otherwise;
};

constexpr std::uint8_t deviceAbsentOrPresent = 0x08, sensorSpecific = 0x6F;

// A state that tells presence in both cases stands before one that tells it only while it is asserted.
constexpr PresenceState presenceStates[] = {
    {0x00, deviceAbsentOrPresent, 1, Presence::Present, Presence::Absent},
    {0x07, sensorSpecific, 7, Presence::Present, Presence::Absent},  // processor
    {0x08, sensorSpecific, 0, Presence::Present, Presence::Absent},  // power supply
    {0x0C, sensorSpecific, 6, Presence::Present, Presence::Absent},  // memory
    {0x0D, sensorSpecific, 0, Presence::Present, Presence::Absent},  // drive
    {0x25, sensorSpecific, 1, Presence::Absent, Presence::Present},  // entity presence: absent
    {0x25, sensorSpecific, 0, Presence::Present, Presence::Unknown}, // a disabled entity is there too
    {0x29, sensorSpecific, 2, Presence::Present, Presence::Absent},  // battery
    {0x2C, sensorSpecific, 0, Presence::Absent, Presence::Present},  // FRU state: not installed
};

const PresenceState* presenceState(const CompactSdr& sensor) {
    const auto* const found = std::ranges::find_if(presenceStates, [&](const PresenceState& state) {
        return (state.sensorType == 0 || state.sensorType == sensor.ipmiSensorType) &&
               state.eventReadingType == sensor.eventReadingType &&
               (sensor.supportedStates >> state.offset & 1) != 0;
    });
    return found != std::end(presenceStates) ? found : nullptr;
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
        const PresenceState* const state = presenceState(sensor);
        if (isRead || state == nullptr || sensor.entityId != entityId ||
            sensor.entityInstance != entityInstance)
            continue;
        last = &sensor;
        const auto states = readStates(bmc, sensor.sensorNumber);
        if (!states)
            continue;
        const Presence said = (*states >> state->offset & 1) != 0 ? state->whileAsserted : state->otherwise;
        if (said == Presence::Present)
            return said;
        if (said == Presence::Absent)
            presence = said;
    }
    return presence;
}

} // namespace smash
