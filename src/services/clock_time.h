// Times of the event log's clock as DMTF datetimes.
#pragma once

#include <cstddef>
#include <cstdint>
#include <optional>

namespace ph {

// A point in time as people read it off a clock.
struct ClockTime {
    std::int64_t seconds; // since 1970-01-01 00:00 by this clock, which is ahead of UTC by:
    int offset;           // minutes

    std::int64_t utcSeconds() const { return seconds - std::int64_t{60} * offset; }
};

// Reads "yyyymmddHHMMSS.mmmmmm+ooo" without its fraction of a second. Returns nothing for an interval, for
// fields that are not significant ("*"), and for what no clock shows.
std::optional<ClockTime> parseClockTime(const char* text);

inline constexpr std::size_t clockTextSize = 96; // bytes that there must be for such a text
// Writes such a text. A time whose offset has more than three digits is written in UTC.
void writeClockTime(ClockTime time, char* text);

} // namespace ph
