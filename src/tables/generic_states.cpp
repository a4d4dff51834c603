// States of threshold sensors and of sensors with generic event/reading types (IPMI 2.0, table 42-2).
#include "provider_helper/tables.h"

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

} // namespace

constexpr PHGenericState ipmi_cim_Possible_States_Mapping[] = {
    {0x02, 0x001, unknown, "Transition to Idle"},
    {0x02, 0x002, good, "Transition to Active"},
    {0x02, 0x004, good, "Transition to Busy"},
    {0x03, 0x001, unknown, "State Deasserted"},
    {0x03, 0x002, unknown, "State Asserted"},
    {0x04, 0x001, good, "Predictive Failure deasserted"},
    {0x04, 0x002, bad, "Predictive Failure asserted"},
    {0x05, 0x001, good, "Limit Not Exceeded"},
    {0x05, 0x002, bad, "Limit Exceeded"},
    {0x06, 0x001, good, "Performance Met"},
    {0x06, 0x002, bad, "Performance Lags"},
    {0x07, 0x001, good, "transition to OK"},
    {0x07, 0x002, bad, "transition to Non-Critical from OK"},
    {0x07, 0x004, bad, "transition to Critical from less severe"},
    {0x07, 0x008, bad, "transition to Non-recoverable from less severe"},
    {0x07, 0x010, good, "transition to Non-Critical from more severe"},
    {0x07, 0x020, bad, "transition to Critical from Non-recoverable"},
    {0x07, 0x040, bad, "transition to Non-recoverable"},
    {0x07, 0x080, unknown, "Monitor"},
    {0x07, 0x100, unknown, "Informational"},
    {0x08, 0x001, unknown, "Device Removed/Device Absent"},
    {0x08, 0x002, unknown, "Device Inserted/Device Present"},
    {0x09, 0x001, unknown, "Device Disabled"},
    {0x09, 0x002, unknown, "Device Enabled"},
    {0x0A, 0x001, good, "transition to Running"},
    {0x0A, 0x002, unknown, "transition to In Test"},
    {0x0A, 0x004, unknown, "transition to Power Off"},
    {0x0A, 0x008, good, "transition to On Line"},
    {0x0A, 0x010, unknown, "transition to Off Line"},
    {0x0A, 0x020, unknown, "transition to Off Duty"},
    {0x0A, 0x040, unknown, "transition to Degraded"},
    {0x0A, 0x080, good, "transition to Power Save"},
    {0x0A, 0x100, bad, "Install Error"},
    {0x0B, 0x001, good, "Fully Redundant"},
    {0x0B, 0x002, bad, "Redundancy Lost"},
    {0x0B, 0x004, good, "Redundancy Degraded"},
    {0x0B, 0x008, good, "Non-redundant:Sufficient Resources from Redundant"},
    {0x0B, 0x010, good, "Non-redundant:Sufficient Resources from Insufficient Resources"},
    {0x0B, 0x020, bad, "Non-redundant:Insufficient Resources"},
    {0x0B, 0x040, good, "Redundancy Degraded from Fully Redundant"},
    {0x0B, 0x080, good, "Redundancy Degraded from Non Redundant"},
    {0x0C, 0x001, unknown, "D0 Power State"},
    {0x0C, 0x002, unknown, "D1 Power State"},
    {0x0C, 0x004, unknown, "D2 Power State"},
    {0x0C, 0x008, unknown, "D3 Power State"},
};
static_assert(std::size(ipmi_cim_Possible_States_Mapping) == 45 &&
              ipmi_cim_Possible_States_Mapping[44].name[0] != 0);
