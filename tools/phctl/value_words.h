// Values in the words of DMTF's value maps.
#pragma once

#include "broker/value.h"

#include <string>
#include <string_view>

namespace phctl {

// Returns "OK" for 5 of HealthState, "OK, Stressed" for an array; what the map does not name is "?" among
// others. Empty where the class has no value map for the property, or it names none of the values.
std::string valueWords(std::string_view className, std::string_view property, const broker::Value& value);

} // namespace phctl
