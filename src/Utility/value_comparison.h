// Equality of CMPI values.
#pragma once

#include <cmpidt.h>
#include <cmpift.h>

namespace ph {

// Two single values are the same: both null, or equal at their type; a string equals the number or boolean it
// reads as. Values of other different types are never equal.
bool compareDataValues(const CMPIData& a, const CMPIData& b);

// The same for arrays too: as many elements, equal in order.
bool sameValue(const CMPIData& a, const CMPIData& b);

// 0, false, 0.0, nothing.
bool isZero(const CMPIData& data);

} // namespace ph
