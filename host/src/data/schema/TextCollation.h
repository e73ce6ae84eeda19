// Bringing an older database's text columns to the text rule of the module's
// SQL (compared without regard to case: data/sqlite/SqliteText.h). Databases
// made before the rule have text columns of SQLite's default, case-sensitive
// collation; InitDatabase converts them once. Not for new databases: the
// schema converter declares the collation as it creates the tables.
#pragma once

#include <string>
#include <string_view>

#include "corvina20/Connection.h"

namespace corvina20::data {

// `createTable` (a CREATE TABLE statement as SQLite keeps it) with
// "COLLATE NOCASE" after the type of every char/varchar/nchar/nvarchar/
// text/ntext column that declares no collation; the same text when there is
// none. Throws kErrDatabase (source "Corvina20.Schema") on unreadable text.
std::string AddTextCollation(std::string_view createTable);

// Declares the collation on every text column of every table of the database
// that lacks it, and rebuilds the indexes (whose order and uniqueness change
// with it), in one transaction. Returns the number of tables changed (0 when
// all are up to date, and then nothing is written). Throws kErrDatabase,
// changing nothing, when the rebuild fails: typically a unique index holding
// two values that differ only in case, which the message names.
// REQUIRES: an SQLite connection outside a transaction.
int MigrateTextCollation(Connection& connection);

}  // namespace corvina20::data
