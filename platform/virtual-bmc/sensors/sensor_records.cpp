#include "virtual-bmc/sensors/sensor_records.h"

#include "virtual-bmc/state/json_fields.h"

#include <algorithm>

namespace vbmc {
namespace {

std::uint8_t lowByte(unsigned value) {
    return static_cast<std::uint8_t>(value);
}

// Bytes 6 to 20, which full and compact records share.
void writeCommon(ipmi::Writer& record, const Sensor& sensor) {
    constexpr std::uint8_t lun = 0;
    constexpr std::uint8_t initialized = 0x7F; // scanning, events, thresholds, hysteresis, type; both enabled
    constexpr unsigned autoRearm = 0x40;
    const auto& thresholds = sensor.thresholds;
    const unsigned thresholdAccess = !sensor.isThreshold() || thresholds.mask() == 0 ? 0
                                     : thresholds.isSettable                         ? 2
                                                                                     : 1;
    const unsigned hysteresisAccess = sensor.isAnalog() ? 2 : 0; // readable, settable
    record.u8(controllerAddress)
        .u8(lun)
        .u8(sensor.number)
        .u8(sensor.entity)
        .u8(sensor.entityInstance)
        .u8(initialized)
        .u8(lowByte(autoRearm | hysteresisAccess << 4 | thresholdAccess << 2))
        .u8(sensor.type)
        .u8(sensor.readingType);
    const std::uint16_t events = sensor.eventMask();
    if (!sensor.isThreshold()) {
        record.u16(events).u16(events).u16(sensor.supportedStates.bits);
        return;
    }
    // Bits 14:12: comparisons with lower (upper) thresholds are in the answer of Get Sensor Reading.
    const unsigned readable = thresholds.mask() != 0 ? thresholds.mask() : sensor.supportedStates.bits & 0x3F;
    const unsigned lower = readable & 0x07;
    const unsigned upper = readable >> 3;
    record.u16(static_cast<std::uint16_t>(events | lower << 12))
        .u16(static_cast<std::uint16_t>(events | upper << 12))
        .u8(lowByte(readable))
        .u8(thresholds.isSettable ? thresholds.mask() : 0);
}

void writeUnits(ipmi::Writer& record, const Analog& analog, AnalogFormat format) {
    record
        .u8(lowByte(static_cast<unsigned>(format) << 6 | analog.rate << 3 | analog.modifierUse << 1 |
                    static_cast<unsigned>(analog.isPercentage)))
        .u8(analog.unit)
        .u8(analog.modifierUnit);
}

// Bytes 21 to 47.
void writeAnalog(ipmi::Writer& record, const Sensor& sensor) {
    const Analog& analog = sensor.analog;
    const ReadingFactors& factors = analog.factors;
    writeUnits(record, analog, sensor.isAnalog() ? factors.format : AnalogFormat::None);
    record.u8(factors.linearization);
    writeFactors(record, analog);
    const auto raw = [](const std::optional<Level>& level, std::uint8_t otherwise) {
        return level ? level->raw : otherwise;
    };
    record
        .u8(lowByte(static_cast<unsigned>(analog.nominal.has_value()) |
                    static_cast<unsigned>(analog.normalMax.has_value()) << 1 |
                    static_cast<unsigned>(analog.normalMin.has_value()) << 2))
        .u8(raw(analog.nominal, 0))
        .u8(raw(analog.normalMax, 0))
        .u8(raw(analog.normalMin, 0))
        .u8(raw(analog.max, factors.greatestRaw()))
        .u8(raw(analog.min, factors.leastRaw()));
    for (const Threshold threshold :
         {Threshold::UpperNonRecoverable, Threshold::UpperCritical, Threshold::UpperNonCritical,
          Threshold::LowerNonRecoverable, Threshold::LowerCritical, Threshold::LowerNonCritical})
        record.u8(raw(sensor.thresholds.levels[static_cast<std::size_t>(threshold)], 0));
    record.u8(sensor.thresholds.positiveHysteresis).u8(sensor.thresholds.negativeHysteresis).u16(0);
}

// Bytes 21 to 30.
void writeShared(ipmi::Writer& record, const Sensor& sensor) {
    const Sharing& sharing = sensor.sharing;
    writeUnits(record, sensor.analog, AnalogFormat::None);
    record.u8(lowByte(static_cast<unsigned>(sharing.isAlphabetic) << 4 | sharing.count))
        .u8(lowByte(static_cast<unsigned>(sharing.entityIncrements) << 7 | sharing.offset))
        .u16(0)  // hysteresis
        .u24(0); // reserved
}

} // namespace

std::uint8_t recordType(const Sensor& sensor) {
    return sensor.record == Sensor::Full ? 0x01 : 0x02;
}

void writeFactors(ipmi::Writer& bytes, const Analog& analog) {
    const ReadingFactors& factors = analog.factors;
    const auto m = static_cast<unsigned>(factors.m) & 0x3FF;
    const auto b = static_cast<unsigned>(factors.b) & 0x3FF;
    const unsigned accuracy = analog.accuracy;
    bytes.u8(lowByte(m))
        .u8(lowByte(m >> 8 << 6 | analog.tolerance))
        .u8(lowByte(b))
        .u8(lowByte(b >> 8 << 6 | (accuracy & 0x3F)))
        .u8(lowByte(accuracy >> 6 << 4 | analog.accuracyExponent << 2))
        .u8(lowByte((static_cast<unsigned>(factors.resultExponent) & 0x0F) << 4 |
                    (static_cast<unsigned>(factors.bExponent) & 0x0F)));
}

void writeIdString(ipmi::Writer& record, std::string_view text) {
    // A length of 1 is reserved.
    std::string padded(text);
    if (padded.size() == 1)
        padded += ' ';
    constexpr unsigned eightBit = 0xC0;
    record.u8(lowByte(eightBit | static_cast<unsigned>(padded.size())));
    for (const char character : padded)
        record.u8(static_cast<std::uint8_t>(character));
}

void checkIdString(const std::string& text, const Place& place) {
    constexpr std::size_t longest = 16;
    if (text.size() > longest)
        fail(place, "it has more than " + std::to_string(longest) + " characters");
    if (std::ranges::any_of(text, [](char character) { return character < ' ' || character > '~'; }))
        fail(place, "it has other than printable ASCII characters");
}

void writeSensor(ipmi::Writer& record, const Sensor& sensor) {
    writeCommon(record, sensor);
    if (sensor.record == Sensor::Full)
        writeAnalog(record, sensor);
    else
        writeShared(record, sensor);
    record.u8(sensor.oem);
    writeIdString(record, sensor.name);
}

} // namespace vbmc
