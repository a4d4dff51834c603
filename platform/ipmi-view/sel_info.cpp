#include "ipmi-view/sel_info.h"

#include "hooks/sel_reader.h"
#include "ipmi/command.h"

namespace view {
namespace {

// The last byte of Get SEL Info.
constexpr std::uint8_t overflow = 0x80;
constexpr std::uint8_t deletes = 0x08;
constexpr std::uint8_t hasAllocationInfo = 0x01;

std::optional<SelInfo::Allocation> readAllocation(ipmi::Transport& bmc) {
    const auto answer = ipmi::ask(bmc, ipmi::command::getSelAllocationInfo, {});
    if (answer.code() != ipmi::completion::success)
        return std::nullopt;
    auto reader = answer.reader();
    SelInfo::Allocation allocation{};
    allocation.units = reader.u16();
    allocation.unitSize = reader.u16();
    allocation.freeUnits = reader.u16();
    allocation.largestFreeBlock = reader.u16();
    allocation.largestRecord = reader.u8();
    return reader.ok() ? std::optional(allocation) : std::nullopt;
}

} // namespace

std::optional<unsigned> SelInfo::percentUsed() const {
    constexpr std::uint16_t orMore = 0xFFFF;
    if (allocation && allocation->units != 0)
        return 100U * static_cast<unsigned>(allocation->units - allocation->freeUnits) / allocation->units;
    if (freeBytes == orMore)
        return std::nullopt;
    const unsigned used = entries * unsigned{CIM_SEL_RECORD_SIZE};
    return used + freeBytes == 0 ? std::nullopt : std::optional(100U * used / (used + freeBytes));
}

SelInfo readSelInfo(ipmi::Transport& bmc) {
    const hooks::sel::Info read = hooks::sel::readInfo(bmc);
    SelInfo info{.version = read.version,
                 .entries = read.entries,
                 .freeBytes = read.freeBytes,
                 .lastAddition = read.lastAddition,
                 .lastErasure = read.lastErasure,
                 .hasDropped = (read.operations & overflow) != 0,
                 .canDelete = (read.operations & deletes) != 0,
                 .allocation = {}};
    if ((read.operations & hasAllocationInfo) != 0)
        info.allocation = readAllocation(bmc);
    return info;
}

} // namespace view
