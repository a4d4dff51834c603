#include "smash-db/power_tables.h"

namespace smash {
namespace {

constexpr std::array powerServiceColumns = {
    SMASH_COLUMN(PowerServiceRow, name),
    SMASH_COLUMN(PowerServiceRow, elementName),
    SMASH_COLUMN(PowerServiceRow, operationalStatus),
    SMASH_COLUMN(PowerServiceRow, healthState),
    SMASH_COLUMN(PowerServiceRow, enabledState),
    SMASH_COLUMN(PowerServiceRow, requestedState),
    SMASH_COLUMN(PowerServiceRow, started),
};

constexpr std::array capabilitiesColumns = {
    SMASH_COLUMN(PowerCapabilitiesRow, instanceId),
    SMASH_COLUMN(PowerCapabilitiesRow, elementName),
    SMASH_COLUMN(PowerCapabilitiesRow, powerChangeCapabilities),
    SMASH_COLUMN(PowerCapabilitiesRow, powerStatesSupported),
    SMASH_COLUMN(PowerCapabilitiesRow, requestedPowerStatesSupported),
};

} // namespace

constexpr TableOf<PowerServiceRow> powerServiceTable{"power_service", powerServiceColumns, 1};
constexpr TableOf<PowerCapabilitiesRow> powerCapabilitiesTable{"power_capabilities", capabilitiesColumns, 1};

} // namespace smash
