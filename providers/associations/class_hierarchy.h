// Which class derives from which: a filter that names a class means its subclasses too.
#pragma once

#include "associations/association.h"

namespace associations {

// Names compare without regard to case.
bool isSameName(const char* left, const char* right);

// Whether a class is another, or derives from it. One that is not known derives from none.
bool isA(const char* className, const char* ancestor);

// Returns where a class is served; for one that is not known, the namespace of the elements.
Placement placementOf(const char* className);

} // namespace associations
