#include "ipmi-view/sensors.h"

#include "ipmi/command.h"

namespace view {
namespace {

constexpr std::uint8_t isUnavailable = 0x20;
constexpr std::uint8_t isScanning = 0x40;

// Compares as the BMC would: at or below a lower threshold, at or above an upper one.
std::uint16_t compare(const SensorRow& sensor, double value) {
    unsigned states = 0;
    for (unsigned each = 0; each < thresholdCount; ++each) {
        const double limit = sensor.conversion->value(sensor.thresholds.raw[each]);
        const bool isBeyond = isLowerThreshold(each) ? value <= limit : value >= limit;
        states |= static_cast<unsigned>(sensor.thresholds.has(each) && isBeyond) << each;
    }
    return static_cast<std::uint16_t>(states);
}

// The same sensor with the factors of this raw value.
std::optional<SensorRow> withFactorsOf(ipmi::Transport& bmc, const SensorRow& sensor, std::uint8_t raw) {
    const std::uint8_t request[] = {sensor.number, raw};
    const auto answer = ipmi::ask(bmc, ipmi::command::getSensorReadingFactors, request);
    constexpr std::size_t factors = 6; // behind the next raw value that has factors of its own
    if (answer.code() != ipmi::completion::success || answer.data().size() < 1 + factors)
        return std::nullopt;
    SensorRow with = sensor;
    setFactors(with.conversion->factors, answer.data().subspan<1, factors>());
    return with;
}

} // namespace

Reading decodeReading(const SensorRow& sensor, std::span<const std::uint8_t> answer) {
    ipmi::Reader reader(answer);
    const std::uint8_t code = reader.u8();
    const std::uint8_t raw = reader.u8();
    const std::uint8_t flags = reader.u8();
    if (code != ipmi::completion::success)
        return {.problem = ipmi::describeCompletionCode(code)};
    if (!reader.ok())
        return {.problem = "the answer is too short"};
    if ((flags & isUnavailable) != 0)
        return {.problem = "reading unavailable"};
    if ((flags & isScanning) == 0)
        return {.problem = "scanning disabled"};
    Reading reading;
    if (sensor.conversion) {
        reading.raw = raw;
        reading.value = sensor.conversion->value(raw);
    }
    if (reader.left() == 0 && sensor.isThreshold() && reading.value) {
        reading.states = compare(sensor, *reading.value);
    } else {
        const unsigned low = reader.left() > 0 ? reader.u8() : 0;
        const unsigned high = reader.left() > 0 ? reader.u8() : 0;
        reading.states =
            static_cast<std::uint16_t>(sensor.isThreshold() ? low & 0x3F : low | (high & 0x7F) << 8);
    }
    judge(sensor, reading);
    return reading;
}

void judge(const SensorRow& sensor, Reading& reading) {
    reading.severity = severityOf(sensor.readingType, sensor.type, reading.states);
    reading.events = stateNames(sensor.readingType, sensor.type, reading.states);
}

Reading readSensor(ipmi::Transport& bmc, const SensorRow& sensor) {
    std::array<std::uint8_t, ipmi::maxMessage> bytes{};
    const auto answer = ipmi::ask(bmc, ipmi::command::getSensorReading, std::span(&sensor.number, 1));
    bytes[0] = answer.code();
    std::ranges::copy(answer.data(), bytes.begin() + 1);
    const auto whole = std::span(bytes).first(1 + answer.data().size());
    Reading reading = decodeReading(sensor, whole);
    if (!reading.raw || !sensor.conversion->isNonLinear())
        return reading;
    if (const auto with = withFactorsOf(bmc, sensor, *reading.raw))
        return decodeReading(*with, whole);
    return reading;
}

Thresholds readThresholds(ipmi::Transport& bmc, const SensorRow& sensor) {
    if (sensor.thresholds.mask == 0)
        return sensor.thresholds;
    const auto answer = ipmi::ask(bmc, ipmi::command::getSensorThresholds, std::span(&sensor.number, 1));
    auto reader = answer.reader();
    Thresholds thresholds;
    thresholds.mask = reader.u8() & 0x3F;
    for (std::uint8_t& raw : thresholds.raw)
        raw = reader.u8();
    return answer.code() == ipmi::completion::success && reader.ok() ? thresholds : sensor.thresholds;
}

} // namespace view
