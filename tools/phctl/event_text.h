// Events of the event log for people.
#pragma once

#include "broker/value.h"

#include <cstdint>
#include <map>
#include <optional>
#include <span>
#include <string>
#include <string_view>

namespace phctl {

// The numbers by which an event names a sensor.
struct SensorKey {
    std::uint8_t ownerId;
    std::uint8_t ownerLun;
    std::uint8_t number;
    // clang-tidy sees the 0 of a rewritten comparison as a null pointer.
    auto operator<=>(const SensorKey&) const = default; // NOLINT(modernize-use-nullptr)
};
struct SensorLabel {
    std::string name;
    std::uint8_t type; // IPMI 2.0 table 42-3
};
using SensorLabels = std::map<SensorKey, SensorLabel>;

struct EventText {
    std::string time;   // of the BMC's clock; "-" for a record without one
    std::string sensor; // its name, or what is known of it; "-" for a record that is no event
    std::string event;  // "Upper Critical - going high", "OEM record E0h: 01 02 …"
    std::optional<bool> isAssertion;

    std::string state() const { return !isAssertion ? "-" : *isAssertion ? "asserted" : "deasserted"; }
};

EventText describeRecord(std::span<const std::uint8_t, 16> selRecord, const SensorLabels& sensors);

// Returns "CPU1 Temp: Upper Critical - going high, asserted" for RecordData of a CIM_LogEntry, "2024-05-04
// 12:30:40 +02:00" for its CreationTimeStamp. Empty for any other property, and for other values.
std::string logEntryText(const broker::NamedValues& properties, std::string_view name,
                         const SensorLabels& sensors);

} // namespace phctl
