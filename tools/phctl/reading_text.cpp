#include "reading_text.h"

#include "ipmi-view/conversion.h"

#include <algorithm>
#include <freeipmi/spec/ipmi-sensor-units-spec.h>
#include <optional>

namespace phctl {
namespace {

// The properties that are published times 100, whatever UnitModifier says.
constexpr std::string_view readings[] = {
    "CurrentReading",
    "NominalReading",
    "NormalMax",
    "NormalMin",
    "MaxReadable",
    "MinReadable",
    "Hysteresis",
    "Resolution",
    "Tolerance",
    "LowerThresholdNonCritical",
    "UpperThresholdNonCritical",
    "LowerThresholdCritical",
    "UpperThresholdCritical",
    "LowerThresholdFatal",
    "UpperThresholdFatal",
};

std::optional<std::int64_t> integer(const broker::NamedValues& properties, std::string_view name) {
    const broker::Value* value = broker::find(properties, name);
    if (value == nullptr)
        return {};
    if (const auto* number = value->as<std::uint64_t>())
        return static_cast<std::int64_t>(*number);
    if (const auto* number = value->as<std::int64_t>())
        return *number;
    return {};
}

// The number is at index 0 then.
bool isUnknown(const broker::NamedValues& properties) {
    const broker::Value* state = broker::find(properties, "CurrentState");
    const auto* text = state != nullptr ? state->as<std::string>() : nullptr;
    return text != nullptr && *text == "Unknown";
}

} // namespace

std::string readingText(const broker::NamedValues& properties, std::string_view name) {
    if (std::ranges::none_of(readings, [&](std::string_view each) { return broker::sameName(each, name); }))
        return {};
    const auto value = integer(properties, name);
    const auto unit = integer(properties, "BaseUnits");
    if (!value || !unit)
        return {};
    if (broker::sameName(name, "CurrentReading") && isUnknown(properties))
        return {};
    std::string text = view::readingText(static_cast<double>(*value) / 100);
    if (*unit > IPMI_SENSOR_UNIT_UNSPECIFIED && *unit <= IPMI_SENSOR_UNIT_GRAMS)
        text += std::string(" ") + ipmi_sensor_units[*unit];
    const auto rate = integer(properties, "RateUnits").value_or(IPMI_SENSOR_RATE_UNIT_NONE);
    if (rate > IPMI_SENSOR_RATE_UNIT_NONE && rate <= IPMI_SENSOR_RATE_UNIT_PER_DAY)
        text += std::string(" ") + ipmi_sensor_rate_units[rate];
    return text;
}

} // namespace phctl
