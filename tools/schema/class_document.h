// docs/classes.md: what is served, for people.
#pragma once

#include <ostream>

namespace document {

void writeClasses(std::ostream& out);

} // namespace document
