// DMTF's declarations and what the library serves, put together.
#pragma once

#include "declared_classes.h"

#include <string>
#include <vector>

namespace schema {

// A class as the library's tables or the rows of the associations describe it: its properties and methods
// are all that it serves, inherited ones among them.
std::vector<DeclaredClass> describeServed();

// Adds what is served to what is declared: marks, per class, and a declaration of every feature that no
// superclass declares in that way. Throws std::runtime_error where a superclass is unknown or another one.
void merge(const std::vector<DeclaredClass>& served, DeclaredClasses& classes);

} // namespace schema
