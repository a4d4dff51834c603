// What a sensor's CurrentState says of the health of the element it watches.
#include "provider_helper/tables.h"
#include "tables/row_text.h"

#include <cstddef>

static_assert(sizeof(PHHealthState) == 264 && offsetof(PHHealthState, healthState) == 256 &&
              offsetof(PHHealthState, operationalStatus) == 260);

namespace {

// The compiler must not make constants of the rows after all.
[[gnu::noinline]] PHHealthState state(ph::RowText<ph::textSize<PHHealthState>> name, uint32_t healthState,
                                      uint32_t operationalStatus) noexcept {
    PHHealthState row{{}, healthState, operationalStatus};
    name.copyTo(row.name);
    return row;
}

} // namespace

const PHHealthState logdev_health_state_mapping[89] = {
    state("Lower Non-Critical", 15, 3),
    state("Lower Critical", 25, 6),
    state("Lower Fatal", 30, 7),
    state("Upper Non-Critical", 15, 3),
    state("Upper Critical", 25, 6),
    state("Upper Fatal", 30, 7),
    state("Good", 5, 2),
    state("Bad", 15, 6),
    state("Unknown", 0, 0),
    state("Transition to Idle", 5, 9),
    state("Transition to Active", 5, 2),
    state("Transition to Busy", 10, 4),
    state("State Deasserted", 0, 0),
    state("State Asserted", 0, 0),
    state("Predictive Failure deasserted", 5, 2),
    state("Predictive Failure asserted", 10, 5),
    state("Limit Not Exceeded", 5, 2),
    state("Limit Exceeded", 15, 4),
    state("Performance Met", 5, 2),
    state("Performance Lags", 10, 3),
    state("transition to OK", 5, 2),
    state("transition to Non-Critical from OK", 15, 3),
    state("transition to Critical from less severe", 25, 6),
    state("transition to Non-recoverable from less severe", 30, 7),
    state("transition to Non-Critical from more severe", 15, 3),
    state("transition to Critical from Non-recoverable", 25, 6),
    state("transition to Non-recoverable", 30, 7),
    state("Monitor", 5, 2),
    state("Informational", 5, 2),
    state("Device Removed/Device Absent", 10, 12),
    state("Device Inserted/Device Present", 5, 2),
    state("Device Disabled", 10, 15),
    state("Device Enabled", 5, 2),
    state("transition to Running", 5, 2),
    state("transition to In Test", 0, 2),
    state("transition to Power Off", 10, 9),
    state("transition to On Line", 5, 2),
    state("transition to Off Line", 10, 13),
    state("transition to Off Duty", 10, 13),
    state("transition to Degraded", 10, 3),
    state("transition to Power Save", 5, 2),
    state("Install Error", 10, 6),
    state("Fully Redundant", 5, 2),
    state("Redundancy Lost", 15, 6),
    state("Redundancy Degraded", 10, 3),
    state("Non-redundant:Sufficient Resources from Redundant", 5, 2),
    state("Non-redundant:Sufficient Resources from Insufficient Resources", 5, 4),
    state("Non-redundant:Insufficient Resources", 10, 4),
    state("Redundancy Degraded from Fully Redundant", 10, 3),
    state("Redundancy Degraded from Non Redundant", 10, 3),
    state("D0 Power State", 0, 0),
    state("D1 Power State", 0, 0),
    state("D2 Power State", 0, 0),
    state("D3 Power State", 0, 0),
    state("Presence detected Assert", 5, 2),
    state("Presence detected Deassert", 10, 12),
    state("Power Supply Failure detected Assert", 20, 6),
    state("Power Supply Failure detected Deassert", 5, 2),
    state("Predictive Failure Assert", 10, 5),
    state("Predictive Failure Deassert", 5, 2),
    state("Power Supply input lost (AC/DC) Assert", 20, 6),
    state("Power Supply input lost (AC/DC) Deassert", 5, 2),
    state("Power Supply input lost or out-of-range Assert", 20, 6),
    state("Power Supply input lost or out-of-range Deassert", 5, 2),
    state("Power Supply input out-of-range - but present Assert", 10, 2),
    state("Power Supply input out-of-range - but present  Deassert", 5, 2),
    state("Configuration error Assert", 15, 6),
    state("Configuration error Deassert", 5, 2),
    state("Power Off/Power Down Assert", 10, 13),
    state("Power Off/Power Down Deassert", 5, 2),
    state("Power Cycle Assert", 5, 2),
    state("Power Cycle Deassert", 5, 2),
    state("240VA Power Down Assert", 10, 13),
    state("240VA Power Down Deassert", 5, 2),
    state("Interlock Power Down Assert", 10, 13),
    state("Interlock Power Down Deassert", 5, 2),
    state("AC lost Assert", 20, 6),
    state("AC lost Deassert", 5, 2),
    state("Soft Power Control Failure Assert", 20, 6),
    state("Soft Power Control Failure Deassert", 5, 2),
    state("Power Unit Failure detected Assert", 20, 6),
    state("Power Unit Failure detected Deassert", 5, 2),
    state("Entity Present Assert", 5, 2),
    state("Entity Present Deassert", 10, 12),
    state("Entity Absent Assert", 10, 12),
    state("Entity Absent Deassert", 5, 2),
    state("Entity Disabled Assert", 10, 15),
    state("Entity Disabled Deassert", 5, 2),
    state("Normal", 5, 2),
};
