// OEM commands of network function 30h, which docs/oem-commands.md describes, for both ends.
#pragma once

#include "ipmi/commands.h"

#include <cstddef>
#include <cstdint>

namespace ipmi::oem {

// Get Device ID says this of a BMC that has them.
inline constexpr std::uint32_t manufacturer = 32473; // the enterprise number of RFC 5612, for documents
inline constexpr std::uint16_t product = 0x5048;

// Services.
inline constexpr CommandCode getServiceConfiguration{netFn::oem, 0x10};
inline constexpr CommandCode setServiceConfiguration{netFn::oem, 0x11};

// Network.
inline constexpr CommandCode getInterfaceName{netFn::oem, 0x20};
inline constexpr CommandCode getLanEnable{netFn::oem, 0x21};
inline constexpr CommandCode setLanEnable{netFn::oem, 0x22};
inline constexpr CommandCode getBond{netFn::oem, 0x23};
inline constexpr CommandCode setBond{netFn::oem, 0x24};
inline constexpr CommandCode getPhy{netFn::oem, 0x25};
inline constexpr CommandCode getEthernetSettings{netFn::oem, 0x26};
inline constexpr CommandCode getDns{netFn::oem, 0x27};
inline constexpr CommandCode setDns{netFn::oem, 0x28};

// Mail.
inline constexpr CommandCode getMailDestination{netFn::oem, 0x40};
inline constexpr CommandCode setMailDestination{netFn::oem, 0x41};
inline constexpr CommandCode getMailText{netFn::oem, 0x42};
inline constexpr CommandCode setMailText{netFn::oem, 0x43};
inline constexpr CommandCode getMailServer{netFn::oem, 0x44};
inline constexpr CommandCode setMailServer{netFn::oem, 0x45};

// Event log.
inline constexpr CommandCode getSelPolicy{netFn::oem, 0x60};

// Firmware.
inline constexpr CommandCode getFirmwareUpdate{netFn::oem, 0x70};
inline constexpr CommandCode beginFirmwareUpdate{netFn::oem, 0x71};
inline constexpr CommandCode writeFirmwareBlock{netFn::oem, 0x72};
inline constexpr CommandCode finishFirmwareUpdate{netFn::oem, 0x73};
inline constexpr CommandCode cancelFirmwareUpdate{netFn::oem, 0x74};

enum FirmwareState : std::uint8_t { firmwareIdle, firmwareReceiving, firmwareActivating };
inline constexpr std::size_t firmwareBlockSize = 200; // bytes of an image in one command, at most

// The host.
inline constexpr CommandCode readSmbiosTable{netFn::oem, 0x80};
inline constexpr std::uint8_t smbiosPart = 64; // bytes to ask for: they fit the messages of any channel

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

// The DNS settings that these commands transfer in blocks: of an IP version of a LAN, and of all LANs.
inline constexpr std::size_t dnsBlockSize = 32;
inline constexpr std::size_t dnsServers = 3; // 16 bytes each
inline constexpr std::size_t dnsHostNameSize = 64;
inline constexpr std::size_t dnsDomainNameSize = 256;
inline constexpr std::size_t dnsClientHeadSize = 64;
inline constexpr std::size_t dnsClientSize = dnsClientHeadSize + dnsHostNameSize + dnsDomainNameSize;
inline constexpr std::size_t dnsSearchHeadSize = 32;
inline constexpr std::size_t dnsSearchSize = dnsSearchHeadSize + dnsDomainNameSize;

} // namespace ipmi::oem
