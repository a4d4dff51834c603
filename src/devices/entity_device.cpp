#include "devices/entity_device.h"

#include "sensors/device_health.h"

#include <cstdio>
#include <iterator>

namespace ph {
namespace {

constexpr const char* removed = "Device Removed/Device Absent"; // of a presence sensor

} // namespace

EntityDeviceId idOf(const EntityDeviceRow& row) {
    EntityDeviceId id;
    std::snprintf(id.text, sizeof(id.text), "%d.%d", row.entityId, row.entityInstance);
    return id;
}

void fillDevice(const char* deviceId, const char* name, EntityDeviceRecord& device) {
    copyText(device.DeviceID, deviceId);
    copyText(device.ElementName, name);
    device.Availability = Availability::Unknown;
    device.EnabledState = EnabledState::NotApplicable;
    device.RequestedState = RequestedState::NotApplicable;
    device.HealthState = HealthState::Unknown;
    setList(device.OperationalStatus, {OperationalStatus::Unknown});
}

void fillEntityDevice(const EntityDeviceRow& row, EntityDeviceRecord& device) {
    char name[sizeof device.ElementName];
    std::snprintf(name, sizeof name, "%s %d", mappingOf(row.entityId).name, row.entityInstance);
    fillDevice(idOf(row).text, name, device);
}

void DeviceReader::readTachometer(const EntityDeviceRow& row, EntityDeviceRecord& device) {
    if (row.tachometer != SMASH_NO_SENSOR)
        PH_Fill_HealthState(sensors_.session(), row.tachometer, &device.HealthState,
                            &device.OperationalStatus[0]);
}

void DeviceReader::rollUp(const EntityDeviceRow& row, EntityDeviceRecord& device) {
    rollUpHealth(sdrs_.all(), sensors_, row.entityId, row.entityInstance, device.HealthState,
                 device.OperationalStatus[0]);
}

bool DeviceReader::isAbsent(const EntityDeviceRow& row) {
    if (row.presenceSensor == SMASH_NO_SENSOR)
        return false;
    const Reading& reading = sensors_.read(row.presenceSensor);
    if (reading.availability != ReadingAvailability::Available)
        return false;
    const unsigned states = reading.answer.statesLow;
    return (states & row.absentStates) != 0 || (row.presentStates != 0 && (states & row.presentStates) == 0);
}

void DeviceReader::readState(const EntityDeviceRow& row, EntityDeviceRecord& device) {
    if (isAbsent(row)) {
        raiseHealth(removed, device.HealthState, device.OperationalStatus[0]);
        device.EnabledState = EnabledState::Disabled;
        device.Availability = Availability::NotInstalled;
    } else if (device.HealthState != HealthState::Unknown) {
        device.EnabledState = EnabledState::Enabled;
        device.Availability =
            device.HealthState == HealthState::OK ? Availability::Running : Availability::Degraded;
    }
}

} // namespace ph
