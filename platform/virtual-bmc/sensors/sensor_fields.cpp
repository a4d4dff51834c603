// Sensors in the model and in the state file.
#include "ipmi/sensor_types.h"
#include "virtual-bmc/sensors/sensor_names.h"
#include "virtual-bmc/sensors/sensors.h"
#include "virtual-bmc/state/json_fields.h"

namespace vbmc {
namespace {

constexpr Choice formats[] = {{0, "unsigned"}, {1, "ones-complement"}, {2, "twos-complement"}, {3, "none"}};
constexpr Choice modifierUses[] = {{0, "none"}, {1, "divide"}, {2, "multiply"}};
constexpr Choice rates[] = {{0, "none"}, {1, "us"}, {2, "ms"}, {3, "s"}, {4, "min"}, {5, "h"}, {6, "day"}};
constexpr Choice linearizations[] = {
    {0x00, "linear"}, {0x01, "ln"},        {0x02, "log10"},      {0x03, "log2"},   {0x04, "e"},
    {0x05, "exp10"},  {0x06, "exp2"},      {0x07, "reciprocal"}, {0x08, "square"}, {0x09, "cube"},
    {0x0A, "sqrt"},   {0x0B, "cube-root"}, {0x70, "non-linear"}};
constexpr Choice recordKinds[] = {{Sensor::Full, "full"}, {Sensor::Compact, "compact"}};
constexpr Choice availabilities[] = {{static_cast<int>(Availability::Available), "available"},
                                     {static_cast<int>(Availability::Unavailable), "unavailable"},
                                     {static_cast<int>(Availability::Unreadable), "unreadable"}};

} // namespace

const char* availabilityName(Availability availability) {
    return nameOf(availabilities, static_cast<int>(availability));
}

void Analog::fields(Fields& fields) {
    fields.choice("format", factors.format, formats);
    fields.choice("unit", unit, unitNames(), true);
    fields.choice("modifierUnit", modifierUnit, unitNames(), true);
    fields.choice("modifierUse", modifierUse, modifierUses);
    fields.choice("per", rate, rates);
    fields("percentage", isPercentage);
    fields.choice("linearization", factors.linearization, linearizations, true);
    fields.number("m", factors.m, -512, 511);
    fields.number("b", factors.b, -512, 511);
    fields.number("bExponent", factors.bExponent, -8, 7);
    fields.number("resultExponent", factors.resultExponent, -8, 7);
    fields.number("tolerance", tolerance, 0, 63);
    fields.number("accuracy", accuracy, 0, 1023);
    fields.number("accuracyExponent", accuracyExponent, 0, 3);
    fields("nominal", nominal);
    fields("normalMax", normalMax);
    fields("normalMin", normalMin);
    fields("max", max);
    fields("min", min);
}

void Thresholds::fields(Fields& fields) {
    for (std::size_t i = 0; i < thresholdCount; ++i)
        fields(thresholdNames[i], levels[i]);
    fields("settable", isSettable);
    fields("positiveHysteresis", positiveHysteresis);
    fields("negativeHysteresis", negativeHysteresis);
}

void Sharing::fields(Fields& fields) {
    fields.number("count", count, 1, 15);
    fields("alphabetic", isAlphabetic);
    fields.number("offset", offset, 0, 127);
    fields("entityIncrements", entityIncrements);
}

void Live::fields(Fields& fields) {
    fields("raw", raw);
    fields("states", states);
    fields.choice("availability", availability, availabilities);
    fields("scanning", isScanning);
    fields("events", sendsEvents);
    fields("assertionMask", assertionMask);
    fields("deassertionMask", deassertionMask);
}

void Sensor::fields(Fields& fields) {
    fields.required("number", number);
    fields.required("name", name);
    fields.choice("type", type, sensorTypeNames(), true);
    fields.choice("readingType", readingType, readingTypeNames(), true);
    fields.choice("record", record, recordKinds);
    fields("entity", entity);
    fields("entityInstance", entityInstance);
    fields("analog", analog);
    fields("thresholds", thresholds);
    fields("supportedStates", supportedStates);
    fields("sharing", sharing);
    fields("oem", oem);
    fields("live", live);
    if (!fields.isReading())
        return;
    // A model gives the sensor's first reading without naming its raw value.
    Live first;
    Level reading;
    fields("reading", reading);
    fields("states", first.states);
    fields.choice("availability", first.availability, availabilities);
    reading.resolve(analog.factors, Place{&fields.place(), "reading"});
    first.raw = reading.raw;
    if (live.empty())
        live.assign(sharing.count, first);
}

} // namespace vbmc
