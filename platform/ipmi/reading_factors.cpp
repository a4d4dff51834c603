#include "ipmi/reading_factors.h"

#include <algorithm>
#include <cmath>
#include <limits>

namespace ipmi {
namespace {

int operand(AnalogFormat format, std::uint8_t raw) {
    const bool isNegative = (raw & 0x80) != 0;
    switch (format) {
    case AnalogFormat::OnesComplement:
        return isNegative ? raw - 0xFF : raw;
    case AnalogFormat::TwosComplement:
        return isNegative ? raw - 0x100 : raw;
    default:
        return raw;
    }
}

// IPMI 2.0 table 43-1, byte 24.
double linearize(unsigned function, double x) {
    switch (function) {
    case 0x01:
        return std::log(x);
    case 0x02:
        return std::log10(x);
    case 0x03:
        return std::log2(x);
    case 0x04:
        return std::exp(x);
    case 0x05:
        return std::pow(10.0, x);
    case 0x06:
        return std::exp2(x);
    case 0x07:
        return 1 / x;
    case 0x08:
        return x * x;
    case 0x09:
        return x * x * x;
    case 0x0A:
        return std::sqrt(x);
    case 0x0B:
        return std::cbrt(x);
    default:
        return x;
    }
}

} // namespace

double ReadingFactors::value(std::uint8_t raw) const {
    const double sum = m * operand(format, raw) + b * std::pow(10.0, bExponent);
    return linearize(linearization, sum * std::pow(10.0, resultExponent));
}

std::optional<std::uint8_t> ReadingFactors::raw(double wanted) const {
    double least = std::numeric_limits<double>::infinity();
    double greatest = -least;
    double distance = least;
    std::uint8_t nearest = 0;
    for (unsigned candidate = 0; candidate <= 0xFF; ++candidate) {
        const double found = value(static_cast<std::uint8_t>(candidate));
        if (!std::isfinite(found))
            continue;
        least = std::min(least, found);
        greatest = std::max(greatest, found);
        if (std::abs(found - wanted) < distance) {
            distance = std::abs(found - wanted);
            nearest = static_cast<std::uint8_t>(candidate);
        }
    }
    // A limit as people write it may differ from the computed one in its last digits.
    const double rounding = 1e-9 * std::max(std::abs(least), std::abs(greatest));
    if (!(wanted >= least - rounding && wanted <= greatest + rounding))
        return std::nullopt;
    return nearest;
}

std::uint8_t ReadingFactors::leastRaw() const {
    return format == AnalogFormat::OnesComplement || format == AnalogFormat::TwosComplement ? 0x80 : 0x00;
}

std::uint8_t ReadingFactors::greatestRaw() const {
    return format == AnalogFormat::OnesComplement || format == AnalogFormat::TwosComplement ? 0x7F : 0xFF;
}

} // namespace ipmi
