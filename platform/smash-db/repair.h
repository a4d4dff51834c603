// What becomes of a database that SQLite cannot read any more.
#pragma once

#include "smash-db/schema.h"

#include <optional>
#include <string>

namespace smash {

// Says what is damaged in the schema's file; nothing of one that is in order, missing, of a later version or of
// another program. It reads the whole file.
std::optional<std::string> findDamage(const Schema& schema);

// Tells whether rows of the table can be read from a damaged file.
bool holdsRows(const Schema& schema, const Table& table);

// Renames a damaged file to "*.damaged" and makes a new one with the rows of those tables that could still be read.
// Returns the new name of the damaged file. Throws std::runtime_error.
std::string rebuild(const Schema& schema);

} // namespace smash
