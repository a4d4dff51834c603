// The request that exports an indication (DSP0200, ExportIndication).
#pragma once

#include <cmpift.h>
#include <string>

namespace interop {

// Each message has an ID of its own. Throws as addInstance does.
std::string exportMessage(const CMPIInstance* indication);

} // namespace interop
