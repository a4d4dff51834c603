#include "ipmi/sensor_types.h"

#include <iterator>

namespace ipmi {
namespace {

constexpr const char* names[] = {
    "Reserved",
    "Temperature",
    "Voltage",
    "Current",
    "Fan",
    "Physical Security",
    "Platform Security Violation Attempt",
    "Processor",
    "Power Supply",
    "Power Unit",
    "Cooling Device",
    "Other Units-based Sensor",
    "Memory",
    "Drive Slot",
    "POST Memory Resize",
    "System Firmware Progress",
    "Event Logging Disabled",
    "Watchdog 1",
    "System Event",
    "Critical Interrupt",
    "Button",
    "Module or Board",
    "Microcontroller or Coprocessor",
    "Add-in Card",
    "Chassis",
    "Chip Set",
    "Other FRU",
    "Cable or Interconnect",
    "Terminator",
    "System Boot Initiated",
    "Boot Error",
    "Base OS Boot",
    "OS Stop",
    "Slot or Connector",
    "System ACPI Power State",
    "Watchdog 2",
    "Platform Alert",
    "Entity Presence",
    "Monitor ASIC",
    "LAN",
    "Management Subsystem Health",
    "Battery",
    "Session Audit",
    "Version Change",
    "FRU State",
};
static_assert(std::size(names) == 0x2D);

} // namespace

const char* sensorTypeName(std::uint8_t type) {
    if (type < std::size(names))
        return names[type];
    return type >= 0xC0 ? "OEM" : "Reserved";
}

} // namespace ipmi
