// Serial over LAN: parameters of the SOL configuration commands (IPMI 2.0, 26.2, 26.3, table 26-5), and the SOL payload
// (24.4, 24.5).
#pragma once

#include <cstdint>

namespace ipmi::sol {

inline constexpr std::uint8_t parameterRevision = 0x11;

namespace parameter {
inline constexpr std::uint8_t setInProgress = 0;
inline constexpr std::uint8_t enable = 1;
inline constexpr std::uint8_t authentication = 2;
inline constexpr std::uint8_t accumulation = 3;
inline constexpr std::uint8_t retry = 4;
inline constexpr std::uint8_t nonVolatileBitRate = 5;
inline constexpr std::uint8_t volatileBitRate = 6;
inline constexpr std::uint8_t payloadChannel = 7;
inline constexpr std::uint8_t payloadPort = 8;
} // namespace parameter

// Parameter 1.
inline constexpr std::uint8_t isEnabled = 0x01;

// Parameter 2.
inline constexpr std::uint8_t forcesEncryption = 0x80;
inline constexpr std::uint8_t forcesAuthentication = 0x40;
inline constexpr std::uint8_t privilegeMask = 0x0F; // 2 user, 3 operator, 4 administrator, 5 OEM

// Parameters 5 and 6.
inline constexpr std::uint8_t bitRateMask = 0x0F;
inline constexpr std::uint8_t bitRateOfSerial = 0; // that of the serial channel
inline constexpr std::uint8_t bitRate9600 = 6;
inline constexpr std::uint8_t bitRate19200 = 7;
inline constexpr std::uint8_t bitRate38400 = 8;
inline constexpr std::uint8_t bitRate57600 = 9;
inline constexpr std::uint8_t bitRate115200 = 10;

inline constexpr std::uint8_t payloadType = 1;
inline constexpr std::uint8_t capacityMask = 0x0F;
inline constexpr std::uint8_t mostInstances = 15;

// Completion codes of these commands.
inline constexpr std::uint8_t parameterNotSupported = 0x80;
inline constexpr std::uint8_t parameterIsReadOnly = 0x82;

} // namespace ipmi::sol
