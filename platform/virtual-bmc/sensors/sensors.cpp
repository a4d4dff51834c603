#include "virtual-bmc/sensors/sensors.h"

#include "virtual-bmc/sensors/sensor_names.h"
#include "virtual-bmc/sensors/sensor_records.h"
#include "virtual-bmc/state/json_fields.h"

#include <charconv>
#include <cmath>
#include <cstdio>
#include <cstdlib>

namespace vbmc {
namespace {

constexpr std::uint8_t lastNumber = 0xFE; // FFh is reserved
constexpr unsigned stateCount = 15;

constexpr std::uint16_t thresholdBits = 0x3F; // in place of states

std::string wordOf(std::span<const Choice> choices, int code) {
    if (const char* const word = nameOf(choices, code))
        return word;
    char number[8];
    std::snprintf(number, sizeof number, "0x%02X", static_cast<unsigned>(code));
    return number;
}

std::string unitText(const Analog& analog) {
    if (analog.isPercentage)
        return "%";
    std::string text = wordOf(unitNames(), analog.unit);
    if (analog.modifierUse != 0)
        text += (analog.modifierUse == 1 ? "/" : "*") + wordOf(unitNames(), analog.modifierUnit);
    return text;
}

std::string offsetsText(const Json& offsets) {
    std::string text;
    for (const Json& offset : offsets)
        text += (text.empty() ? "" : " ") + offset.dump();
    return text;
}

// Six digits are more than any raw byte has, and fewer than binary fractions show.
double rounded(double value) {
    char text[32];
    std::snprintf(text, sizeof text, "%.6g", value);
    return std::strtod(text, nullptr);
}

void describeReading(const Sensor& sensor, const Live& live, Json& row) {
    if (sensor.isAnalog()) {
        row["raw"] = live.raw;
        if (const double value = sensor.analog.factors.value(live.raw); std::isfinite(value))
            row["value"] = rounded(value);
        row["unit"] = unitText(sensor.analog);
    }
    if (sensor.isThreshold()) {
        Json names = Json::array();
        const unsigned crossed = sensor.crossed(live);
        for (std::size_t i = 0; i < thresholdCount; ++i)
            if ((crossed >> i & 1) != 0)
                names.push_back(thresholdNames[i]);
        row["crossed"] = std::move(names);
    } else {
        row["states"] = live.states.bits;
        row["statesText"] = offsetsText(live.states.toJson());
    }
}

} // namespace

void Level::fromJson(const Json& json, const Place& place) {
    if (json.is_number())
        value = json.get<double>();
    else
        raw = static_cast<std::uint8_t>(readInteger(json, place, 0, 0xFF));
}

Json Level::toJson() const {
    char text[8];
    std::snprintf(text, sizeof text, "0x%02X", raw);
    return text;
}

void Level::resolve(const ReadingFactors& factors, const Place& place) {
    if (!value)
        return;
    const auto found = factors.raw(*value);
    if (!found)
        fail(place, "the sensor has no reading for " + Json(*value).dump());
    raw = *found;
    value.reset();
}

void StateBits::fromJson(const Json& json, const Place& place) {
    requireArray(json, place);
    bits = 0;
    for (std::size_t i = 0; i < json.size(); ++i)
        bits |= static_cast<std::uint16_t>(
            1U << readInteger(json[i], Place{&place, nullptr, i}, 0, stateCount - 1));
}

Json StateBits::toJson() const {
    Json json = Json::array();
    for (unsigned offset = 0; offset < stateCount; ++offset)
        if ((bits >> offset & 1) != 0)
            json.push_back(offset);
    return json;
}

void Analog::resolve(const Place& place) {
    const std::pair<const char*, std::optional<Level>*> levels[] = {{"nominal", &nominal},
                                                                    {"normalMax", &normalMax},
                                                                    {"normalMin", &normalMin},
                                                                    {"max", &max},
                                                                    {"min", &min}};
    for (const auto& [name, level] : levels)
        if (*level)
            (*level)->resolve(factors, Place{&place, name});
}

void Thresholds::resolve(const ReadingFactors& factors, const Place& place) {
    for (std::size_t i = 0; i < thresholdCount; ++i)
        if (levels[i])
            levels[i]->resolve(factors, Place{&place, thresholdNames[i]});
}

std::uint8_t Thresholds::mask() const {
    unsigned mask = 0;
    for (std::size_t i = 0; i < thresholdCount; ++i)
        mask |= static_cast<unsigned>(levels[i].has_value()) << i;
    return static_cast<std::uint8_t>(mask);
}

void Sensor::check(const Place& place) {
    if (number > lastNumber - (sharing.count - 1))
        fail(Place{&place, "number"}, "sensor numbers end at 254");
    checkIdString(name, Place{&place, "name"});
    if (record == Full && sharing.count > 1)
        fail(Place{&place, "sharing"}, "only a compact record can be shared");
    if (record == Compact && (thresholds.mask() != 0 || analog.nominal || analog.max || analog.min))
        fail(place, "a compact record has no analog values");
    analog.resolve(Place{&place, "analog"});
    thresholds.resolve(analog.factors, Place{&place, "thresholds"});
    if (live.size() != sharing.count)
        fail(Place{&place, "live"},
             "there is not one for each of the " + std::to_string(sharing.count) + " sensors of this record");
}

std::uint16_t Sensor::eventMask() const {
    if (!isThreshold())
        return supportedStates.bits;
    constexpr unsigned firstUpper = static_cast<unsigned>(Threshold::UpperNonCritical);
    const unsigned mask = thresholds.mask();
    unsigned events = 0; // two bits a threshold: going low, going high
    for (unsigned i = 0; i < thresholdCount; ++i)
        events |= (mask >> i & 1) << (2 * i + (i < firstUpper ? 0 : 1));
    return static_cast<std::uint16_t>(events);
}

std::uint8_t Sensor::crossed(const Live& reading) const {
    if (!isAnalog())
        return static_cast<std::uint8_t>(reading.states.bits & thresholdBits);
    const double value = analog.factors.value(reading.raw);
    constexpr auto firstUpper = static_cast<std::size_t>(Threshold::UpperNonCritical);
    unsigned crossed = 0;
    for (std::size_t i = 0; i < thresholdCount; ++i) {
        if (!thresholds.levels[i])
            continue;
        const double level = analog.factors.value(thresholds.levels[i]->raw);
        crossed |= static_cast<unsigned>(i < firstUpper ? value <= level : value >= level) << i;
    }
    return static_cast<std::uint8_t>(crossed);
}

// IPMI 2.0 table 43-2, bytes 24 and 25.
std::string Sensor::instanceName(std::size_t instance) const {
    if (sharing.count <= 1)
        return name;
    std::size_t modifier = sharing.offset + instance;
    if (!sharing.isAlphabetic)
        return name + " " + std::to_string(modifier);
    std::string letters; // A to Z, then AA, AB, …
    for (++modifier; modifier > 0; modifier = (modifier - 1) / 26)
        letters.insert(letters.begin(), static_cast<char>('A' + (modifier - 1) % 26));
    return name + " " + letters;
}

void Sensors::check(const Place& place) {
    slots_ = {};
    for (std::size_t i = 0; i < list.size(); ++i)
        for (std::size_t instance = 0; instance < list[i].sharing.count; ++instance) {
            auto& slot = slots_[list[i].number + instance];
            if (!slot)
                slot = Slot{i, instance};
            else if (list[slot->sensor].readingType != list[i].readingType ||
                     list[slot->sensor].isAnalog() != list[i].isAnalog())
                fail(Place{&place, nullptr, i}, "sensor " + std::to_string(list[i].number + instance) +
                                                    " has another kind of reading in an earlier record");
        }
}

Json Sensors::describe(const State&) const {
    Json rows = Json::array();
    for (const Sensor& sensor : list)
        for (std::size_t instance = 0; instance < sensor.sharing.count; ++instance) {
            const auto number = static_cast<std::uint8_t>(sensor.number + instance);
            const Live& reading = live(*find(number));
            Json row = Json::object();
            row["number"] = number;
            row["name"] = sensor.instanceName(instance);
            row["type"] = wordOf(sensorTypeNames(), sensor.type);
            row["readingType"] = wordOf(readingTypeNames(), sensor.readingType);
            row["availability"] = availabilityName(reading.availability);
            if (reading.availability == Availability::Available)
                describeReading(sensor, reading, row);
            rows.push_back(std::move(row));
        }
    return rows;
}

std::optional<Sensors::Slot> Sensors::find(std::uint8_t number) const {
    return number < slots_.size() ? slots_[number] : std::nullopt;
}

Sensors::Slot Sensors::find(const SensorRef& reference) const {
    const std::string& text = reference.text();
    int number = reference.number();
    if (number < 0) {
        std::optional<int> named;
        for (const Sensor& sensor : list)
            for (std::size_t instance = 0; instance < sensor.sharing.count; ++instance)
                if (sensor.instanceName(instance) == text) {
                    const int found = static_cast<int>(sensor.number + instance);
                    if (named && *named != found)
                        throw Error("several sensors are named '" + text + "': " + std::to_string(*named) +
                                    " and " + std::to_string(found) + " among them");
                    named = found;
                }
        if (!named) {
            const bool isHexadecimal = text.starts_with("0x");
            const char* const end = text.data() + text.size();
            int parsed = 0;
            const char* const start = text.data() + (isHexadecimal ? 2 : 0);
            if (start != end && std::from_chars(start, end, parsed, isHexadecimal ? 16 : 10).ptr == end)
                named = parsed;
        }
        if (!named)
            throw Error("there is no sensor '" + text + "'");
        number = *named;
    }
    const auto slot =
        number >= 0 && number <= lastNumber ? find(static_cast<std::uint8_t>(number)) : std::nullopt;
    if (!slot)
        throw Error("there is no sensor " + std::to_string(number));
    return *slot;
}

} // namespace vbmc
