// The index behind the record lists' search box: every run of three
// characters (trigram) of the searched columns of the parties, so that a
// search for "containing x" reads the few rows that hold all of x's trigrams
// instead of scanning the register. It narrows only: the list still applies
// its own LIKE to the rows it is given, so what is found stays exactly what
// the plain search finds. Characters are compared as the module's LIKE does
// (case folded, accents kept: text/TextFold.h); the index folds them the same
// way, so a row the LIKE matches always holds every trigram of the search.
// On SQLite: an external-content FTS5 table of the rows (its own tokenizer,
// `corvina_grams`), kept up to date by triggers. On PostgreSQL the server's
// own trigram indexes serve the list's LIKE directly (postgres/
// PgListSearch.h) and no candidates are given. Not for: similarity of names
// (data/fulltext), nor searches shorter than three characters (they scan).
#pragma once

#include <cstddef>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "corvina20/Connection.h"
#include "corvina20/Variant.h"

struct sqlite3;

namespace corvina20::data::listsearch {

// Registers the tokenizer `corvina_grams` on `db`; every connection that
// writes an indexed table needs it (the triggers feed the index through it).
// Throws corvina20::Error kErrDatabase when SQLite has no FTS5.
void RegisterListSearch(sqlite3* db);

// The trigrams of `text` as the index keeps them: each run of three
// consecutive characters, case folded, in order, repetitions included. Empty
// for a text of fewer than three characters. Invalid UTF-8 bytes count as
// U+FFFD each, as LIKE reads them.
std::vector<std::string> Trigrams(std::string_view text);

// Makes the index of each indexed table (today STDAnagrafiche: RagioneSociale,
// PartitaIva, CodiceFiscale, Citta, Telefono) exist at the current version,
// filling it from the rows there; idempotent. Records them in CORListSearch
// (Tabella, Colonne, Versione); on PostgreSQL the trigram index of each
// column (none when the server has no pg_trgm: the lists scan). Returns how
// many it built.
// REQUIRES: no transaction open on `connection`. Throws kErrDatabase when a
// statement fails (rolled back).
int EnsureListSearchIndexes(Connection& connection);

// The keys of the rows of `table` that may hold `text` (trimmed by the caller)
// in one of `columns`: a superset of the rows where some column LIKE
// '%text%', read from the index. nullopt, and the caller scans, when no index
// of `table` keyed by `key` covers every one of `columns` (always on
// PostgreSQL), when `text` has fewer than three characters, or when more
// than `most` rows may hold it (a common text, which a scan finds quickly in
// any order).
std::optional<std::vector<Variant>> ListSearchCandidates(Connection& connection, std::string_view table,
                                                         std::string_view key,
                                                         const std::vector<std::string>& columns,
                                                         std::string_view text, std::size_t most);

}  // namespace corvina20::data::listsearch
