// States of threshold sensors and of sensors with generic event/reading types (IPMI 2.0, table 42-2).
#include "provider_helper/tables.h"
#include "tables/row_text.h"

#include <cstddef>
#include <iterator>

static_assert(sizeof(PHGenericState) == 524 && offsetof(PHGenericState, name) == 12);

constexpr char DMTF_PossibleStates[][20] = {"Good", "Bad", "Unknown"};
static_assert(std::size(DMTF_PossibleStates) == 3 && DMTF_PossibleStates[2][0] != 0);

constexpr char DMTF_IPMI_Analog_Possible_States[][30] = {
    "Lower Non-Critical", "Lower Critical", "Lower Fatal",
    "Upper Non-Critical", "Upper Critical", "Upper Fatal",
};
static_assert(std::size(DMTF_IPMI_Analog_Possible_States) == 6 &&
              DMTF_IPMI_Analog_Possible_States[5][0] != 0);

namespace {

// Rows of DMTF_PossibleStates.
constexpr uint32_t good = 0;
constexpr uint32_t bad = 1;
constexpr uint32_t unknown = 2;

// The compiler must not make constants of the rows after all.
[[gnu::noinline]] PHGenericState state(uint32_t eventReadingType, uint32_t stateMask, uint32_t dmtfState,
                                       ph::RowText<ph::textSize<PHGenericState>> name) noexcept {
    PHGenericState row{eventReadingType, stateMask, dmtfState, {}};
    name.copyTo(row.name);
    return row;
}

} // namespace

const PHGenericState ipmi_cim_Possible_States_Mapping[45] = {
    state(0x02, 0x001, unknown, "Transition to Idle"),
    state(0x02, 0x002, good, "Transition to Active"),
    state(0x02, 0x004, good, "Transition to Busy"),
    state(0x03, 0x001, unknown, "State Deasserted"),
    state(0x03, 0x002, unknown, "State Asserted"),
    state(0x04, 0x001, good, "Predictive Failure deasserted"),
    state(0x04, 0x002, bad, "Predictive Failure asserted"),
    state(0x05, 0x001, good, "Limit Not Exceeded"),
    state(0x05, 0x002, bad, "Limit Exceeded"),
    state(0x06, 0x001, good, "Performance Met"),
    state(0x06, 0x002, bad, "Performance Lags"),
    state(0x07, 0x001, good, "transition to OK"),
    state(0x07, 0x002, bad, "transition to Non-Critical from OK"),
    state(0x07, 0x004, bad, "transition to Critical from less severe"),
    state(0x07, 0x008, bad, "transition to Non-recoverable from less severe"),
    state(0x07, 0x010, good, "transition to Non-Critical from more severe"),
    state(0x07, 0x020, bad, "transition to Critical from Non-recoverable"),
    state(0x07, 0x040, bad, "transition to Non-recoverable"),
    state(0x07, 0x080, unknown, "Monitor"),
    state(0x07, 0x100, unknown, "Informational"),
    state(0x08, 0x001, unknown, "Device Removed/Device Absent"),
    state(0x08, 0x002, unknown, "Device Inserted/Device Present"),
    state(0x09, 0x001, unknown, "Device Disabled"),
    state(0x09, 0x002, unknown, "Device Enabled"),
    state(0x0A, 0x001, good, "transition to Running"),
    state(0x0A, 0x002, unknown, "transition to In Test"),
    state(0x0A, 0x004, unknown, "transition to Power Off"),
    state(0x0A, 0x008, good, "transition to On Line"),
    state(0x0A, 0x010, unknown, "transition to Off Line"),
    state(0x0A, 0x020, unknown, "transition to Off Duty"),
    state(0x0A, 0x040, unknown, "transition to Degraded"),
    state(0x0A, 0x080, good, "transition to Power Save"),
    state(0x0A, 0x100, bad, "Install Error"),
    state(0x0B, 0x001, good, "Fully Redundant"),
    state(0x0B, 0x002, bad, "Redundancy Lost"),
    state(0x0B, 0x004, good, "Redundancy Degraded"),
    state(0x0B, 0x008, good, "Non-redundant:Sufficient Resources from Redundant"),
    state(0x0B, 0x010, good, "Non-redundant:Sufficient Resources from Insufficient Resources"),
    state(0x0B, 0x020, bad, "Non-redundant:Insufficient Resources"),
    state(0x0B, 0x040, good, "Redundancy Degraded from Fully Redundant"),
    state(0x0B, 0x080, good, "Redundancy Degraded from Non Redundant"),
    state(0x0C, 0x001, unknown, "D0 Power State"),
    state(0x0C, 0x002, unknown, "D1 Power State"),
    state(0x0C, 0x004, unknown, "D2 Power State"),
    state(0x0C, 0x008, unknown, "D3 Power State"),
};
