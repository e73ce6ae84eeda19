// Full text on SQLite: what every connection must have registered before it
// touches a full-text index, and the names of an index's tables.
//
// An index of table T, column C is the FTS5 table CORft_T_C (external
// content T, rowid = T.IdAnagrafica, tokenizer "corvina") and the change log
// CORftlog_T_C (seq, id, tag): one entry per row written, which the
// connections' in-memory mirrors of the index follow (FtsMirror.h). Triggers
// on T keep both in step (FtsIndexes.h). Registered here:
//   tokenizer corvina                    FtsTokenizer.h on FTS5
//   corvina_ft_search(T, C, text, floor, drives)
//                                        table-valued function: KEY and
//                                        RANK of the rows of T.C sharing a
//                                        word with text, rank >= floor; what
//                                        FREETEXTTABLE becomes (FtsSqlite.cpp
//                                        tells how it runs)
//   corvina_ft_match(T, C, text, min)    the FTS5 query of the rows of T.C
//                                        that can rank min or more against text
//   corvina_ft_rank(T, C, text, row)     the rank (0..1000) of row's text
//                                        against text in the index of T.C;
//                                        NULL when they share no term
//   corvina_ft_frequency(T, C, term)     in how many rows of T.C term appears;
//                                        '' gives the rows with any term
//   corvina_ft_terms(text)               JSON array of the distinct terms of
//                                        text, led by "" when there is any
//   corvina_ft_follow()                  moves the connection's mirrors to
//                                        the newest shared copies (NULL)
// Not for: creating the indexes (FtsIndexes.h) or translating FREETEXTTABLE
// (the T-SQL translator).
#pragma once

#include <string>
#include <string_view>

struct sqlite3;

namespace corvina20::data::fulltext {

// Registers the tokenizer, the functions and the search table above on `db`,
// with the connection's full-text state (its mirrors). Throws
// corvina20::Error kErrDatabase when the SQLite library has no FTS5.
void RegisterFullText(sqlite3* db);

// Finalizes the statements the connection's full-text state keeps prepared
// and frees its mirrors; call it before closing `db` (sqlite3_close_v2 would
// otherwise keep the connection open for them). Harmless when nothing was
// registered.
void ReleaseFullText(sqlite3* db);

// "CORft_<table>_<column>" and "CORftlog_<table>_<column>".
std::string IndexTableName(std::string_view table, std::string_view column);
std::string LogTableName(std::string_view table, std::string_view column);

}  // namespace corvina20::data::fulltext
