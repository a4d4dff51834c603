// Power management services of every BMC, which IPMI does not describe.
#pragma once

#include <platform/smash_db_power.h>

#include <span>

namespace smash {

std::span<const PowerServiceRow> powerServices();
std::span<const PowerCapabilitiesRow> powerCapabilities();

} // namespace smash
