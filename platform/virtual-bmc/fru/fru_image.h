// The bytes of a FRU device.
#pragma once

#include "virtual-bmc/fru/frus.h"

namespace vbmc {

// Common header and the areas that there are. Throws Error, which names a place below `fru`, for a text or
// date that has no such form.
std::vector<std::uint8_t> fruImage(const std::optional<BoardArea>& board,
                                   const std::optional<ProductArea>& product, const Place& fru);

} // namespace vbmc
