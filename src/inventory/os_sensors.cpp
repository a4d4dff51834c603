#include "inventory/os_sensors.h"

#include "sensors/reading.h"

#include <bit>
#include <bitset>

namespace ph {
namespace {

constexpr std::uint8_t osBoot = 0x1F, osStop = 0x20, acpiPowerState = 0x22;
constexpr std::uint8_t sensorSpecific = 0x6F;
constexpr std::uint8_t lastAcpiState = 9; // of those that sensor and command number alike

// The states that mean trouble, or that something is going on.
struct Meaning {
    std::uint8_t sensorType;
    unsigned offset;
    std::uint16_t operationalStatus;
    std::uint16_t healthState;
    bool isShuttingDown = false;
};
constexpr Meaning meanings[] = {
    {osStop, 0, OperationalStatus::Error, HealthState::CriticalFailure}, // while it was loaded
    {osStop, 1, OperationalStatus::Error, HealthState::CriticalFailure}, // at run time
    {osStop, 2, OperationalStatus::Stopped, HealthState::OK},            // in good order
    {osStop, 3, OperationalStatus::Stopping, HealthState::OK, true},     // in good order, with the host
    {osStop, 4, OperationalStatus::Stopping, HealthState::OK, true},     // by platform event filtering
    {osStop, 5, OperationalStatus::NoContact, HealthState::Degraded},    // its agent is silent
    {osBoot, 10, OperationalStatus::Error, HealthState::MajorFailure},   // the installation failed
};

bool isWatching(const CompactSdr& sdr) {
    constexpr std::uint8_t bmc = 0x20;
    return (sdr.ipmiSensorType == osBoot || sdr.ipmiSensorType == osStop ||
            sdr.ipmiSensorType == acpiPowerState) &&
           sdr.eventReadingType == sensorSpecific && sdr.ownerId == bmc && sdr.ownerLun == 0;
}

// Returns a sensor's state bits; 0 for one that has no reading.
unsigned readStates(IpmiSession& session, std::uint8_t sensorNumber) {
    constexpr std::uint8_t scanning = 0x40;
    const auto [availability, answer] = readSensor(session.get(), sensorNumber);
    if (availability != ReadingAvailability::Available || (answer.flags & scanning) == 0)
        return 0;
    return answer.statesLow | (answer.statesHigh & 0x7FU) << 8;
}

void apply(const CompactSdr& sdr, unsigned states, OsCondition& condition) {
    if (sdr.ipmiSensorType == acpiPowerState) {
        const auto state = static_cast<std::uint8_t>(std::countr_zero(states));
        if (states != 0 && state <= lastAcpiState)
            condition.acpiState = state;
        return;
    }
    for (const Meaning& meaning : meanings) {
        if (meaning.sensorType != sdr.ipmiSensorType || (states >> meaning.offset & 1) == 0)
            continue;
        condition.isShuttingDown = condition.isShuttingDown || meaning.isShuttingDown;
        if (meaning.healthState < condition.healthState)
            continue; // the worst counts
        condition.healthState = meaning.healthState;
        condition.operationalStatus = meaning.operationalStatus;
    }
}

} // namespace

bool OsCondition::read(IpmiSession& session) {
    Rows<CompactSdr> rows;
    if (!rows.read(db_get_all_compact_sdrs))
        return false;
    std::bitset<256> isRead; // a sensor has a row for each of its states
    for (const CompactSdr& sdr : rows.all()) {
        if (!isWatching(sdr) || isRead.test(sdr.sensorNumber))
            continue;
        isRead.set(sdr.sensorNumber);
        apply(sdr, readStates(session, sdr.sensorNumber), *this);
    }
    return true;
}

} // namespace ph
