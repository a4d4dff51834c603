#include "ipmi-view/conversion.h"

#include <algorithm>
#include <cmath>
#include <cstdio>
#include <freeipmi/spec/ipmi-sensor-units-spec.h>

namespace view {
namespace {

const char* unitName(std::uint8_t unit) {
    return unit <= IPMI_SENSOR_UNIT_GRAMS ? ipmi_sensor_units[unit] : "reserved unit";
}

} // namespace

std::string Conversion::unit() const {
    enum ModifierUse { None, Divide, Multiply };
    std::string text = isPercentage() ? "%" : "";
    const unsigned use = units >> 1 & 0x03;
    if (baseUnit != IPMI_SENSOR_UNIT_UNSPECIFIED || use != None)
        text.append(text.empty() ? "" : " ").append(unitName(baseUnit));
    if (use == Divide || use == Multiply)
        text.append(use == Divide ? " / " : " * ").append(unitName(modifierUnit));
    const unsigned rate = units >> 3 & 0x07;
    if (rate > IPMI_SENSOR_RATE_UNIT_NONE && rate <= IPMI_SENSOR_RATE_UNIT_PER_DAY)
        text.append(text.empty() ? "" : " ").append(ipmi_sensor_rate_units[rate]);
    return text == "%" ? "percent" : text;
}

void setFactors(ipmi::ReadingFactors& factors, std::span<const std::uint8_t, 6> bytes) {
    const auto tenBits = [](unsigned low, unsigned high) {
        return static_cast<std::int16_t>(ipmi::signExtend(low | (high & 0xC0) << 2, 10));
    };
    factors.m = tenBits(bytes[0], bytes[1]);
    factors.b = tenBits(bytes[2], bytes[3]);
    factors.setExponents(bytes[5]);
}

std::string readingText(double value) {
    if (!std::isfinite(value))
        return std::isnan(value) ? "nan" : value > 0 ? "inf" : "-inf";
    char text[64];
    if (constexpr double longest = 1e15; std::abs(value) >= longest) {
        std::snprintf(text, sizeof text, "%.15g", value);
        return text;
    }
    if (const auto whole = static_cast<std::int64_t>(value); static_cast<double>(whole) == value)
        return std::to_string(whole);
    int digits = 3;
    double size = std::abs(value);
    while (size > 0 && size < 1 && digits < 12) {
        size *= 10;
        ++digits;
    }
    std::snprintf(text, sizeof text, "%.*f", std::abs(value) < 1 ? digits - 1 : digits, value);
    std::string number = text;
    number.erase(number.find_last_not_of('0') + 1);
    if (number.ends_with('.'))
        number.pop_back();
    return number == "-0" ? "0" : number;
}

} // namespace view
