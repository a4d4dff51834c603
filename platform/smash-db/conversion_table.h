// How readings become numbers. The rows of CIM's sensors leave out what no property of theirs can say; this table
// has it, for the tools of this platform alone.
#pragma once

#include "smash-db/table.h"

namespace smash {

// What a full sensor record says of its raw values, as its bytes have it (IPMI 2.0 table 43-1).
struct SensorConversionRow {
    char source[32];            // the record, as in CompactSdr; identifies the row
    std::uint8_t units;         // byte 21: analog format, rate, use of the modifier unit, percentage
    std::uint8_t baseUnit;      // table 43-15
    std::uint8_t modifierUnit;  // likewise
    std::uint8_t linearization; // byte 24; 70h to 7Fh: each raw value has factors of its own
    std::int32_t m;             // signed 10 bits
    std::int32_t b;             // signed 10 bits
    std::uint8_t exponents;     // bits 7 to 4 of the result, bits 3 to 0 of B, each signed 4 bits
};

extern const TableOf<SensorConversionRow> sensorConversionTable;

} // namespace smash
