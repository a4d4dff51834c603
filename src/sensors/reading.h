// Live readings, and what they say of the sensor.
#pragma once

#include "provider_helper/sensors.h"
#include "Utility/back-ends/back_ends.h"
#include "Utility/values/dmtf_values.h"
#include "Utility/values/record_fields.h"

#include <cstdint>
#include <cstring>
#include <vector>

namespace ph {

enum class ReadingAvailability { Failed, Unavailable, Available };

struct Reading {
    ReadingAvailability availability = ReadingAvailability::Failed;
    CIM_SensorReading answer{};
};

Reading readSensor(IPMI20_SESSION_T* session, std::uint8_t number);

struct Health {
    std::uint16_t healthState; // DMTF
    int operationalStatus;     // DMTF
};
Health healthOf(const Reading& reading);

// Reads the sensors of one request over one session. Rows of one sensor, which stand behind each other, share
// its reading: their states belong together, and it costs one message.
class SensorReader {
public:
    bool open() { return session_.open(); }
    // Says which sensors will be read, in this order.
    void announce(const std::vector<std::uint8_t>& numbers);
    const Reading& read(const SensorRecord& sensor);
    const Reading& read(std::uint8_t number);
    IPMI20_SESSION_T* session() { return session_.get(); }

private:
    IpmiSession session_;
    int lastNumber_ = -1;
    Reading last_;
};

// Sets what a reading says; `judge` finds the CurrentState from an answer. Returns -1 when the reading
// failed.
template <class Judge>
int publishReading(SensorRecord& sensor, const Reading& reading, Judge judge) {
    const Health health = healthOf(reading);
    sensor.HealthState = health.healthState;
    setList(sensor.OperationalStatus, {health.operationalStatus});
    if (reading.availability == ReadingAvailability::Failed)
        return -1;
    if (reading.availability == ReadingAvailability::Available)
        judge(reading.answer);
    else
        copyText(sensor.CurrentState, "Unknown");
    if (std::strcmp(sensor.CurrentState, "Unknown") == 0)
        sensor.EnabledState = EnabledState::NotApplicable;
    return 0;
}

int publishDiscrete(SensorRecord& sensor, const Reading& reading);

} // namespace ph
