#include "sensors/reading_conversion.h"

#include "provider_helper/sensors.h"

#include <algorithm>
#include <charconv>
#include <cstdlib>
#include <limits>

namespace ph {
namespace {

enum AnalogFormat { unsignedFormat = 0, onesComplement = 1, twosComplement = 2 };

constexpr int signedNibble(int value) {
    return (value & 0x0F) - ((value & 0x08) << 1);
}

constexpr float powerOfTen(int exponent) {
    float power = 1;
    for (int i = exponent < 0 ? -exponent : exponent; i > 0; --i)
        power *= 10;
    return exponent < 0 ? 1 / power : power;
}

std::int32_t parse(const char* text) {
    using Limits = std::numeric_limits<std::int32_t>;
    return static_cast<std::int32_t>(
        std::clamp<long long>(std::strtoll(text, nullptr, 10), Limits::min(), Limits::max()));
}

constexpr std::size_t decimalSize = 12; // -2147483648

void format(char (&text)[decimalSize], std::int32_t value) {
    *std::to_chars(text, text + decimalSize - 1, value).ptr = '\0';
}

} // namespace

bool convert(const Conversion& conversion, std::int32_t raw, float& result) {
    const bool isNegative = (raw & 0x80) != 0;
    std::int32_t x = raw;
    switch (conversion.analogFormat) {
    case unsignedFormat:
        break;
    case onesComplement:
        x = isNegative ? -(~raw & 0xFF) : raw;
        break;
    case twosComplement:
        x = isNegative ? static_cast<std::int8_t>(raw) : raw;
        break;
    default:
        result = static_cast<float>(raw);
        return false;
    }
    const int bExponent = signedNibble(conversion.exponents);
    const int resultExponent = signedNibble(conversion.exponents >> 4);
    const float sum = static_cast<float>(conversion.m) * static_cast<float>(x) +
                      static_cast<float>(conversion.b) * powerOfTen(bExponent);
    result = sum * powerOfTen(resultExponent);
    return true;
}

} // namespace ph

int PH_ConvertReading(const PHConversionFactors* factors, const char* rawValue, float* result) {
    const ph::Conversion conversion{ph::parse(factors->analogFormat), ph::parse(factors->m),
                                    ph::parse(factors->b), ph::parse(factors->exponents)};
    return ph::convert(conversion, ph::parse(rawValue), *result) ? 0 : -1;
}

float PH_ConvertRawReading(int32_t rawValue, const NumericSensorRecord* record) {
    PHConversionFactors factors;
    ph::format(factors.analogFormat, record->analogFormat);
    ph::format(factors.m, record->m);
    ph::format(factors.b, record->b);
    ph::format(factors.exponents, record->exponents);
    char raw[ph::decimalSize];
    ph::format(raw, rawValue);
    float result = 0;
    PH_ConvertReading(&factors, raw, &result);
    return result;
}
