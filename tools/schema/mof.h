// Class declarations in MOF (DSP0004).
#pragma once

#include "schema/class_schema.h"

#include <ostream>
#include <string_view>
#include <vector>

namespace mof {

using Classes = std::vector<const schema::Class*>;

// Returns the served classes, those above them and those that they refer to; what a declaration names comes
// before it.
Classes selfContained();

// Returns those of them that DMTF's schema lacks.
Classes extension();

// Writes the qualifier types that the declarations need.
void writeQualifierTypes(std::ostream& out);

// Writes the class with what it declares itself. Features that refer to a class beyond `known` are left out.
void writeClass(std::ostream& out, const schema::Class& declared, const Classes& known);

} // namespace mof
