// Something that arrives in blocks over several commands, and is changed when the last one is there.
#pragma once

#include "virtual-bmc/state/part.h"

#include <vector>

namespace vbmc {

struct PendingBlocks {
    std::vector<std::uint8_t> name; // what it is, as requests begin
    std::vector<std::uint8_t> bytes;

    void fields(Fields& fields);

    // Adds a block that begins at `start`: at 0 it begins anew, else it has to go on with the same. Returns false
    // for one that does not.
    bool add(std::span<const std::uint8_t> what, std::size_t start, std::span<const std::uint8_t> block);
};

} // namespace vbmc
