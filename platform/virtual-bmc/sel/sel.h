// The system event log (IPMI 2.0 31). Its records lie in a file beside the state file.
#pragma once

#include "virtual-bmc/state/part.h"

#include <array>
#include <optional>

namespace vbmc {

class SelFile;
class SensorRef;

struct Sel {
    static constexpr const char* bulkFile = ".sel";
    // 0000h and FFFFh mean the first and the last record. One record more than there are other IDs has room
    // for none but the first place, where 0000h finds it.
    static constexpr std::uint16_t firstId = 0x0001;
    static constexpr std::uint16_t lastId = 0xFFFE;
    static constexpr std::uint16_t largestCapacity = lastId + 1;
    static constexpr std::uint16_t notReserved = 0;

    std::uint16_t capacity = 0x1000; // records
    bool wraps = false;              // a full log drops its oldest record, not the new event
    std::uint8_t largestRead = 16;   // bytes of a record that one Get SEL Entry sends
    std::uint8_t erasureSteps = 0; // how often the progress of an erasure is asked for before it is completed

    // The events that happened so far.
    std::uint32_t head = 0; // slot of the oldest record
    std::uint16_t count = 0;
    std::uint16_t nextId = firstId;
    std::uint32_t lastAddition = unspecifiedTime;
    std::uint32_t lastErasure = unspecifiedTime;
    bool hasDropped = false; // events, for lack of space
    std::uint16_t reservation = notReserved;
    std::uint8_t erasureStepsLeft = 0;
    std::int32_t clockOffset = 0;         // seconds that the log's clock is ahead of the machine's
    std::int16_t utcOffset = noUtcOffset; // minutes that the log's clock is ahead of UTC
    static constexpr std::uint32_t unspecifiedTime = 0xFFFFFFFF;
    static constexpr std::int16_t noUtcOffset = 0x07FF;
    static constexpr std::int16_t mostUtcOffset = 24 * 60;

    static constexpr const char* name = "sel";
    static std::span<const Command> commands();
    void fields(Fields& fields);
    void check(const Place& place) const;
    Json describe(const State& state) const;

    std::uint32_t now() const;
    std::uint32_t at(std::int64_t milliseconds) const; // since 1970, by the log's clock

    // Appends a record with an ID of its own and the present time where its type has a time and it is 0.
    // Returns nothing when the log is full and does not wrap.
    static std::optional<std::uint16_t> add(State& state, const SelFile& file,
                                            std::span<const std::uint8_t, 16> record);
    // Does the same for an event of a sensor, which comes into a state or leaves it. Throws Error.
    static std::optional<std::uint16_t> addEvent(State& state, const SensorRef& sensor, std::uint8_t offset,
                                                 bool isDeassertion);
    // Does the same with all that an event has, and with the time when it happened.
    static std::optional<std::uint16_t> addEvent(State& state, const SensorRef& sensor,
                                                 std::array<std::uint8_t, 3> data, std::uint32_t time,
                                                 bool isDeassertion = false);
    // Appends so many events, of the machine's sensors and of OEM types in turn. Returns how many there was
    // room for.
    static std::size_t fill(State& state, std::size_t count);
    static void clear(State& state);
};

} // namespace vbmc
