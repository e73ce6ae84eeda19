// SQLite's FTS5 extension API of a connection, for the host's tokenizers
// (the full-text indexes' and the list search's).
#pragma once

#include <sqlite3.h>

namespace corvina20::data {

// The FTS5 API of `db` (through "SELECT fts5(?1)"); nullptr when this SQLite
// was built without FTS5.
fts5_api* Fts5Api(sqlite3* db);

}  // namespace corvina20::data
