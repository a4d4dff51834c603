// The two databases: file, version, tables.
#pragma once

#include "smash-db/table.h"

namespace smash {

struct Schema {
    const char* path; // absolute, below PH_SYSROOT
    int version;      // PRAGMA user_version; a change of the tables raises it
    bool isTemporary; // in a folder where anybody may have put a file before us, gone at the next boot
    std::span<const Table* const> tables;
};

extern const Schema smashSchema;
extern const Schema temporarySchema;

} // namespace smash
