// Parameters of the PEF configuration commands (IPMI 2.0, 30.1 to 30.4, table 30-6).
#pragma once

#include <cstddef>
#include <cstdint>

namespace ipmi::pef {

inline constexpr std::uint8_t version = 0x51; // BCD, low digit first: 1.5
inline constexpr std::uint8_t parameterRevision = 0x11;

namespace parameter {
inline constexpr std::uint8_t setInProgress = 0;
inline constexpr std::uint8_t control = 1;
inline constexpr std::uint8_t actionControl = 2;
inline constexpr std::uint8_t filterCount = 5;
inline constexpr std::uint8_t filter = 6;
inline constexpr std::uint8_t policyCount = 8;
inline constexpr std::uint8_t policy = 9;
} // namespace parameter

inline constexpr std::size_t filterSize = 20; // without the set selector, as below
inline constexpr std::size_t policySize = 3;

inline constexpr std::uint8_t enabled = 0x01;       // of the control
inline constexpr std::uint8_t alertAction = 0x01;   // of actions
inline constexpr std::uint8_t filterEnabled = 0x80; // of a filter's configuration
inline constexpr std::uint8_t policyNumberMask = 0x0F;

// Byte 0 of an alert policy entry: number (high nibble), enabled, rule. Byte 1: channel (high nibble),
// destination selector (table 17-4).
inline constexpr std::uint8_t policyEnabled = 0x08;
inline constexpr std::uint8_t policyRuleMask = 0x07;
enum PolicyRule : std::uint8_t {
    sendAlways,
    // When an alert of this policy was sent already, do not send, and …
    goOn,
    stop,
    goOnWithAnotherChannel,
    goOnWithAnotherType
};

// Completion codes of these commands.
inline constexpr std::uint8_t parameterNotSupported = 0x80;
inline constexpr std::uint8_t parameterIsReadOnly = 0x82;

} // namespace ipmi::pef
