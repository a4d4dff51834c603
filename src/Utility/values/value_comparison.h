// Equality of CMPI values.
#pragma once

#include <cmpidt.h>
#include <cmpift.h>

namespace ph {

// Returns 1 when the typed getter of `type` reads `data` as `value`, else 0.
int MatchDataValue(const CMPIData& data, CMPIType type, const CMPIValue& value);

// Returns 1 for two single values that are the same: both null, or equal at their type; a string equals the
// number or boolean it reads as. Values of other different types are never equal.
int CompareDataValues(const CMPIData& a, const CMPIData& b);

// Compares arrays too, which have the same number of elements, equal in order.
bool sameValue(const CMPIData& a, const CMPIData& b);

// Tells whether a value is 0, false, 0.0 or null.
bool isZero(const CMPIData& data);

} // namespace ph
