// Names of the IPMI sensor types (IPMI 2.0, table 42-3), as captions and descriptions spell them.
#include "tables/row_text.h"
#include "tables/sensor_names.h"

namespace ph {

namespace {

// The compiler must not make constants of the rows after all.
[[gnu::noinline]] SensorTypeName type(std::uint32_t code, RowText<textSize<SensorTypeName>> name) noexcept {
    SensorTypeName row{code, {}};
    name.copyTo(row.name);
    return row;
}

} // namespace

const SensorTypeName sensor_type_names[45] = {
    type(0x00, "Reserved"),
    type(0x01, "Temperature"),
    type(0x02, "Voltage"),
    type(0x03, "Current"),
    type(0x04, "Fan"),
    type(0x05, "ChassisIntrusion"),
    type(0x06, "PlatformSecurityViolation"),
    type(0x07, "Processor"),
    type(0x08, "PowerSupply"),
    type(0x09, "PowerUnit"),
    type(0x0A, "CoolingDevice"),
    type(0x0B, "UnitsBasedSensor"),
    type(0x0C, "Memory"),
    type(0x0D, "DriveSlotOrBay"),
    type(0x0E, "POSTMemoryResize"),
    type(0x0F, "SystemFirmwarePOST"),
    type(0x10, "EventLoggingDisabled"),
    type(0x11, "Watchdog1"),
    type(0x12, "SystemEvent"),
    type(0x13, "CriticalInterrupt"),
    type(0x14, "Button"),
    type(0x15, "ModuleOrBoard"),
    type(0x16, "MicrocontrollerOrCoprocessor"),
    type(0x17, "AddInCard"),
    type(0x18, "Chassis"),
    type(0x19, "Chip Set"),
    type(0x1A, "OtherFRU"),
    type(0x1B, "CableOrInterconnect"),
    type(0x1C, "Terminator"),
    type(0x1D, "SystemBootInitiated"),
    type(0x1E, "BootError"),
    type(0x1F, "OSBoot"),
    type(0x20, "OSCriticalStop"),
    type(0x21, "Slot/Connector"),
    type(0x22, "SystemACPIPowerState"),
    type(0x23, "Watchdog2"),
    type(0x24, "PlatformAlert"),
    type(0x25, "EntityPresence"),
    type(0x26, "MonitorASIC-IC"),
    type(0x27, "LAN"),
    type(0x28, "ManagementSubsystemHealth"),
    type(0x29, "Battery"),
    type(0x2A, "SessionAudit"),
    type(0x2B, "VersionChange"),
    type(0x2C, "FRUState"),
};

} // namespace ph
