// Conversion of the schema files' SQL Server DDL subset into SQLite DDL, and
// the splitting of plain SQL scripts (demo data) into statements. Pure text
// functions: no database is touched here; Schema.cpp runs what they produce.
// Not for module SQL, which goes through the T-SQL translator.
#pragma once

#include <string>
#include <string_view>
#include <vector>

namespace corvina20::data {

// Turns the schema subset (CREATE TABLE / CREATE [UNIQUE] INDEX / CREATE VIEW /
// ALTER TABLE ADD / DROP TABLE|VIEW|INDEX, batches separated by lines holding
// only GO) into SQLite statements, one string per statement, without the
// closing ';'. Column types keep their SQL Server names (lower case) as the
// declared types, except that nvarchar(max)/varchar(max) become ntext/text and
// an IDENTITY(1,1) int key becomes INTEGER PRIMARY KEY AUTOINCREMENT.
// Text columns (char, varchar, nchar, nvarchar, text, ntext) are declared
// COLLATE NOCASE (data/sqlite/SqliteText.h): compared without regard to
// case; the declared type SQLite reports stays the bare type.
// Empty or comment-only input gives an empty list.
// Throws corvina20::Error kErrDatabase (source "Corvina20.Schema") naming the
// line and the construct for anything outside the subset.
std::vector<std::string> ConvertDdlStatementsForSqlite(std::string_view ddl);

// The same statements as one script, each followed by ";\n".
std::string ConvertDdlForSqlite(std::string_view ddl);

// Splits a plain SQL script into its statements at the ';' that stand outside
// quotes ('…', "…", […]) and comments; statements that hold only blanks or
// comments are dropped. The last statement may omit its ';'. Never throws on
// well-quoted text; an unterminated quote or comment throws kErrDatabase.
std::vector<std::string> SplitSqlStatements(std::string_view sql);

}  // namespace corvina20::data
