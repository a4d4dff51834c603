#include "ipmi-view/chassis_status.h"

#include "ipmi/command.h"

namespace view {
namespace {

// IPMI 2.0 table 28-3. Bits 7 to 4 of the last byte tell of front panel buttons.
constexpr ChassisCondition conditions[] = {
    {"Power overload", &ChassisStatus::power, 0x02}, {"Power interlock", &ChassisStatus::power, 0x04},
    {"Power fault", &ChassisStatus::power, 0x08},    {"Power control fault", &ChassisStatus::power, 0x10},
    {"Intrusion", &ChassisStatus::state, 0x01},      {"Front panel lockout", &ChassisStatus::state, 0x02},
    {"Drive fault", &ChassisStatus::state, 0x04},    {"Cooling fault", &ChassisStatus::state, 0x08},
};

constexpr const char* restorePolicies[] = {"off", "previous", "on", "unknown"};

constexpr const char* powerEvents[] = {"AC failed", "overload", "interlock", "power fault", "command"};

} // namespace

const char* ChassisStatus::restorePolicy() const {
    return restorePolicies[power >> 5 & 0x03];
}

std::vector<const char*> ChassisStatus::lastEvents() const {
    std::vector<const char*> names;
    for (unsigned bit = 0; const char* name : powerEvents)
        if ((lastEvent >> bit++ & 1) != 0)
            names.push_back(name);
    return names;
}

std::span<const ChassisCondition> chassisConditions() {
    return conditions;
}

ChassisStatus readChassisStatus(ipmi::Transport& bmc) {
    const auto answer = ipmi::run(bmc, ipmi::command::getChassisStatus);
    auto reader = answer.reader();
    ChassisStatus status;
    status.power = reader.u8();
    status.lastEvent = reader.u8();
    status.state = reader.u8();
    answer.verify(reader);
    return status;
}

void controlChassis(ipmi::Transport& bmc, ipmi::ChassisControl control) {
    ipmi::run(bmc, ipmi::command::chassisControl, {static_cast<std::uint8_t>(control)});
}

} // namespace view
