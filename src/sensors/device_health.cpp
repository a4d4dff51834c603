#include "sensors/device_health.h"

#include "provider_helper/tables.h"
#include "sensors/sensor_family.h"
#include "Utility/engine/guard.h"
#include "Utility/requests/request_texts.h"
#include "Utility/values/cmpi_ptr.h"
#include "Utility/values/dmtf_values.h"

#include <algorithm>
#include <new>
#include <string_view>
#include <strings.h>
#include <vector>

namespace ph {
namespace {

using SensorRows = Rows<CompactSdr>;

// DeviceIDs of the sensors of an entity, as views into the rows.
std::vector<std::string_view> sensorsOf(const SensorRows& rows, int entityId, int entityInstance) {
    std::vector<std::string_view> ids;
    for (const CompactSdr& sdr : rows.all())
        if (sdr.entityId == entityId && sdr.entityInstance == entityInstance)
            ids.emplace_back(sdr.deviceId);
    return ids;
}

// States of processors and memory (IPMI 2.0 table 42-3, types 07h and 0Ch) that logdev_health_state_mapping has no rows
// of, and what they mean while they are asserted.
struct PartState {
    std::string_view name;
    std::uint8_t healthState;
    std::uint8_t operationalStatus;
};
constexpr PartState partStates[] = {
    {"IERR", 25, 6},
    {"Thermal Trip", 25, 6},
    {"FRB1/BIST failure", 25, 6},
    {"FRB2/Hang in POST failure", 25, 6},
    {"FRB3/Processor Startup/Initialization failure", 25, 6},
    {"SM BIOS -Uncorrectable CPU-complex Error", 25, 6},
    {"Processor Presence detected", 5, 2},
    {"Processor disabled", 10, 15},
    {"Processor Automatically Throttled", 10, 3},
    {"Correctable ECC or other correctable memory error", 10, 3},
    {"Uncorrectable ECC or other uncorrectable memory error", 25, 6},
    {"Parity", 25, 6},
    {"Memory Scrub Failed (stuck bit)", 20, 6},
    {"Memory Device Disabled", 10, 15},
    {"Correctable ECC or other correctable memory error logging limit reached", 10, 5},
    {"Memory Automatically Throttled", 10, 3},
    {"Critical Overtemperature", 25, 6},
};

// A failure that is not asserted is as good as it gets.
void raisePartHealth(std::string_view currentState, std::uint16_t& healthState, int& operationalStatus) {
    constexpr PartState good{"", HealthState::OK, OperationalStatus::OK};
    const std::string_view name = currentState.substr(0, currentState.rfind(' '));
    for (const PartState& each : partStates) {
        if (each.name != name)
            continue;
        const bool isAsserted = currentState.ends_with(" Assert");
        const PartState& state = isAsserted ? each : good;
        if (isAsserted || each.healthState > good.healthState) {
            healthState = std::max<std::uint16_t>(healthState, state.healthState);
            operationalStatus = std::max<int>(operationalStatus, state.operationalStatus);
        }
    }
}

// Empty when the instance has no such text.
const char* textOf(const CMPIInstance* instance, const char* property) {
    const char* text = propertyText(instance, property);
    return text != nullptr ? text : "";
}

// Frees the texts of a sensor's record.
struct OwnedSensor {
    SensorRecord record{};
    ~OwnedSensor() { cleanRecord(sensorProperties, &record); }
};

int rollUp(const CMPIBroker* broker, const CMPIContext* context, int entityId, int entityInstance,
           std::uint16_t& healthState, int& operationalStatus) {
    SensorRows rows;
    if (!rows.read(db_get_all_compact_sdrs))
        return -1;
    const std::vector<std::string_view> ids = sensorsOf(rows, entityId, entityInstance);
    if (ids.empty())
        return -1;
    const CMPIObjectPath* ref = CMNewObjectPath(broker, "root/cimv2", "CIM_Sensor", nullptr);
    if (ref == nullptr)
        return -1;
    const char* properties[] = {"CurrentState", nullptr}; // and the keys
    const CmpiPtr<CMPIArray> sensors(PH_Sensor_GetInstArray(ref, broker, context, properties));
    if (sensors == nullptr)
        return -1;
    int result = -1;
    for (CMPICount i = 0; i < CMGetArrayCount(sensors.get(), nullptr); ++i) {
        const CMPIInstance* sensor = CMGetArrayElementAt(sensors.get(), i, nullptr).value.inst;
        if (std::ranges::find(ids, std::string_view(textOf(sensor, "DeviceID"))) != ids.end() &&
            raiseHealth(textOf(sensor, "CurrentState"), healthState, operationalStatus))
            result = 0;
    }
    return result;
}

} // namespace

bool raiseHealth(const char* currentState, std::uint16_t& healthState, int& operationalStatus) {
    char state[64];
    copyText(state, currentState);
    bool matched = false;
    for (const PHHealthState& row : logdev_health_state_mapping) {
        if (strcasecmp(row.name, state) != 0)
            continue;
        healthState = std::max(healthState, static_cast<std::uint16_t>(row.healthState));
        operationalStatus = std::max(operationalStatus, static_cast<int>(row.operationalStatus));
        matched = true;
    }
    return matched;
}

void rollUpHealth(std::span<const CompactSdr> sensors, SensorReader& reader, int entityId, int entityInstance,
                  std::uint16_t& healthState, int& operationalStatus) {
    for (const CompactSdr& sdr : sensors) {
        if (sdr.entityId != entityId || sdr.entityInstance != entityInstance)
            continue;
        OwnedSensor sensor;
        if (PH_Fill_Sensor(&sdr, &sensor.record) != 0)
            throw std::bad_alloc();
        publishDiscrete(sensor.record, reader.read(sdr.sensorNumber));
        if (!isUnreadable(sensor.record) &&
            !raiseHealth(sensor.record.CurrentState, healthState, operationalStatus))
            raisePartHealth(sensor.record.CurrentState, healthState, operationalStatus);
    }
}

} // namespace ph

int PH_DeviceInstance(const CMPIBroker* broker, const CMPIContext* context, uint16_t entityId,
                      uint16_t entityInstance, uint16_t* healthState, int* operationalStatus) {
    return ph::guarded(-1, [&] {
        return ph::rollUp(broker, context, entityId, entityInstance, *healthState, *operationalStatus);
    });
}
