// The registry of event messages.
#pragma once

#include "smash-db/table.h"

#include <cstdint>

namespace smash {

struct EventMessageRow {
    char description[256];
    std::int32_t messageId; // from 1
};
extern const TableOf<EventMessageRow> eventMessageTable;

} // namespace smash
