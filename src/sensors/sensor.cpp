// CIM_Sensor: discrete sensors, one instance for each row of the SDR table.
#include "sensors/sensor_family.h"
#include "Utility/values/dmtf_values.h"

constexpr const char* const g_SensorKeyList[4] = {ph::sensorKeys[0], ph::sensorKeys[1], ph::sensorKeys[2],
                                                  ph::sensorKeys[3]};

namespace ph {

void fillCommon(const CompactSdr& sdr, SensorRecord& sensor) {
    copyText(sensor.DeviceID, sdr.deviceId);
    copyText(sensor.OtherSensorTypeDescription, sdr.otherSensorType);
    copyText(sensor.source, sdr.source);
    sensor.SensorType = sdr.sensorType;
    sensor.RequestedState = RequestedState::NotApplicable;
    sensor.EnabledState = EnabledState::Enabled;
    setList(sensor.OperationalStatus, {OperationalStatus::Unknown}); // until it is read
    sensor.eventReadingType = sdr.eventReadingType;
    sensor.ipmiSensorType = sdr.ipmiSensorType;
    sensor.entityId = sdr.entityId;
    sensor.entityInstance = sdr.entityInstance;
    sensor.supportedStates = sdr.supportedStates;
}

bool isUnreadable(const SensorRecord& sensor) {
    return IsSkipUnkwonError(sensor.DeviceID, sensor.source, sensor.OperationalStatus[0]) == 1;
}

} // namespace ph

namespace ph::sensor {
namespace {

using Record = SensorRecord;

constexpr SensorClass<Record, CompactSdr> sensorClass{"CIM_Sensor", db_get_all_compact_sdrs,
                                                      db_get_compact_sdr, PH_Fill_Sensor, publishDiscrete};

int enumerate(RecordArray<Record>& sensors, Detail detail) {
    return enumerateSensors(sensorClass, sensors, detail);
}

int stream(const std::function<bool(const Record&)>& take, Detail detail) {
    return streamSensors(sensorClass, sensorProperties, take, detail);
}

int get(RecordArray<Record>& sensors, CMPIString** keyValues) {
    return getSensor(sensorClass, sensors, keyValues);
}

bool skip(const Record& record) {
    return isUnreadable(record);
}

constexpr ClassDefinition<Record> definition{
    .name = sensorClass.name,
    .superclass = "CIM_LogicalDevice",
    .source = "table compact_sdr (SDR types 01h and 02h); Get Sensor Reading",
    .keys = g_SensorKeyList,
    .properties = sensorProperties,
    .enumerate = enumerate,
    .stream = stream,
    .get = get,
    .skip = skip};

} // namespace
} // namespace ph::sensor

int PH_Fill_Sensor(const CompactSdr* sdr, SensorRecord* record) {
    ph::fillCommon(*sdr, *record);
    PH_Fill_Caption_Description_ElementName_Sensor(sdr, record);
    return PH_Fill_PossibleStates_Sensor(record);
}

PH_EXPORT_CLASS_FAMILY(Sensor, SensorRecord, ph::sensor::definition)
