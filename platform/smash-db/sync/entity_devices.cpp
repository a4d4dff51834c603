#include "smash-db/sync/entity_devices.h"

#include "ipmi/entity.h"
#include "smash-db/sync/presence_sensors.h"

#include <algorithm>
#include <iterator>

namespace smash {
namespace {

// IPMI 2.0 tables 42-1, 42-3, 43-13 and 43-15.
constexpr std::uint8_t fanSensor = 0x04;
constexpr std::uint8_t powerSupplySensor = 0x08;
constexpr std::uint8_t presenceType = 0x08;
constexpr std::uint8_t redundancyType = 0x0B;
constexpr std::uint16_t unspecifiedUnit = 0;

// An entity is a device when it has a sensor of the type.
struct DeviceKind {
    std::uint8_t entityId;
    std::uint8_t sensorType;
};
constexpr DeviceKind deviceKinds[] = {
    {ipmi::entity::fan, fanSensor},
    {30, fanSensor}, // cooling unit
    {ipmi::entity::powerSupply, powerSupplySensor},
};

// Bit 7 of a sensor's entity instance says that its entity is no physical one, but a container of such.
constexpr std::uint8_t isContainer = 0x80;

bool isOf(const CompactSdr& sensor, std::uint8_t entityId, std::uint8_t entityInstance) {
    return sensor.entityId == entityId && (sensor.entityInstance & ~isContainer) == entityInstance;
}

bool isOf(const CompactSdr& sensor, const EntityDeviceRow& device) {
    return isOf(sensor, device.entityId, device.entityInstance);
}

// A sensor of redundancy is about several devices, and makes none of its entity.
bool makesDevice(const CompactSdr& sensor) {
    return sensor.eventReadingType != redundancyType && (sensor.entityInstance & isContainer) == 0 &&
           std::ranges::any_of(deviceKinds, [&](const DeviceKind& kind) {
               return sensor.entityId == kind.entityId && sensor.ipmiSensorType == kind.sensorType;
           });
}

// A fan's number without a unit is a share of its full speed.
bool isDutyCycle(const FullSdr& sensor) {
    return sensor.common.ipmiSensorType == fanSensor && sensor.baseUnits == unspecifiedUnit;
}

// Prefers numbers to states, and the speed to the duty cycle.
void findTachometer(EntityDeviceRow& fan, const SdrMapping& sensors) {
    const auto take = [&](const CompactSdr& sensor) {
        const bool fits = isOf(sensor, fan) && makesDevice(sensor) && sensor.eventReadingType != presenceType;
        if (fits)
            fan.tachometer = sensor.sensorNumber;
        return fits;
    };
    for (const bool dutyCycle : {false, true})
        for (const FullSdr& sensor : sensors.numericSensors)
            if (isDutyCycle(sensor) == dutyCycle && take(sensor.common))
                return;
    for (const CompactSdr& sensor : sensors.sensors)
        if (take(sensor))
            return;
}

void findPresence(EntityDeviceRow& device, const SdrMapping& sensors) {
    for (const PresenceRule& rule : presenceRules)
        for (const CompactSdr& sensor : sensors.sensors) {
            const auto states = presenceStates(rule, sensor);
            if (!states || !isOf(sensor, device))
                continue;
            device.presenceSensor = sensor.sensorNumber;
            device.presentStates = states->present;
            device.absentStates = states->absent;
            return;
        }
}

// A fan is controlled by a duty cycle, which is its own or that of the cooling unit that contains it.
bool hasVariableSpeed(const EntityDeviceRow& fan, const SdrMapping& sensors) {
    const auto isDriven = [&](std::uint8_t entityId, std::uint8_t entityInstance) {
        return std::ranges::any_of(sensors.numericSensors, [&](const FullSdr& sensor) {
            return isDutyCycle(sensor) && isOf(sensor.common, entityId, entityInstance);
        });
    };
    return isDriven(fan.entityId, fan.entityInstance) ||
           std::ranges::any_of(sensors.associations, [&](const EntityAssociationRow& each) {
               return each.entityId == fan.entityId && each.entityInstance == fan.entityInstance &&
                      isDriven(each.containerId, each.containerInstance);
           });
}

} // namespace

EntityDeviceRow makeEntityDevice(std::uint8_t entityId, std::uint8_t entityInstance,
                                 const SdrMapping& sensors) {
    EntityDeviceRow device = {};
    device.entityId = entityId;
    device.entityInstance = entityInstance;
    device.tachometer = device.presenceSensor = SMASH_NO_SENSOR;
    findPresence(device, sensors);
    return device;
}

std::vector<EntityDeviceRow> findEntityDevices(const SdrMapping& sensors) {
    std::vector<EntityDeviceRow> devices;
    const auto add = [&](const CompactSdr& sensor) {
        if (!makesDevice(sensor) ||
            std::ranges::any_of(devices, [&](const EntityDeviceRow& each) { return isOf(sensor, each); }))
            return;
        devices.push_back(makeEntityDevice(sensor.entityId, sensor.entityInstance, sensors));
    };
    for (const FullSdr& sensor : sensors.numericSensors)
        add(sensor.common);
    for (const CompactSdr& sensor : sensors.sensors)
        add(sensor);
    for (EntityDeviceRow& device : devices) {
        if (device.entityId == ipmi::entity::powerSupply) // the fan within it is no device of its own
            continue;
        findTachometer(device, sensors);
        device.hasVariableSpeed = hasVariableSpeed(device, sensors) ? 1 : 0;
    }
    return devices;
}

} // namespace smash
