// Finds out whether an entity is there, as far as its sensors tell.
#pragma once

#include "ipmi/transport.h"

#include <platform/smash_db_inventory.h>

#include <cstdint>
#include <span>

namespace smash {

enum class Presence { Unknown, Present, Absent };

// Reads those sensors that tell the presence of the entity. Where they contradict each other, it is present.
Presence readPresence(ipmi::Transport& bmc, std::span<const CompactSdr> sensors, std::uint8_t entityId,
                      std::uint8_t entityInstance);

} // namespace smash
