// What fans, power supplies and processors share: their properties, and how records come from the database and from sensors.
#pragma once

#include "provider_helper/devices.h"
#include "sensors/reading.h"
#include "tables/sensor_names.h"
#include "Utility/engine/class_family.h"
#include "Utility/engine/hosted_element.h"

#include <cstring>

namespace ph {

inline constexpr const char* entityDeviceKeys[4] = {"SystemCreationClassName", "SystemName",
                                                    "CreationClassName", "DeviceID"};
inline constexpr std::size_t entityDeviceIdKey = 3;

inline constexpr Property entityDeviceProperties[] = {
    PH_KEY(EntityDeviceRecord, SystemCreationClassName), PH_KEY(EntityDeviceRecord, SystemName),
    PH_KEY(EntityDeviceRecord, CreationClassName),       PH_KEY(EntityDeviceRecord, DeviceID),
    PH_PROPERTY(EntityDeviceRecord, ElementName),        PH_PROPERTY(EntityDeviceRecord, Availability),
    PH_PROPERTY(EntityDeviceRecord, EnabledState),       PH_PROPERTY(EntityDeviceRecord, RequestedState),
    PH_PROPERTY(EntityDeviceRecord, HealthState),        PH_PROPERTY(EntityDeviceRecord, OperationalStatus),
};

struct EntityDeviceId {
    char text[sizeof(EntityDeviceRecord::DeviceID)];
};
EntityDeviceId idOf(const EntityDeviceRow& row);

// These fill DeviceID and texts, and what is so before any sensor was read.
void fillDevice(const char* deviceId, const char* name, EntityDeviceRecord& device);
void fillEntityDevice(const EntityDeviceRow& row, EntityDeviceRecord& device);

// Reads the sensors of one request over one session.
class DeviceReader {
public:
    bool isOpen() const { return isOpen_; }
    bool open() { return isOpen_ = sdrs_.read(db_get_all_compact_sdrs) && sensors_.open(); }

    // The health of a fan comes from its tachometer, that of a supply from its discrete sensors.
    void readTachometer(const EntityDeviceRow& row, EntityDeviceRecord& device);
    void rollUp(const EntityDeviceRow& row, EntityDeviceRecord& device);
    // Sets what follows from the health, and from whether the device is installed.
    void readState(const EntityDeviceRow& row, EntityDeviceRecord& device);

private:
    bool isAbsent(const EntityDeviceRow& row);

    Rows<CompactSdr> sdrs_;
    SensorReader sensors_;
    bool isOpen_ = false;
};

template <class Record>
struct EntityDeviceClass {
    const char* name;
    int (*fill)(const EntityDeviceRow& row, SMASH_DB_HANDLE database, Record& record); // which is open
    void (DeviceReader::*readHealth)(const EntityDeviceRow&, EntityDeviceRecord&);
    void (*finish)(Record& record) = nullptr; // what follows from the state that was read
};

// Appends the devices of the class, or the one with `onlyId`. Paths need neither a session nor a reading.
template <class Record>
int enumerateEntityDevices(const EntityDeviceClass<Record>& deviceClass, RecordArray<Record>& devices,
                           Detail detail, const char* onlyId = nullptr) {
    char systemName[256] = "";
    Database database;
    Rows<EntityDeviceRow> rows;
    if (PH_GetHostSystemName(systemName) != 0 || !database.open() ||
        !rows.read(database.get(), db_get_all_entity_devices))
        return -1;
    DeviceReader reader;
    for (const EntityDeviceRow& row : rows.all()) {
        const EntityDeviceId id = idOf(row);
        if (std::strcmp(mappingOf(row.entityId).logicalClass, deviceClass.name) != 0 ||
            (onlyId != nullptr && std::strcmp(id.text, onlyId) != 0))
            continue;
        Record* record = devices.append();
        if (record == nullptr)
            return -1;
        EntityDeviceRecord& device = record->device;
        setHostedKeys(device, hostClass, systemName, deviceClass.name);
        copyText(device.DeviceID, id.text);
        if (detail == Detail::Names)
            continue;
        if (deviceClass.fill(row, database.get(), *record) != 0 || (!reader.isOpen() && !reader.open()))
            return -1;
        (reader.*deviceClass.readHealth)(row, device);
        reader.readState(row, device);
        if (deviceClass.finish != nullptr)
            deviceClass.finish(*record);
    }
    return 0;
}

template <class Record>
int getEntityDevice(const EntityDeviceClass<Record>& deviceClass, RecordArray<Record>& devices,
                    CMPIString** keyValues) {
    const char* deviceId = CMGetCharsPtr(keyValues[entityDeviceIdKey], nullptr);
    return deviceId != nullptr ? enumerateEntityDevices(deviceClass, devices, Detail::All, deviceId) : -1;
}

} // namespace ph
