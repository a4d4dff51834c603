// The tables of the two databases.
#pragma once

#include "smash-db/table.h"

#include <platform/smash_db.h>

namespace smash {

struct Schema {
    const char* path;      // absolute, below PH_SYSROOT
    int version;           // PRAGMA user_version; a change of the tables raises it
    bool isInSharedFolder; // where anybody may have put a file before us
    std::span<const Table* const> tables;
};

extern const Schema smashSchema;
extern const Schema temporarySchema;

extern const TableOf<IPMISessionInfo> sessionTable;
extern const TableOf<DeviceRecord> deviceTable;
extern const TableOf<FruRecord> fruTable;
extern const TableOf<CompactSdr> compactSdrTable;
extern const TableOf<FullSdr> fullSdrTable;

} // namespace smash
