// Requests to both sensor classes on the fake platform.
#pragma once

#include "class_requests.h"
#include "fake_platform.h"
#include "provider_helper/sensors.h"

#include <cstdio>
#include <gmock/gmock.h>

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

// The property's value as text, "<none>" when the instance does not have it.
inline std::string textOf(const broker::Instance& instance, std::string_view property) {
    const broker::Value* value = broker::find(instance.properties, property);
    return value != nullptr ? broker::toText(*value) : "<none>";
}

class SensorClasses : public ::testing::Test {
protected:
    void SetUp() override { platform = {}; }
    void TearDown() override {
        EXPECT_EQ(platform.openSessions, 0);
        EXPECT_EQ(platform.openHandles, 0);
        EXPECT_EQ(broker.liveObjects(), 0U);
    }

    // The only sensor by its keys, whatever its reading.
    broker::Instance only(const ClassRequests& requests) const {
        const broker::Reply names = requests.names();
        EXPECT_EQ(names.paths.size(), 1U) << names.message;
        const broker::Reply reply = requests.get(names.paths.at(0));
        EXPECT_EQ(reply.instances.size(), 1U) << reply.message;
        return reply.instances.at(0);
    }

    broker::Broker broker;
    ClassRequests discrete{broker, PH_CLASS_FUNCTIONS(Sensor)};
    ClassRequests numeric{broker, PH_CLASS_FUNCTIONS(NumericSensor)};
};
