// Rows of sensors as a test wants them, in place of the database's.
#pragma once

#include "platform_calls.h"

#include <algorithm>
#include <cstdio>
#include <cstdlib>
#include <string_view>

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

class SensorRows {
protected:
    SensorRows() {
        PH_STAND_IN(db_get_all_compact_sdrs,
                    [&](auto*, auto** rows, int* count) { return handOut(sensors, rows, *count); });
        PH_STAND_IN(db_get_all_full_sdrs,
                    [&](auto*, auto** rows, int* count) { return handOut(numericSensors, rows, *count); });
        // All of them may be among those of an event.
        PH_STAND_IN(db_get_compact_sdrs_of_event,
                    [&](auto*, int, auto** rows, int* count) { return handOut(sensors, rows, *count); });
        PH_STAND_IN(db_get_full_sdrs_of_event, [&](auto*, int, auto** rows, int* count) {
            return handOut(numericSensors, rows, *count);
        });
        PH_STAND_IN(db_get_compact_sdr,
                    [&](auto*, const char* id, auto** row) { return handOut(sensors, id, row); });
        PH_STAND_IN(db_get_full_sdr,
                    [&](auto*, const char* id, auto** row) { return handOut(numericSensors, id, row); });
    }

    std::vector<CompactSdr> sensors;
    std::vector<FullSdr> numericSensors;

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
