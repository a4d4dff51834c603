// Provider registration in the forms that object managers read.
#pragma once

#include <ostream>

namespace registration {

// One section per class, as small-footprint object managers read it.
void writeSections(std::ostream& out);

// PG_ProviderModule and its companions, as OpenPegasus reads them.
void writeModule(std::ostream& out);

} // namespace registration
