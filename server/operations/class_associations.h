// Which classes are associated with a class, where ObjectName names one (DSP0200, 5.3.2.13 to 5.3.2.16).
#pragma once

#include "operations/operation.h"

namespace server {

// Those whose instances may be associated with the class's own, or with those of its subclasses.
std::vector<const schema::Class*> associatedClasses(const Operation& operation);
// The association classes that do it.
std::vector<const schema::Class*> referringClasses(const Operation& operation);

} // namespace server
