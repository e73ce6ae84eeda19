// Full text on SQLite: what every connection must have registered before it
// touches a full-text index, and the names of an index's tables.
//
// An index of table T, column C is the FTS5 table CORft_T_C (external
// content T, rowid = T.IdAnagrafica, tokenizer "corvina") and the table
// CORftdf_T_C (term, df): in how many rows each term appears, the row ""
// counting the rows that have any term at all. Triggers on T keep both in
// step (FtsIndexes.h). Registered here:
//   tokenizer corvina                    FtsTokenizer.h on FTS5
//   corvina_ft_terms(text)               JSON array of the distinct terms of
//                                        text, led by "" when there is any
//                                        (the triggers count rows with it)
//   corvina_ft_match(T, C, text, min)    the FTS5 query of the rows of T.C
//                                        that can rank min or more against text
//   corvina_ft_rank(T, C, text, row)     the rank (0..1000) of row's text
//                                        against text in the index of T.C;
//                                        NULL when they share no term
// Not for: creating the indexes (FtsIndexes.h) or translating FREETEXTTABLE
// (the T-SQL translator).
#pragma once

#include <string>
#include <string_view>

struct sqlite3;

namespace corvina20::data::fulltext {

// Registers the tokenizer and the functions above on `db`. Throws
// corvina20::Error kErrDatabase when the SQLite library has no FTS5.
void RegisterFullText(sqlite3* db);

// "CORft_<table>_<column>" and "CORftdf_<table>_<column>".
std::string IndexTableName(std::string_view table, std::string_view column);
std::string FrequencyTableName(std::string_view table, std::string_view column);

}  // namespace corvina20::data::fulltext
