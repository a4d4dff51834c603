// Sensor device commands (IPMI 2.0 35).
#include "virtual-bmc/sensors/sensor_records.h"
#include "virtual-bmc/state/state.h"

namespace vbmc {
namespace {

namespace completion = ipmi::completion;

std::uint8_t getSensorReadingFactors(State& state, const Sensors::Slot& slot, ipmi::Reader&,
                                     ipmi::Writer& answer) {
    const Sensor& sensor = state.get<Sensors>().sensor(slot);
    if (!sensor.isAnalog())
        return completion::illegalForSensorOrRecord;
    constexpr std::uint8_t noOther = 0xFF; // the factors hold for all readings
    answer.u8(noOther);
    writeFactors(answer, sensor.analog);
    return completion::success;
}

std::uint8_t setSensorHysteresis(State& state, const Sensors::Slot& slot, ipmi::Reader& request,
                                 ipmi::Writer&) {
    auto& sensor = state.edit<Sensors>().sensor(slot);
    if (!sensor.isAnalog())
        return completion::illegalForSensorOrRecord;
    request.skip(1); // mask, FFh
    sensor.thresholds.positiveHysteresis = request.u8();
    sensor.thresholds.negativeHysteresis = request.u8();
    return completion::success;
}

std::uint8_t getSensorHysteresis(State& state, const Sensors::Slot& slot, ipmi::Reader&,
                                 ipmi::Writer& answer) {
    const Sensor& sensor = state.get<Sensors>().sensor(slot);
    if (!sensor.isAnalog())
        return completion::illegalForSensorOrRecord;
    answer.u8(sensor.thresholds.positiveHysteresis).u8(sensor.thresholds.negativeHysteresis);
    return completion::success;
}

std::uint8_t setSensorThresholds(State& state, const Sensors::Slot& slot, ipmi::Reader& request,
                                 ipmi::Writer&) {
    auto& thresholds = state.edit<Sensors>().sensor(slot).thresholds;
    const unsigned mask = request.u8();
    if (!thresholds.isSettable || thresholds.mask() == 0)
        return completion::illegalForSensorOrRecord;
    if ((mask & ~thresholds.mask()) != 0)
        return completion::invalidDataField;
    for (std::size_t i = 0; i < thresholdCount; ++i) {
        const std::uint8_t raw = request.u8();
        if ((mask >> i & 1) != 0)
            thresholds.levels[i]->raw = raw;
    }
    return completion::success;
}

std::uint8_t getSensorThresholds(State& state, const Sensors::Slot& slot, ipmi::Reader&,
                                 ipmi::Writer& answer) {
    const Sensor& sensor = state.get<Sensors>().sensor(slot);
    if (!sensor.isThreshold())
        return completion::illegalForSensorOrRecord;
    answer.u8(sensor.thresholds.mask());
    for (const auto& level : sensor.thresholds.levels)
        answer.u8(level ? level->raw : 0);
    return completion::success;
}

constexpr std::uint8_t eventsFlag = 0x80;
constexpr std::uint8_t scanningFlag = 0x40;

std::uint8_t enableFlags(const Live& live) {
    return static_cast<std::uint8_t>((live.sendsEvents ? eventsFlag : 0) |
                                     (live.isScanning ? scanningFlag : 0));
}

std::uint8_t setSensorEventEnable(State& state, const Sensors::Slot& slot, ipmi::Reader& request,
                                  ipmi::Writer&) {
    enum Action { Keep, Enable, Disable };
    auto& sensors = state.edit<Sensors>();
    const std::uint16_t supported = sensors.sensor(slot).eventMask();
    Live& live = sensors.live(slot);
    const std::uint8_t flags = request.u8();
    live.sendsEvents = (flags & eventsFlag) != 0;
    live.isScanning = (flags & scanningFlag) != 0;
    const unsigned action = flags >> 4 & 0x03;
    if (action > Disable)
        return completion::invalidDataField;
    for (auto* const mask : {&live.assertionMask, &live.deassertionMask}) {
        // Bytes that the request leaves out select nothing.
        std::uint16_t selected = request.left() > 0 ? request.u8() : 0;
        selected |= static_cast<std::uint16_t>((request.left() > 0 ? request.u8() : 0) << 8);
        if ((selected & ~supported) != 0 && action == Enable)
            return completion::invalidDataField;
        if (action == Enable)
            *mask = static_cast<std::uint16_t>(mask->value_or(supported) | selected);
        else if (action == Disable)
            *mask = static_cast<std::uint16_t>(mask->value_or(supported) & ~selected);
    }
    return completion::success;
}

std::uint8_t getSensorEventEnable(State& state, const Sensors::Slot& slot, ipmi::Reader&,
                                  ipmi::Writer& answer) {
    const auto& sensors = state.get<Sensors>();
    const Live& live = sensors.live(slot);
    const std::uint16_t supported = sensors.sensor(slot).eventMask();
    answer.u8(enableFlags(live))
        .u16(live.assertionMask.value_or(supported))
        .u16(live.deassertionMask.value_or(supported));
    return completion::success;
}

std::uint8_t getSensorReading(State& state, const Sensors::Slot& slot, ipmi::Reader&, ipmi::Writer& answer) {
    const auto& sensors = state.get<Sensors>();
    const Sensor& sensor = sensors.sensor(slot);
    const Live& live = sensors.live(slot);
    if (live.availability == Availability::Unreadable)
        return completion::notPresent;
    const bool isAvailable = live.availability == Availability::Available;
    constexpr std::uint8_t unavailableFlag = 0x20;
    answer.u8(isAvailable && sensor.isAnalog() ? live.raw : 0)
        .u8(static_cast<std::uint8_t>(enableFlags(live) | (isAvailable ? 0 : unavailableFlag)));
    if (sensor.isThreshold()) {
        constexpr std::uint8_t reserved = 0xC0; // reads 1
        answer.u8(static_cast<std::uint8_t>(reserved | (isAvailable ? sensor.crossed(live) : 0)));
    } else {
        constexpr std::uint16_t reserved = 0x8000; // reads 1
        answer.u16(static_cast<std::uint16_t>(reserved | (isAvailable ? live.states.bits : 0)));
    }
    return completion::success;
}

std::uint8_t getSensorType(State& state, const Sensors::Slot& slot, ipmi::Reader&, ipmi::Writer& answer) {
    const Sensor& sensor = state.get<Sensors>().sensor(slot);
    answer.u8(sensor.type).u8(sensor.readingType);
    return completion::success;
}

// A command whose request begins with a sensor's number. `handler` gets the sensor's slot and reads on.
template <std::uint8_t (*handler)(State& state, const Sensors::Slot& slot, ipmi::Reader& request,
                                  ipmi::Writer& answer)>
std::uint8_t ofSensor(State& state, ipmi::Reader request, ipmi::Writer& answer) {
    const auto slot = state.get<Sensors>().find(request.u8());
    return slot ? handler(state, *slot, request, answer) : completion::notPresent;
}

} // namespace

std::span<const Command> Sensors::commands() {
    static constexpr Command table[] = {
        {ipmi::command::getSensorReadingFactors, 2, ofSensor<getSensorReadingFactors>},
        {ipmi::command::setSensorHysteresis, 4, ofSensor<setSensorHysteresis>},
        {ipmi::command::getSensorHysteresis, 2, ofSensor<getSensorHysteresis>},
        {ipmi::command::setSensorThresholds, 8, ofSensor<setSensorThresholds>},
        {ipmi::command::getSensorThresholds, 1, ofSensor<getSensorThresholds>},
        {ipmi::command::setSensorEventEnable, 2, ofSensor<setSensorEventEnable>},
        {ipmi::command::getSensorEventEnable, 1, ofSensor<getSensorEventEnable>},
        {ipmi::command::getSensorReading, 1, ofSensor<getSensorReading>},
        {ipmi::command::getSensorType, 1, ofSensor<getSensorType>},
    };
    return table;
}

} // namespace vbmc
