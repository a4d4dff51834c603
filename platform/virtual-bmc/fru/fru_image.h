// The bytes of a FRU device.
#pragma once

#include "virtual-bmc/fru/frus.h"

namespace vbmc {

// Common header and the areas that there are. Throws Error, which names a place below that of the FRU, for a
// text or date that has no such form.
std::vector<std::uint8_t> fruImage(const Fru& fru, const Place& place);

} // namespace vbmc
