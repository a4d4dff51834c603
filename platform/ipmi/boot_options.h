// Parameters of the system boot options (IPMI 2.0, 28.12 and 28.13, table 28-14).
#pragma once

#include <cstddef>
#include <cstdint>

namespace ipmi::boot {

inline constexpr std::uint8_t parameterVersion = 0x01;
inline constexpr std::uint8_t parameterInvalid = 0x80; // of an answer, with the parameter's number

namespace parameter {
inline constexpr std::uint8_t setInProgress = 0;
inline constexpr std::uint8_t servicePartitionSelector = 1;
inline constexpr std::uint8_t servicePartitionScan = 2;
inline constexpr std::uint8_t validBitClearing = 3;
inline constexpr std::uint8_t infoAcknowledge = 4;
inline constexpr std::uint8_t flags = 5;
} // namespace parameter

// Completion codes of the two commands.
inline constexpr std::uint8_t parameterNotSupported = 0x80;
inline constexpr std::uint8_t alreadyInProgress = 0x81; // parameter 0 is not "set complete"

// Parameter 0.
enum Progress : std::uint8_t { setComplete = 0, inProgress = 1, commitWrite = 2 };

// Parameter 3: what does not clear the valid bit.
inline constexpr std::uint8_t keepWithoutCommand = 0x01; // no Chassis Control command within 60 seconds
inline constexpr std::uint8_t keepOnSoftReset = 0x02;    // and on a reset button
inline constexpr std::uint8_t keepOnPowerButton = 0x04;  // and on a wake event
inline constexpr std::uint8_t keepOnWatchdog = 0x08;
inline constexpr std::uint8_t keepOnPef = 0x10;

// Parameter 4: a mask of those that are written, and bits that are 1 until the party has handled the boot.
inline constexpr std::uint8_t everyParty = 0x1F;
inline constexpr std::uint8_t notHandled = 0xFF;

// Parameter 5.
inline constexpr std::size_t flagsSize = 5;
inline constexpr std::uint8_t flagsValid = 0x80; // byte 0
inline constexpr std::uint8_t persistent = 0x40;
inline constexpr std::uint8_t efiBoot = 0x20;
inline constexpr std::uint8_t deviceMask = 0x3C; // byte 1
inline constexpr unsigned deviceShift = 2;
inline constexpr std::uint8_t lastDevice = 0x0F;

} // namespace ipmi::boot
