// Records of the event log in words (IPMI 2.0 32).
#pragma once

#include <cstdint>
#include <functional>
#include <map>
#include <optional>
#include <span>
#include <string>

namespace view {

// The numbers by which an event names a sensor.
struct SensorKey {
    std::uint8_t ownerId;
    std::uint8_t ownerLun;
    std::uint8_t number;
    // clang-tidy sees the 0 of a rewritten comparison as a null pointer.
    auto operator<=>(const SensorKey&) const = default; // NOLINT(modernize-use-nullptr)
};

struct Quantity {
    double value;
    std::string unit; // empty: none
};

struct SensorLabel {
    std::string name;
    std::uint8_t type;                                       // IPMI 2.0 table 42-3
    std::function<Quantity(std::uint8_t raw)> quantity = {}; // of a sensor with readings
};
using SensorLabels = std::map<SensorKey, SensorLabel>;

// What a sensor's event says, wherever it was found.
struct SensorEvent {
    SensorKey sensor;
    std::optional<std::uint8_t> sensorType; // nothing: that of the label
    std::uint8_t eventType;                 // IPMI 2.0 table 42-1
    std::uint8_t data[3];                   // event data; the state's offset is in bits 3 to 0 of the first
    bool isDeassertion;
};

struct EventText {
    std::string time;       // of the BMC's clock, or "Pre-Init +0:01:07"; "-" for a record without one
    std::string sensor;     // its name, or what is known of it; "-" for a record that is no event
    std::string sensorType; // "-" for a record that is no event
    std::string event;      // "Upper Critical - going high", "OEM record E0h: 01 02 …"
    std::string detail;     // "reading 98 > threshold 95 degrees C"; empty where the event has none
    std::optional<bool> isAssertion;
    std::optional<Quantity> reading, threshold; // of a threshold event that has them

    std::string state() const { return !isAssertion ? "-" : *isAssertion ? "asserted" : "deasserted"; }
    std::string whole() const { return detail.empty() ? event : event + " (" + detail + ')'; }
};

EventText describeEvent(const SensorEvent& event, const SensorLabels& sensors);
EventText describeRecord(std::span<const std::uint8_t, 16> selRecord, const SensorLabels& sensors);

// Says when that is by the log's clock: "2024-05-04 12:30:40", or "Pre-Init +0:01:07" of a clock that counts
// from the BMC's start because nobody has set it (IPMI 2.0 37); "-" for an unspecified time.
std::string logTimeText(std::uint32_t seconds);

} // namespace view
