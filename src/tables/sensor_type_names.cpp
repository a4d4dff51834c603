// Names of the IPMI sensor types (IPMI 2.0, table 42-3), as captions and descriptions spell them.
#include "tables/sensor_names.h"

#include <iterator>

namespace ph {

constexpr SensorTypeName sensor_type_names[] = {
    {0x00, "Reserved"},
    {0x01, "Temperature"},
    {0x02, "Voltage"},
    {0x03, "Current"},
    {0x04, "Fan"},
    {0x05, "ChassisIntrusion"},
    {0x06, "PlatformSecurityViolation"},
    {0x07, "Processor"},
    {0x08, "PowerSupply"},
    {0x09, "PowerUnit"},
    {0x0A, "CoolingDevice"},
    {0x0B, "UnitsBasedSensor"},
    {0x0C, "Memory"},
    {0x0D, "DriveSlotOrBay"},
    {0x0E, "POSTMemoryResize"},
    {0x0F, "SystemFirmwarePOST"},
    {0x10, "EventLoggingDisabled"},
    {0x11, "Watchdog1"},
    {0x12, "SystemEvent"},
    {0x13, "CriticalInterrupt"},
    {0x14, "Button"},
    {0x15, "ModuleOrBoard"},
    {0x16, "MicrocontrollerOrCoprocessor"},
    {0x17, "AddInCard"},
    {0x18, "Chassis"},
    {0x19, "Chip Set"},
    {0x1A, "OtherFRU"},
    {0x1B, "CableOrInterconnect"},
    {0x1C, "Terminator"},
    {0x1D, "SystemBootInitiated"},
    {0x1E, "BootError"},
    {0x1F, "OSBoot"},
    {0x20, "OSCriticalStop"},
    {0x21, "Slot/Connector"},
    {0x22, "SystemACPIPowerState"},
    {0x23, "Watchdog2"},
    {0x24, "PlatformAlert"},
    {0x25, "EntityPresence"},
    {0x26, "MonitorASIC-IC"},
    {0x27, "LAN"},
    {0x28, "ManagementSubsystemHealth"},
    {0x29, "Battery"},
    {0x2A, "SessionAudit"},
    {0x2B, "VersionChange"},
    {0x2C, "FRUState"},
};
static_assert(std::size(sensor_type_names) == 45 && sensor_type_names[44].name[0] != 0);

} // namespace ph
