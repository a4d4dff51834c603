// Up to where the BMC's event log has been read, across restarts.
#pragma once

#include <cstdint>
#include <optional>
#include <platform/cim_sel.h>

// Both records are kept as they were, because an ID may be given to another record later.
struct SelPosition {
    std::uint32_t lastErasure; // of any record; time of the BMC
    std::uint8_t isEmpty;      // 1: the log had no record, the others mean nothing
    std::uint8_t first[CIM_SEL_RECORD_SIZE];
    std::uint8_t last[CIM_SEL_RECORD_SIZE]; // the last that was taken

    bool operator==(const SelPosition&) const = default;
};

// Reads the file /var/lib/provider-helper/sel-position. Returns nothing where it is missing or not ours.
std::optional<SelPosition> loadSelPosition();
// Returns false when the file cannot be written: records may then be taken twice after a restart.
bool saveSelPosition(const SelPosition& position);
void forgetSelPosition();
