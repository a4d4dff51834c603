// Provider registration in the forms that object managers read.
#pragma once

#include "schema/class_schema.h"

#include <ostream>
#include <string>
#include <vector>

namespace registration {

// What is registered under which names: served classes, or their subclasses with a vendor's prefix.
struct Registered {
    std::string className;
    const schema::Class* served;
};
using Classes = std::vector<Registered>;

Classes servedClasses();
// For object managers that keep these classes for themselves: PH_X : CIM_X.
Classes prefixedClasses();

// Writes one section per class, as small-footprint object managers read it.
void writeSections(std::ostream& out, const Classes& classes);

// Writes PG_ProviderModule and PG_Provider, as OpenPegasus reads them, and the capabilities for each class.
void writeModule(std::ostream& out);
void writeCapabilities(std::ostream& out, const Classes& classes);

} // namespace registration
