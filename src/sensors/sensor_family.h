// What CIM_Sensor and CIM_NumericSensor share: the properties of every sensor, and how records come from the
// database and a session.
#pragma once

#include "sensors/reading.h"
#include "sensors/sensor_sdr.h"
#include "Utility/engine/class_family.h"
#include "Utility/engine/hosted_element.h"

#include <span>

namespace ph {

inline constexpr const char* sensorKeys[4] = {"SystemCreationClassName", "SystemName", "CreationClassName",
                                              "DeviceID"};
inline constexpr std::size_t deviceIdKey = 3;

inline constexpr Property sensorProperties[] = {
    PH_KEY(SensorRecord, SystemCreationClassName),
    PH_KEY(SensorRecord, SystemName),
    PH_KEY(SensorRecord, CreationClassName),
    PH_KEY(SensorRecord, DeviceID),
    PH_PROPERTY(SensorRecord, SensorType),
    PH_PROPERTY(SensorRecord, OtherSensorTypeDescription),
    PH_PROPERTY(SensorRecord, HealthState),
    PH_PROPERTY(SensorRecord, OperationalStatus),
    PH_PROPERTY(SensorRecord, PossibleStates),
    PH_PROPERTY(SensorRecord, CurrentState),
    PH_PROPERTY(SensorRecord, Caption),
    PH_PROPERTY(SensorRecord, Description),
    PH_PROPERTY(SensorRecord, ElementName),
    PH_PROPERTY(SensorRecord, RequestedState),
    PH_PROPERTY(SensorRecord, EnabledState),
};

inline SensorRecord& commonOf(SensorRecord& record) {
    return record;
}
inline SensorRecord& commonOf(NumericSensorRecord& record) {
    return record.sensor;
}

bool isUnreadable(const SensorRecord& sensor);

// What CIM_NumericSensor publishes as CurrentReading and UnitModifier.
std::int32_t publishedReading(const NumericSensorRecord& sensor);
std::int32_t publishedUnitModifier(const NumericSensorRecord& sensor);
// What its reading says of the health of what it watches, as DMTF HealthState: 5 within its thresholds, 15, 25
// and 30 at or beyond non-critical, critical and fatal ones.
std::uint16_t healthByThresholds(const NumericSensorRecord& sensor);

// Fills what the SDR says of every sensor, except states and texts.
void fillCommon(const CompactSdr& sdr, SensorRecord& sensor);

// A class of sensors: its record, its SDR, and the functions that go from one to the other.
template <class Record, class Sdr>
struct SensorClass {
    const char* name;
    typename Rows<Sdr>::Getter getAll;
    int (*getOne)(SMASH_DB_HANDLE, const char* deviceId, Sdr**);
    int (*fill)(const Sdr*, Record*);
    int (*publish)(Record&, const Reading&);
};

// Fills a zeroed record with its keys only, or with everything.
template <class Record, class Sdr>
int fillSensor(const SensorClass<Record, Sdr>& sensorClass, Record& record, const Sdr& sdr,
               const char* systemName, SensorReader* reader) {
    SensorRecord& common = commonOf(record);
    setHostedKeys(common, hostClass, systemName, sensorClass.name);
    if (reader == nullptr) {
        copyText(common.DeviceID, commonOf(sdr).deviceId);
        return 0;
    }
    if (sensorClass.fill(&sdr, &record) != 0)
        return -1;
    // An unreadable sensor has a record all the same, which says so.
    sensorClass.publish(record, reader->read(common));
    return 0;
}

// Fills a record for each sensor, which `place` finds room for and `take` accepts. Paths need neither a session nor
// a reading.
template <class Record, class Sdr, class Place, class Take>
int forEachSensor(const SensorClass<Record, Sdr>& sensorClass, Detail detail, Place place, Take take) {
    char systemName[256] = "";
    Rows<Sdr> sdrs;
    if (PH_GetHostSystemName(systemName) != 0 || !sdrs.read(sensorClass.getAll))
        return -1;
    const bool reads = detail == Detail::All && !sdrs.all().empty();
    SensorReader reader;
    if (reads && !reader.open())
        return -1;
    if (reads) {
        std::vector<std::uint8_t> numbers; // each once where it stands behind itself, as it is read
        for (const Sdr& sdr : sdrs.all())
            if (numbers.empty() || numbers.back() != commonOf(sdr).sensorNumber)
                numbers.push_back(commonOf(sdr).sensorNumber);
        reader.announce(numbers);
    }
    for (const Sdr& sdr : sdrs.all()) {
        Record* const record = place();
        if (record == nullptr ||
            fillSensor(sensorClass, *record, sdr, systemName, reads ? &reader : nullptr) != 0 ||
            !take(*record))
            return -1;
    }
    return 0;
}

template <class Record, class Sdr>
int enumerateSensors(const SensorClass<Record, Sdr>& sensorClass, RecordArray<Record>& sensors,
                     Detail detail) {
    return forEachSensor(
        sensorClass, detail, [&] { return sensors.append(); }, [](const Record&) { return true; });
}

// The next sensor is read while an instance is made of one.
template <class Record, class Sdr>
int streamSensors(const SensorClass<Record, Sdr>& sensorClass, std::span<const Property> properties,
                  const std::function<bool(const Record&)>& take, Detail detail) {
    RecordStore room(nullptr, 0, sizeof(Record), properties);
    RecordArray<Record> one(room);
    return forEachSensor(
        sensorClass, detail, [&] { return one.append(); },
        [&](const Record& record) {
            const bool isTaken = take(record);
            one.removeLast();
            return isTaken;
        });
}

template <class Record, class Sdr>
int getSensor(const SensorClass<Record, Sdr>& sensorClass, RecordArray<Record>& sensors,
              CMPIString** keyValues) {
    const char* deviceId = CMGetCharsPtr(keyValues[deviceIdKey], nullptr);
    char systemName[256] = "";
    if (deviceId == nullptr || PH_GetHostSystemName(systemName) != 0)
        return -1;
    const HeapPtr<Sdr> sdr = storedRow(sensorClass.getOne, deviceId);
    SensorReader reader;
    if (sdr == nullptr || !reader.open())
        return -1;
    Record* const record = sensors.append();
    return record != nullptr ? fillSensor(sensorClass, *record, *sdr, systemName, &reader) : -1;
}

} // namespace ph
