// Readings of numeric sensors for people.
#pragma once

#include "broker/value.h"

#include <string>
#include <string_view>

namespace phctl {

// Returns "47 degrees C" for CurrentReading = 4700 of a numeric sensor, and likewise for its other
// properties that are readings. Empty for any other property, and where the instance does not say its unit
// (BaseUnits, RateUnits).
std::string readingText(const broker::NamedValues& properties, std::string_view name);

} // namespace phctl
