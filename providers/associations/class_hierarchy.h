// Which class derives from which: a filter that names a class means its subclasses too.
#pragma once

#include "associations/association.h"

namespace associations {

// Names compare without regard to case.
bool isSameName(const char* left, const char* right);

// Whether a class is another, or derives from it. One that is not known derives from none.
bool isA(const char* className, const char* ancestor);

// Where a class is served; what is not known where the elements are.
Placement placementOf(const char* className);

} // namespace associations
