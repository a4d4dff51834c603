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

// (m * x + b * 10^K1) * 10^K2. false for another format: the result is the raw value.
bool convert(const Conversion& conversion, std::int32_t raw, float& result);

} // namespace ph
