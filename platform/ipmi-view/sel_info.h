// What the BMC tells of its event log as a whole (IPMI 2.0 31.2, 31.3).
#pragma once

#include "ipmi/transport.h"

#include <cstdint>
#include <optional>

namespace view {

struct SelInfo {
    std::uint8_t version = 0; // BCD, the major number in bits 3 to 0: 51h is 1.5
    std::uint16_t entries = 0;
    std::uint16_t freeBytes = 0;    // FFFFh: that many or more
    std::uint32_t lastAddition = 0; // seconds of the log's clock; FFFFFFFFh: never
    std::uint32_t lastErasure = 0;
    bool hasDropped = false; // events were lost because the log was full
    bool canDelete = false;

    struct Allocation {
        std::uint16_t units;    // 0: unspecified
        std::uint16_t unitSize; // bytes; 0: unspecified
        std::uint16_t freeUnits;
        std::uint16_t largestFreeBlock; // units
        std::uint8_t largestRecord;     // units
    };
    std::optional<Allocation> allocation; // of a BMC that tells it

    // The share of the log that is in use; nothing where the BMC does not tell its size.
    std::optional<unsigned> percentUsed() const;
};

// Throws what ipmi::run throws.
SelInfo readSelInfo(ipmi::Transport& bmc);

} // namespace view
