#include "sensors/reading.h"

#include "sensors/device_id.h"

namespace ph {

Reading readSensor(IPMI20_SESSION_T* session, std::uint8_t number) {
    constexpr unsigned unavailable = 0x20;
    Reading reading;
    const bool answered = CIM_GetSensorReading(session, number, &reading.answer, hookTimeout) == 0;
    if (answered && reading.answer.completionCode == 0)
        reading.availability = (reading.answer.flags & unavailable) != 0 ? ReadingAvailability::Unavailable
                                                                         : ReadingAvailability::Available;
    return reading;
}

Health healthOf(const Reading& reading) {
    switch (reading.availability) {
    case ReadingAvailability::Available:
        return {HealthState::OK, OperationalStatus::OK};
    case ReadingAvailability::Unavailable:
        return {HealthState::Unknown, OperationalStatus::InService};
    default:
        return {HealthState::Unknown, OperationalStatus::Unknown};
    }
}

void SensorReader::announce(const std::vector<std::uint8_t>& numbers) {
    if (CIM_ReadSensorsAhead != nullptr && numbers.size() > 1)
        CIM_ReadSensorsAhead(session_.get(), numbers.data(), static_cast<int>(numbers.size()), hookTimeout);
}

const Reading& SensorReader::read(const SensorRecord& sensor) {
    return read(sensorNumber(sensor));
}

const Reading& SensorReader::read(std::uint8_t number) {
    if (number != lastNumber_) {
        last_ = readSensor(session_.get(), number);
        lastNumber_ = number;
    }
    return last_;
}

int publishDiscrete(SensorRecord& sensor, const Reading& reading) {
    return publishReading(sensor, reading, [&](const CIM_SensorReading& answer) {
        PH_Get_Sensor_CurrentState(&sensor, answer.statesLow, answer.statesHigh & 0x7F);
    });
}

} // namespace ph

int PH_Get_Reading_Sensor(IPMI20_SESSION_T* session, SensorRecord* record) {
    return ph::publishDiscrete(*record, ph::readSensor(session, ph::sensorNumber(*record)));
}

int IsSkipUnkwonError(const char* /*deviceId*/, const char* /*source*/, int operationalStatus) {
    return operationalStatus == ph::OperationalStatus::Unknown ? 1 : 0;
}

int PH_Fill_HealthState(IPMI20_SESSION_T* session, uint8_t sensorNumber, uint16_t* healthState,
                        int* operationalStatus) {
    const ph::Reading reading = ph::readSensor(session, sensorNumber);
    const ph::Health health = ph::healthOf(reading);
    *healthState = health.healthState;
    *operationalStatus = health.operationalStatus;
    return reading.availability == ph::ReadingAvailability::Failed ? -1 : 0;
}
