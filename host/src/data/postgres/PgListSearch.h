// The record lists' search on PostgreSQL: a trigram index (the server's
// pg_trgm extension, GIN) on each searched column folded as the module's LIKE
// folds it (lower case under the ICU root locale, accents kept; the host's
// corvina_like), so that a search for "containing x" reads the few rows
// holding x instead of scanning the register. It narrows only, as the SQLite
// index does (listsearch/ListSearchIndex.h): the list still applies its own
// LIKE to the rows it is given.
#pragma once

#include <cstddef>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "corvina20/Connection.h"
#include "corvina20/Variant.h"

namespace corvina20::data::pg {

// Makes the trigram index of each of `columns` of `table` exist (and the
// extension, which a database owner may create: it is a trusted one).
// Returns how many it made. When the server has no pg_trgm, or the role may
// not create it, makes none and returns 0: the lists scan.
int EnsureListSearchIndexes(Connection& connection, const std::string& table, const std::vector<std::string>& columns);

// The keys (`key` of `table`) of the rows where one of `columns` may contain
// `text`, read from the trigram indexes: a superset of the rows whose column
// LIKE '%text%' as the module compares. nullopt, and the caller scans, when a
// column has no index, when the text holds no run of three letters or digits
// (the index could not narrow it), or when more than `most` rows hold it.
std::optional<std::vector<Variant>> ListSearchCandidates(Connection& connection, const std::string& table,
                                                         const std::string& key,
                                                         const std::vector<std::string>& columns,
                                                         std::string_view text, std::size_t most);

}  // namespace corvina20::data::pg
