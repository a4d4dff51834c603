// Records of sensors, as the functions under test want them.
#pragma once

#include "provider_helper/sensors.h"

#include <cstdio>
#include <cstdlib>
#include <memory>
#include <string>
#include <vector>

struct CleanSensor {
    void operator()(SensorRecord* record) const { PH_Clean_Sensor(&record, 1); }
    void operator()(NumericSensorRecord* record) const { PH_Clean_NumericSensor(&record, 1); }
};
template <class Record>
using RecordPtr = std::unique_ptr<Record, CleanSensor>;

template <class Record>
RecordPtr<Record> makeRecord() {
    return RecordPtr<Record>(static_cast<Record*>(std::calloc(1, sizeof(Record))));
}

// The facts of an SDR that states depend on.
struct SensorFacts {
    int sensorType;       // CIM
    int eventReadingType; // IPMI
    int ipmiSensorType;
    unsigned states; // supported
    const char* offset = "99";
};

inline RecordPtr<SensorRecord> makeSensor(const SensorFacts& facts) {
    auto record = makeRecord<SensorRecord>();
    std::snprintf(record->DeviceID, sizeof(record->DeviceID), "32.7.0.%d.%02x.%s:A name",
                  facts.ipmiSensorType, facts.eventReadingType, facts.offset);
    record->SensorType = static_cast<uint16_t>(facts.sensorType);
    record->eventReadingType = static_cast<uint16_t>(facts.eventReadingType);
    record->ipmiSensorType = static_cast<uint16_t>(facts.ipmiSensorType);
    record->supportedStates = facts.states;
    return record;
}

inline std::vector<std::string> statesOf(const SensorRecord& record) {
    std::vector<std::string> states;
    for (char* const* state = record.PossibleStates; *state != nullptr; ++state)
        states.emplace_back(*state);
    return states;
}
