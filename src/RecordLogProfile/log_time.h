// SEL times as DMTF datetimes.
#pragma once

#include <cstdint>

namespace ph {

// Converts the times of one enumeration: the present offset from UTC is looked up once.
class LogTime {
public:
    LogTime();
    // Returns false when the C library cannot break the time down. `text` holds 26 characters.
    bool write(std::uint32_t seconds, char* text) const;
    // Returns the SEL time of a point in time that is given in seconds since 1970 UTC.
    std::int64_t at(std::int64_t utcSeconds) const { return utcSeconds + offset_; }

private:
    std::int64_t offset_; // seconds that a SEL time is taken back by
};

} // namespace ph
