// The record lists' search on PostgreSQL: a trigram index (the server's
// pg_trgm extension, GIN) on each searched column folded as the module's LIKE
// folds it (lower case under the ICU root locale, accents kept: the host's
// corvina_like, which the server inlines into a regular expression match on
// that very expression). The server's planner then reads the index for the
// list's own LIKE when a text is rare, and the list's order when it is
// common: measured at a million parties, better both ways than handing the
// list a set of candidate keys first as on SQLite (listsearch/
// ListSearchIndex.h), which the lists there still do.
#pragma once

#include <string>
#include <vector>

#include "corvina20/Connection.h"

namespace corvina20::data::pg {

// Makes the trigram index of each of `columns` of `table` exist (and the
// extension, which a database owner may create: it is a trusted one), then
// analyses the table, without which the planner has no statistics of the
// folded columns and guesses every text rare. Returns how many it made. When
// the server has no pg_trgm, or the role may not create it, makes none and
// returns 0: the lists read the register.
int EnsureListSearchIndexes(Connection& connection, const std::string& table, const std::vector<std::string>& columns);

}  // namespace corvina20::data::pg
