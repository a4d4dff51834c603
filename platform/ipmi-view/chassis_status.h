// The state of the chassis as the BMC tells it, and what can be done to the host (IPMI 2.0 28.2, 28.3).
#pragma once

#include "ipmi/chassis_control.h"
#include "ipmi/transport.h"

#include <span>
#include <vector>

namespace view {

// The three bytes of Get Chassis Status that every BMC sends.
struct ChassisStatus {
    std::uint8_t power = 0;
    std::uint8_t lastEvent = 0;
    std::uint8_t state = 0;

    bool isOn() const { return (power & 0x01) != 0; }
    bool hasDriveFault() const { return (state & 0x04) != 0; }
    bool hasCoolingFault() const { return (state & 0x08) != 0; }
    // What the host does when mains power returns: "off", "previous", "on" or "unknown".
    const char* restorePolicy() const;
    // Names why the power changed last, as "overload" or "command"; often there is nothing.
    std::vector<const char*> lastEvents() const;
};

// A condition of the chassis that is there or not: "Power overload", "Drive fault" and so on.
struct ChassisCondition {
    const char* name;
    std::uint8_t ChassisStatus::*byte;
    std::uint8_t mask;

    bool isIn(const ChassisStatus& status) const { return (status.*byte & mask) != 0; }
};
std::span<const ChassisCondition> chassisConditions();

// These throw what ipmi::run throws.
ChassisStatus readChassisStatus(ipmi::Transport& bmc);
void controlChassis(ipmi::Transport& bmc, ipmi::ChassisControl control);

} // namespace view
