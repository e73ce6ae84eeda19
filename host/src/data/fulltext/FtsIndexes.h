// Creating, rebuilding and dropping the full-text indexes that the catalogue
// (data/fulltext.tsv) asks for, on the database a connection has open.
// Not for: searching them (FREETEXTTABLE, FtsSqlite.h).
#pragma once

#include "corvina20/Connection.h"

namespace corvina20::data::fulltext {

// Bumped whenever the tokenizer or the tables of an index change: indexes
// built by another version are rebuilt.
// 2: a change log for the connections' mirrors instead of a table of term
// frequencies. 3: terms through the thesaurus and stemmed. 4: stems undo
// inflection only.
inline constexpr int kIndexVersion = 4;

// What CORFullText.Versione records for an index built now: kIndexVersion
// and the thesaurus's checksum, so that an index built with another
// thesaurus (data/thesaurus.tsv edited) is rebuilt too. Throws as
// LoadedThesaurus when the thesaurus is malformed.
int IndexVersion();

// Makes the database's indexes those of the catalogue: creates each missing
// index (FTS5 table, change log, triggers) and fills it from the rows
// already there, rebuilds one of another version, drops those the catalogue
// no longer lists. Records them in CORFullText (NomeIndice, Tabella, Colonna,
// Versione). Idempotent: on an up-to-date database it changes nothing.
// Returns how many indexes it built. REQUIRES: no transaction open on
// `connection`. Throws corvina20::Error kErrDatabase when a catalogue column
// does not exist (nothing is changed then) or a statement fails (rolled back).
int EnsureFullTextIndexes(Connection& connection);

}  // namespace corvina20::data::fulltext
