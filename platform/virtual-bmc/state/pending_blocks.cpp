#include "virtual-bmc/state/pending_blocks.h"

#include "virtual-bmc/state/json_fields.h"

#include <algorithm>

namespace vbmc {

void PendingBlocks::fields(Fields& fields) {
    fields("name", name);
    fields("bytes", bytes);
}

bool PendingBlocks::add(std::span<const std::uint8_t> what, std::size_t start,
                        std::span<const std::uint8_t> block) {
    if (start == 0) {
        name.assign(what.begin(), what.end());
        bytes.clear();
    } else if (!std::ranges::equal(what, name) || bytes.size() != start) {
        return false;
    }
    bytes.insert(bytes.end(), block.begin(), block.end());
    return true;
}

} // namespace vbmc
