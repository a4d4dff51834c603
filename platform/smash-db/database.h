// Opening, checking and creating a database file.
#pragma once

#include "smash-db/schema.h"

#include <SQLiteCpp/SQLiteCpp.h>
#include <string>

namespace smash {

// Returns the schema's file. Throws std::runtime_error for a path that is too long.
std::string fileOf(const Schema& schema);

enum class OpenMode { Existing, CreateMissing };

// Opens the schema's file, which is created with mode 0600. Throws std::runtime_error, which names the file,
// when it is missing, locked, no database, shorter than it says or of another schema. A file that is there is
// not repaired or replaced here: what it holds may matter to somebody (see repair.h). Only a temporary one, which holds nothing
// of worth, is then set aside and made anew, as long as it is a file of this user; one of somebody else's, a
// link or a pipe is refused.
SQLite::Database open(const Schema& schema, OpenMode mode);

// Returns the first column of the first row.
int readNumber(SQLite::Database& database, const char* query);

// Checks of a file that open() opened whether it can be read now. Throws std::runtime_error.
void checkAgain(SQLite::Database& database, const Schema& schema);

} // namespace smash
