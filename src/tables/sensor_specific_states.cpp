// States of sensor-specific sensors (event/reading type 6Fh; IPMI 2.0, table 42-3).
#include "provider_helper/tables.h"
#include "tables/row_text.h"

#include <cstddef>

static_assert(sizeof(PHSensorSpecificState) == 264 && offsetof(PHSensorSpecificState, name) == 8);

namespace {

// The compiler must not make constants of the rows after all.
[[gnu::noinline]] PHSensorSpecificState
state(uint32_t sensorType, uint32_t offset, ph::RowText<ph::textSize<PHSensorSpecificState>> name) noexcept {
    PHSensorSpecificState row{sensorType, offset, {}};
    name.copyTo(row.name);
    return row;
}

} // namespace

const PHSensorSpecificState sensor_specific_possible_state_mapping[193] = {
    // ChassisIntrusion
    state(0x05, 0, "General Chassis Intrusion"),
    state(0x05, 1, "Drive Bay intrusion"),
    state(0x05, 2, "I/O Card area intrusion"),
    state(0x05, 3, "Processor area intrusion"),
    state(0x05, 4, "LAN Leash Lost"),
    state(0x05, 5, "Unauthorized dock/undock"),
    state(0x05, 6, "FAN area intrusion"),
    // PlatformSecurityViolation
    state(0x06, 0, "Secure Mode (Front Panel Lockout) Violation attempt"),
    state(0x06, 1, "Pre-boot Password Violation - user password"),
    state(0x06, 2, "Pre-boot Password Violation attempt - setup password"),
    state(0x06, 3, "Pre-boot Password Violation attempt - setup password"),
    state(0x06, 4, "Other pre-boot Password Violation"),
    state(0x06, 5, "Out-of-band Access Password Violation"),
    // Processor
    state(0x07, 0, "IERR"),
    state(0x07, 1, "Thermal Trip"),
    state(0x07, 2, "FRB1/BIST failure"),
    state(0x07, 3, "FRB2/Hang in POST failure"),
    state(0x07, 4, "FRB3/Processor Startup/Initialization failure"),
    state(0x07, 5, "Configuration Error"),
    state(0x07, 6, "SM BIOS -Uncorrectable CPU-complex Error"),
    state(0x07, 7, "Processor Presence detected"),
    state(0x07, 8, "Processor disabled"),
    state(0x07, 9, "Terminator Presence Detected"),
    state(0x07, 10, "Processor Automatically Throttled"),
    // PowerSupply
    state(0x08, 0, "Presence detected"),
    state(0x08, 1, "Power Supply Failure detected"),
    state(0x08, 2, "Predictive Failure"),
    state(0x08, 3, "Power Supply input lost (AC/DC)"),
    state(0x08, 4, "Power Supply input lost or out-of-range"),
    state(0x08, 5, "Power Supply input out-of-range - but present"),
    state(0x08, 6, "Configuration error"),
    // PowerUnit
    state(0x09, 0, "Power Off/Power Down"),
    state(0x09, 1, "Power Cycle"),
    state(0x09, 2, "240VA Power Down"),
    state(0x09, 3, "Interlock Power Down"),
    state(0x09, 4, "AC lost"),
    state(0x09, 5, "Soft Power Control Failure"),
    state(0x09, 6, "Power Unit Failure detected"),
    state(0x09, 7, "Predictive Failure"),
    // Memory
    state(0x0C, 0, "Correctable ECC or other correctable memory error"),
    state(0x0C, 1, "Uncorrectable ECC or other uncorrectable memory error"),
    state(0x0C, 2, "Parity"),
    state(0x0C, 3, "Memory Scrub Failed (stuck bit)"),
    state(0x0C, 4, "Memory Device Disabled"),
    state(0x0C, 5, "Correctable ECC or other correctable memory error logging limit reached"),
    state(0x0C, 6, "Presence detected"),
    state(0x0C, 7, "Configuration error"),
    state(0x0C, 8, "Spare"),
    state(0x0C, 9, "Memory Automatically Throttled"),
    state(0x0C, 10, "Critical Overtemperature"),
    // DriveSlotOrBay
    state(0x0D, 0, "Drive Presence"),
    state(0x0D, 1, "Drive Fault"),
    state(0x0D, 2, "Predictive Failure"),
    state(0x0D, 3, "Hot Spare"),
    state(0x0D, 4, "Consistency Check / Parity Check in progress"),
    state(0x0D, 5, "In Critical Array"),
    state(0x0D, 6, "In Failed Array"),
    state(0x0D, 7, "Rebuild/Remap in progress"),
    state(0x0D, 8, "Rebuild/Remap Aborted"),
    // SystemFirmwarePOST
    state(0x0F, 0, "System Firmware Error (POST Error)"),
    state(0x0F, 1, "System Firmware Hang"),
    state(0x0F, 2, "System Firmware Progress"),
    // EventLoggingDisabled
    state(0x10, 0, "Correctable Memory Error Logging Disabled"),
    state(0x10, 1, "Event 'Type' Logging Disabled"),
    state(0x10, 2, "Log Area Reset/Cleared"),
    state(0x10, 3, "All Event Logging Disabled"),
    state(0x10, 4, "SEL Full"),
    state(0x10, 5, "SEL Almost Full"),
    // Watchdog1
    state(0x11, 0, "BIOS Watchdog Reset"),
    state(0x11, 1, "OS Watchdog Reset"),
    state(0x11, 2, "OS Watchdog Shut Down"),
    state(0x11, 3, "OS Watchdog Power Down"),
    state(0x11, 4, "OS Watchdog Power Cycle"),
    state(0x11, 5, "OS Watchdog NMI/Diagnostic Interrupt"),
    state(0x11, 6, "OS Watchdog Expired - status only"),
    state(0x11, 7, "OS Watchdog pre-timeout Interrupt-non-NMI"),
    // SystemEvent
    state(0x12, 0, "System Reconfigured"),
    state(0x12, 1, "OEM System Boot Event"),
    state(0x12, 2, "Undetermined system hardware failure"),
    state(0x12, 3, "Entry added to Auxiliary Log"),
    state(0x12, 4, "PEF Action"),
    state(0x12, 5, "Timestamp Clock Synch"),
    // CriticalInterrupt
    state(0x13, 0, "Front Panel NMI/Diagnostic Interrupt"),
    state(0x13, 1, "Bus Timeout"),
    state(0x13, 2, "I/O channel check NMI"),
    state(0x13, 3, "Software NMI"),
    state(0x13, 4, "PCI PERR"),
    state(0x13, 5, "PCI SERR"),
    state(0x13, 6, "EISA Fail Safe Timeout"),
    state(0x13, 7, "Bus Correctable Error"),
    state(0x13, 8, "Bus Uncorrectable Error"),
    state(0x13, 9, "Fatal NMI (port 61h-bit 7)"),
    state(0x13, 10, "Bus Fatal Error"),
    state(0x13, 11, "Bus Degraded"),
    // Button
    state(0x14, 0, "Power Button pressed"),
    state(0x14, 1, "Sleep Button pressed"),
    state(0x14, 2, "Reset Button pressed"),
    state(0x14, 3, "FRU latch open"),
    state(0x14, 4, "FRU service request button"),
    // Chip Set
    state(0x19, 0, "Soft Power Control Failure"),
    // CableOrInterconnect
    state(0x1B, 0, "Cable/Interconnect is connected"),
    state(0x1B, 1, "Configuration Error"),
    // SystemBootInitiated
    state(0x1D, 0, "Initiated by power up"),
    state(0x1D, 1, "Initiated by hard reset"),
    state(0x1D, 2, "Initiated by warm reset"),
    state(0x1D, 3, "User requested PXE boot"),
    state(0x1D, 4, "Automatic boot to diagnostic"),
    state(0x1D, 5, "OS / run-time software initiated hard reset"),
    state(0x1D, 6, "OS / run-time software initiated warm reset"),
    state(0x1D, 7, "System Restart"),
    // BootError
    state(0x1E, 0, "No bootable media"),
    state(0x1E, 1, "Non-bootable diskette left in drive"),
    state(0x1E, 2, "PXE Server not found"),
    state(0x1E, 3, "Invalid boot sector"),
    state(0x1E, 4, "Timeout waiting for user selection of boot source"),
    // OSBoot
    state(0x1F, 0, "A: boot completed"),
    state(0x1F, 1, "C: boot completed"),
    state(0x1F, 2, "PXE boot completed"),
    state(0x1F, 3, "Diagnostic boot completed"),
    state(0x1F, 4, "CD-ROM boot completed"),
    state(0x1F, 5, "ROM boot completed"),
    state(0x1F, 6, "boot completed - boot device not specified"),
    // OSCriticalStop
    state(0x20, 0, "Stop during OS load/initialization"),
    state(0x20, 1, "Run-time Stop"),
    state(0x20, 2, "OS Graceful Stop"),
    state(0x20, 3, "OS Graceful Shutdown"),
    state(0x20, 4, "Soft Shutdown initiated by PEF"),
    state(0x20, 5, "Agent Not Responding"),
    // Slot/Connector
    state(0x21, 0, "Fault Status asserted"),
    state(0x21, 1, "Identify Status asserted"),
    state(0x21, 2, "Slot/Connector Device installed/attached"),
    state(0x21, 3, "Slot/Connector Ready for Device Installation"),
    state(0x21, 4, "Slot/Connector Ready for Device Removal"),
    state(0x21, 5, "Slot Power is Off"),
    state(0x21, 6, "Slot/Connector Device Removal Request"),
    state(0x21, 7, "Interlock asserted"),
    state(0x21, 8, "Slot is Disabled"),
    state(0x21, 9, "Slot holds spare device"),
    // SystemACPIPowerState
    state(0x22, 0, "S0/G0 'working"),
    state(0x22, 1, "S1 - sleeping with system h/w and processor context maintained"),
    state(0x22, 2, "S2 - sleeping - processor context lost"),
    state(0x22, 3, "S3 - sleeping - processor and h/w context lost- memory retained"),
    state(0x22, 4, "S4 - non-volatile sleep / suspend-to disk"),
    state(0x22, 5, "S5/G2 - soft-off"),
    state(0x22, 6, "S4/S5 soft-off particular S4 / S5 state cannot be determined"),
    state(0x22, 7, "G3/Mechanical Off"),
    state(0x22, 8,
          "Sleeping in an S1 and S2 or S3 states (used when particular S1 S2 S3 state cannot be determined)"),
    state(0x22, 9, "G1 sleeping (S1-S4 state cannot be determined)"),
    state(0x22, 10, "S5 entered by override"),
    state(0x22, 11, "Legacy ON state"),
    state(0x22, 12, "Legacy OFF state"),
    state(0x22, 14, "Unknown"),
    // Watchdog2
    state(0x23, 0, "Timer expired - status only (no action and no interrupt)"),
    state(0x23, 1, "Hard Reset"),
    state(0x23, 2, "Power Down"),
    state(0x23, 3, "Power Cycle"),
    state(0x23, 8, "Timer interrupt"),
    // PlatformAlert
    state(0x24, 0, "platform generated page"),
    state(0x24, 1, "platform generated LAN alert"),
    state(0x24, 2, "Platform Event Trap generated and formatted per IPMI PET specfication"),
    state(0x24, 3, "platform generated SNMP trap OEM format"),
    // EntityPresence
    state(0x25, 0, "Entity Present"),
    state(0x25, 1, "Entity Absent"),
    state(0x25, 2, "Entity Disabled"),
    // LAN
    state(0x27, 0, "LAN Heartbeat Lost"),
    state(0x27, 1, "LAN Heartbeat"),
    // ManagementSubsystemHealth
    state(0x28, 0, "sensor access degraded or unavailable"),
    state(0x28, 1, "controller access degraded or unavailable"),
    state(0x28, 2, "management controller off-line"),
    state(0x28, 3, "management controller unavailable"),
    state(0x28, 4, "Sensor failure"),
    state(0x28, 5, "FRU failure"),
    // Battery
    state(0x29, 0, "battery low (predictive failure)"),
    state(0x29, 1, "battery failed"),
    state(0x29, 2, "battery presence detected"),
    // SessionAudit
    state(0x2A, 0, "Session Activated"),
    state(0x2A, 1, "Session Deactivated"),
    // VersionChange
    state(0x2B, 0, "Hardware change detected with associated Entity. Informational"),
    state(0x2B, 1,
          "Firmware or software change detected with associated Entity.Informational. Success or failure not "
          "implied"),
    state(0x2B, 2, "Hardware incompatibility detected with associated Entity"),
    state(0x2B, 3, "Firmware or software incompatibility detected with associated Entit"),
    state(0x2B, 4, "Entity is of an invalid or unsupported hardware version"),
    state(0x2B, 5, "Entity contains an invalid or unsupported firmware or software version"),
    state(0x2B, 6,
          "Hardware Change detected with associated Entity was successful.(deassertion event means "
          "'unsuccessful')"),
    state(0x2B, 7,
          "Software or F/W Change detected with associated Entity was successful.(deassertion event means "
          "'unsuccessful')"),
    // FRUState
    state(0x2C, 0, "FRU Not Installed"),
    state(0x2C, 1, "FRU Inactive (in standby or 'hot spare' state)"),
    state(0x2C, 2, "FRU Activation Requested"),
    state(0x2C, 3, "FRU Activation In Progress"),
    state(0x2C, 4, "FRU Active"),
    state(0x2C, 5, "FRU Deactivation Requested"),
    state(0x2C, 6, "FRU Deactivation In Progress"),
    state(0x2C, 7, "FRU Communication Lost"),
};
