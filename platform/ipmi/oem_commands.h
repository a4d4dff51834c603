// OEM commands, network function 30h, as docs/oem-commands.md describes them: for those who send and those
// who answer them.
#pragma once

#include <cstddef>
#include <cstdint>

namespace ipmi::oem {

// What Get Device ID says of a BMC that has them.
inline constexpr std::uint32_t manufacturer = 32473; // the enterprise number of RFC 5612, for documents
inline constexpr std::uint16_t product = 0x5048;

// Services.
inline constexpr std::uint8_t getServiceConfiguration = 0x10;
inline constexpr std::uint8_t setServiceConfiguration = 0x11;

// Network.
inline constexpr std::uint8_t getInterfaceName = 0x20;
inline constexpr std::uint8_t getLanEnable = 0x21;
inline constexpr std::uint8_t setLanEnable = 0x22;
inline constexpr std::uint8_t getBond = 0x23;
inline constexpr std::uint8_t setBond = 0x24;
inline constexpr std::uint8_t getPhy = 0x25;
inline constexpr std::uint8_t getEthernetSettings = 0x26;

// Mail.
inline constexpr std::uint8_t getMailDestination = 0x40;
inline constexpr std::uint8_t setMailDestination = 0x41;
inline constexpr std::uint8_t getMailText = 0x42;
inline constexpr std::uint8_t setMailText = 0x43;
inline constexpr std::uint8_t getMailServer = 0x44;
inline constexpr std::uint8_t setMailServer = 0x45;

// Event log.
inline constexpr std::uint8_t getSelPolicy = 0x60;

// Texts of the mail commands, in blocks: of an alert destination (channel, selector), of a user (user ID, 0)
// and of a mail server (channel, 0 primary or 1 secondary).
enum MailText : std::uint8_t {
    mailSubject,
    mailMessage,
    userAddress,
    serverUserName,
    serverPassword,
    serverSender,
    serverHostName
};
inline constexpr std::size_t mailTextSizes[] = {64, 256, 255, 64, 64, 64, 64};
inline constexpr std::size_t mailBlockSize = 32;

} // namespace ipmi::oem
