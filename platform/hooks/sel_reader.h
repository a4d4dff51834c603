// Records of a BMC's system event log (IPMI 2.0, 31.5).
#pragma once

#include "ipmi/command.h"

#include <platform/cim_sel.h>

namespace hooks {

namespace sel {

inline constexpr std::uint16_t firstRecord = 0x0000; // as the ID asked for
inline constexpr std::uint16_t noNextRecord = 0xFFFF;
inline constexpr std::uint8_t wholeRecord = 0xFF; // as the number of bytes asked for

constexpr std::uint16_t idOf(const std::uint8_t (&bytes)[2]) {
    return static_cast<std::uint16_t>(bytes[0] | bytes[1] << 8);
}

// All that Get SEL Info tells.
struct Info : CIM_SELInfo {
    std::uint8_t version;    // BCD, the major number in bits 3 to 0
    std::uint8_t operations; // bit 7 overflow, 3 Delete, 2 Partial Add, 1 Reserve, 0 Get SEL Allocation Info
};
Info readInfo(ipmi::Transport& bmc);

// Makes a reservation; 0 for a BMC that works without.
std::uint16_t makeReservation(ipmi::Transport& bmc);

} // namespace sel

// Reads records whole, or in parts once the BMC has shown that it cannot send one at once.
class SelReader {
public:
    explicit SelReader(ipmi::Transport& bmc) : bmc_(bmc) {}

    // Returns the completion code; the entry is complete when it is success.
    std::uint8_t read(std::uint16_t recordId, CIM_SELEntry& entry);

private:
    std::uint8_t readPart(std::uint16_t recordId, std::uint8_t offset, std::uint8_t size,
                          CIM_SELEntry& entry);
    std::uint8_t readInParts(std::uint16_t recordId, CIM_SELEntry& entry);

    ipmi::Transport& bmc_;
    std::uint16_t reservation_ = 0;
    std::uint8_t partSize_ = sel::wholeRecord;
};

} // namespace hooks
