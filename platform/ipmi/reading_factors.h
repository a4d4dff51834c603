// What a raw reading means: the conversion of IPMI 2.0 36.3 and its reverse.
#pragma once

#include <cstdint>
#include <optional>

namespace ipmi {

enum class AnalogFormat : std::uint8_t { Unsigned, OnesComplement, TwosComplement, None };

// Reads a number of so many bits in two's complement, out of the lowest of `value`: M and B have ten, exponents four.
constexpr int signExtend(unsigned value, unsigned bits) {
    const unsigned sign = 1U << (bits - 1);
    return static_cast<int>((value & ((sign << 1) - 1)) ^ sign) - static_cast<int>(sign);
}

// y = L((M x + B 10^bExponent) 10^resultExponent)
struct ReadingFactors {
    AnalogFormat format = AnalogFormat::Unsigned;
    std::uint8_t linearization = 0; // L; 70h and more: the sensor has factors for each reading
    std::int16_t m = 1;             // 10 bits
    std::int16_t b = 0;             // 10 bits
    std::int8_t bExponent = 0;      // 4 bits
    std::int8_t resultExponent = 0; // 4 bits

    // Both stand in one byte of a record, B's in its lower half.
    void setExponents(unsigned byte) {
        bExponent = static_cast<std::int8_t>(signExtend(byte, 4));
        resultExponent = static_cast<std::int8_t>(signExtend(byte >> 4, 4));
    }

    double value(std::uint8_t raw) const;
    // Finds the raw reading whose value is nearest; nothing for a value out of range.
    std::optional<std::uint8_t> raw(double value) const;

    std::uint8_t leastRaw() const; // what stands for the least and the greatest x
    std::uint8_t greatestRaw() const;
};

} // namespace ipmi
