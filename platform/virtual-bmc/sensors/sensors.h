// The sensors: what their data records say, and how they read at the moment.
#pragma once

#include "ipmi/reading_factors.h"
#include "virtual-bmc/state/part.h"
#include "virtual-bmc/virtual_bmc.h"

#include <array>
#include <optional>
#include <string>
#include <vector>

namespace vbmc {

using ipmi::AnalogFormat;
using ipmi::ReadingFactors;

// A raw reading. A number in JSON is in the sensor's unit, a text ("0x50") the raw reading itself.
struct Level {
    std::uint8_t raw = 0;
    std::optional<double> value; // as read, until `resolve`

    void fromJson(const Json& json, const Place& place);
    Json toJson() const;
    void resolve(const ReadingFactors& factors, const Place& place);
};

// State offsets 0 to 14, in JSON an array of them.
struct StateBits {
    std::uint16_t bits = 0;

    void fromJson(const Json& json, const Place& place);
    Json toJson() const;
};

// What a number of the sensor means; bytes 21 to 36 of a full record.
struct Analog {
    ReadingFactors factors;
    std::uint8_t unit = 0; // IPMI 2.0 table 43-15
    std::uint8_t modifierUnit = 0;
    std::uint8_t modifierUse = 0; // 0 none, 1 unit / modifier, 2 unit * modifier
    std::uint8_t rate = 0;        // 0 none, 1 per microsecond … 6 per day
    bool isPercentage = false;
    std::uint8_t tolerance = 0; // half raw steps, 6 bits
    std::uint16_t accuracy = 0; // 10 bits
    std::uint8_t accuracyExponent = 0;
    std::optional<Level> nominal, normalMax, normalMin;
    std::optional<Level> max, min;

    void fields(Fields& fields);
    void resolve(const Place& place);
};

// The thresholds have the order of their bits in masks and comparison status.
enum class Threshold {
    LowerNonCritical,
    LowerCritical,
    LowerNonRecoverable,
    UpperNonCritical,
    UpperCritical,
    UpperNonRecoverable
};
inline constexpr std::size_t thresholdCount = 6;
inline constexpr const char* thresholdNames[] = {"lowerNonCritical", "lowerCritical", "lowerNonRecoverable",
                                                 "upperNonCritical", "upperCritical", "upperNonRecoverable"};

struct Thresholds {
    std::array<std::optional<Level>, thresholdCount> levels;
    bool isSettable = true;
    std::uint8_t positiveHysteresis = 0; // raw steps
    std::uint8_t negativeHysteresis = 0;

    void fields(Fields& fields);
    void resolve(const ReadingFactors& factors, const Place& place);
    std::uint8_t mask() const; // those that the sensor has
};

// A compact record that stands for several sensors of consecutive numbers.
struct Sharing {
    std::uint8_t count = 1;
    bool isAlphabetic = false; // instance modifier: A, B, … instead of numbers
    std::uint8_t offset = 0;   // of the first sensor's modifier
    bool entityIncrements = false;

    void fields(Fields& fields);
};

// How one sensor reads.
struct Live {
    std::uint8_t raw = 0;
    StateBits states; // comparison status where a threshold sensor has no analog reading
    Availability availability = Availability::Available;
    bool isScanning = true;
    bool sendsEvents = true;
    std::optional<std::uint16_t> assertionMask; // as Set Sensor Event Enable left them, else the record's
    std::optional<std::uint16_t> deassertionMask;

    void fields(Fields& fields);
};

struct Sensor {
    enum Record { Full, Compact };

    std::uint8_t number = 0;
    std::string name;
    std::uint8_t type = 1;
    std::uint8_t readingType = 1; // event/reading type code
    Record record = Full;
    std::uint8_t entity = 7; // system board
    std::uint8_t entityInstance = 1;
    Analog analog;
    Thresholds thresholds;
    StateBits supportedStates;
    Sharing sharing;
    std::uint8_t oem = 0;
    std::vector<Live> live; // of each sensor that shares the record

    void fields(Fields& fields);
    void check(const Place& place);

    bool isThreshold() const { return readingType == 0x01; }
    bool isAnalog() const {
        return isThreshold() && record == Full && analog.factors.format != AnalogFormat::None;
    }
    // The masks that the record has at first. A threshold sensor asserts when it goes low below lower
    // thresholds and high above upper ones.
    std::uint16_t eventMask() const;
    // Comparison status of a threshold sensor.
    std::uint8_t crossed(const Live& reading) const;
    std::string instanceName(std::size_t instance) const; // with the modifier of a shared record
};

struct Sensors {
    // Identifies a sensor of the list, and one of those that share its record.
    struct Slot {
        std::size_t sensor;
        std::size_t instance;
    };

    std::vector<Sensor> list;

    static constexpr const char* name = "sensors";
    static std::span<const Command> commands();
    void check(const Place& place);
    Json describe(const State& state) const;

    std::optional<Slot> find(std::uint8_t number) const;
    Slot find(const SensorRef& sensor) const; // throws Error

    Sensor& sensor(const Slot& slot) { return list[slot.sensor]; }
    const Sensor& sensor(const Slot& slot) const { return list[slot.sensor]; }
    Live& live(const Slot& slot) { return list[slot.sensor].live[slot.instance]; }
    const Live& live(const Slot& slot) const { return list[slot.sensor].live[slot.instance]; }

private:
    std::array<std::optional<Slot>, 0xFF> slots_; // by number; a number's first record has its reading
};

} // namespace vbmc
