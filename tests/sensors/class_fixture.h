// Requests to both sensor classes, on rows and readings as a test wants them.
#pragma once

#include "managed_bmc.h"
#include "provider_helper/sensors.h"
#include "sensor_rows.h"

// An answer of Get Sensor Reading: scanning and events enabled, reserved bits 1.
inline CIM_SensorReading makeReading(int raw, int states = 0, int flags = 0xC0) {
    return {0, static_cast<uint8_t>(raw), static_cast<uint8_t>(flags), static_cast<uint8_t>(states),
            static_cast<uint8_t>(states >> 8 | 0x80)};
}

class SensorClasses : public ManagedBmc, protected SensorRows {
protected:
    SensorClasses() {
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

    std::map<int, CIM_SensorReading> readings; // by sensor number; the call fails for any other
    ClassRequests discrete{broker, PH_CLASS_FUNCTIONS(Sensor)};
    ClassRequests numeric{broker, PH_CLASS_FUNCTIONS(NumericSensor)};
};
