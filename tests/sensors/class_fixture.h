// Requests to both sensor classes, on rows and readings as a test wants them.
#pragma once

#include "managed_bmc.h"
#include "provider_helper/sensors.h"

#include <cstdio>

inline CompactSdr makeCompactSdr(const char* name, int number, int sensorType, int eventReadingType,
                                 int offset = 99) {
    CompactSdr sdr{};
    std::snprintf(sdr.name, sizeof(sdr.name), "%s", name);
    std::snprintf(sdr.deviceId, sizeof(sdr.deviceId), "32.%d.0.%d.%02x.%d:%s", number, sensorType,
                  eventReadingType, offset, name);
    std::snprintf(sdr.source, sizeof(sdr.source), "SDR record 0x%04x", number);
    sdr.sensorType = static_cast<uint16_t>(sensorType >= 1 && sensorType <= 4 ? sensorType + 1 : 1);
    sdr.ownerId = 32;
    sdr.sensorNumber = static_cast<uint8_t>(number);
    sdr.entityId = 7;
    sdr.entityInstance = 1;
    sdr.ipmiSensorType = static_cast<uint8_t>(sensorType);
    sdr.eventReadingType = static_cast<uint8_t>(eventReadingType);
    sdr.supportedStates = 0x3F;
    return sdr;
}

inline FullSdr makeFullSdr(const char* name, int number) {
    FullSdr sdr{};
    sdr.common = makeCompactSdr(name, number, 0x01, 0x01);
    sdr.m = 1;
    return sdr;
}

// An answer of Get Sensor Reading: scanning and events enabled, reserved bits 1.
inline CIM_SensorReading makeReading(int raw, int states = 0, int flags = 0xC0) {
    return {0, static_cast<uint8_t>(raw), static_cast<uint8_t>(flags), static_cast<uint8_t>(states),
            static_cast<uint8_t>(states >> 8 | 0x80)};
}

class SensorClasses : public ManagedBmc {
protected:
    SensorClasses() {
        PH_STAND_IN(db_get_all_compact_sdrs,
                    [&](auto*, auto** rows, int* count) { return handOut(sensors, rows, *count); });
        PH_STAND_IN(db_get_all_full_sdrs,
                    [&](auto*, auto** rows, int* count) { return handOut(numericSensors, rows, *count); });
        PH_STAND_IN(db_get_compact_sdr,
                    [&](auto*, const char* id, auto** row) { return handOut(sensors, id, row); });
        PH_STAND_IN(db_get_full_sdr,
                    [&](auto*, const char* id, auto** row) { return handOut(numericSensors, id, row); });
        PH_STAND_IN(CIM_GetSensorReading, [&](auto*, uint8_t number, CIM_SensorReading* answer, int) {
            const auto reading = readings.find(number);
            if (reading == readings.end())
                return 1;
            *answer = reading->second;
            return 0;
        });
    }

    // The only sensor by its keys, whatever its reading.
    static broker::Instance only(const ClassRequests& requests) {
        const broker::Reply reply = requests.get(requests.names().paths.at(0));
        EXPECT_EQ(reply.instances.size(), 1U) << reply.message;
        return reply.instances.at(0);
    }
    // The sensors that were read, since this was asked last.
    static std::vector<std::string> readNumbers() {
        auto calls = platformCalls.hooks();
        platformCalls.texts.clear();
        return calls;
    }
    static std::string reading(int number) {
        return "CIM_GetSensorReading(" + std::to_string(number) + ", *, 30)";
    }

    std::vector<CompactSdr> sensors;
    std::vector<FullSdr> numericSensors;
    std::map<int, CIM_SensorReading> readings; // by sensor number; the call fails for any other
    ClassRequests discrete{broker, PH_CLASS_FUNCTIONS(Sensor)};
    ClassRequests numeric{broker, PH_CLASS_FUNCTIONS(NumericSensor)};

private:
    static const CompactSdr& common(const CompactSdr& row) { return row; }
    static const CompactSdr& common(const FullSdr& row) { return row.common; }

    template <class Row>
    static int handOut(const std::vector<Row>& from, Row** rows, int& count) {
        count = static_cast<int>(from.size());
        *rows = from.empty() ? nullptr : static_cast<Row*>(std::malloc(sizeof(Row) * from.size()));
        std::ranges::copy(from, *rows);
        return 0;
    }
    template <class Row>
    static int handOut(const std::vector<Row>& from, const char* deviceId, Row** row) {
        int count = 0;
        for (const Row& candidate : from)
            if (common(candidate).deviceId == std::string_view(deviceId))
                return handOut(std::vector{candidate}, row, count);
        return 1;
    }
};
