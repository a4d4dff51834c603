// From raw readings to numbers (IPMI 2.0, 36.3).
#pragma once

#include <cstdint>

namespace ph {

// Conversion factors of an SDR.
struct Conversion {
    std::int32_t analogFormat; // 0 unsigned, 1 one's complement, 2 two's complement
    std::int32_t m;
    std::int32_t b;
    std::int32_t exponents; // bits 3 to 0 K1, bits 7 to 4 K2
};

// Computes (m * x + b * 10^K1) * 10^K2. Returns false for a format that is not analog; the result is the raw
// value then.
bool convert(const Conversion& conversion, std::int32_t raw, float& result);

} // namespace ph
