// The text semantics of the module's SQL on SQLite: the collation every text
// column is declared with, and LIKE, both without regard to case and with
// regard to accents (text/TextFold.h). Registered on every connection the
// host opens, under the name of SQLite's built-in NOCASE, which it replaces
// there: a program without it (the sqlite3 shell) still reads and sorts the
// text columns, folding the case of ASCII letters only.
#pragma once

struct sqlite3;

namespace corvina20::data {

// The collation's name, as the schema's DDL and the translator write it.
inline constexpr const char* kTextCollation = "NOCASE";

// Registers the collation kTextCollation and overrides like(pattern, text)
// and like(pattern, text, escape) on `db` with T-SQL LIKE (`[...]` sets
// included). Throws corvina20::Error kErrDatabase when SQLite refuses.
void RegisterTextSemantics(sqlite3* db);

}  // namespace corvina20::data
