// The records of the event log: a ring of slots of 16 bytes, one slot more than the log has room for, so that
// no record is overwritten before the state file says that it is gone.
#pragma once

#include "virtual-bmc/sel/sel.h"
#include "virtual-bmc/state/file_handle.h"
#include "virtual-bmc/state/state.h"

#include <array>
#include <platform/sel_record.h>

namespace vbmc {

using SelRecord = std::array<std::uint8_t, CIM_SEL_RECORD_SIZE>;

class SelFile {
public:
    explicit SelFile(const State& state);

    // Positions count from the oldest record. Throw Error.
    SelRecord read(const Sel& sel, std::uint16_t position) const;
    void write(const Sel& sel, std::uint16_t position, const SelRecord& record) const;
    // Finds where the record with an ID lies; 0000h stands for the first and FFFFh for the last.
    std::optional<std::uint16_t> find(const Sel& sel, std::uint16_t id) const;

private:
    std::filesystem::path path_;
    FileHandle file_;
};

} // namespace vbmc
