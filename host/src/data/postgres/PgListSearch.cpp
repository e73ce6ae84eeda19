// Trigram indexes for the record lists' search on PostgreSQL.
#include "data/postgres/PgListSearch.h"

#include "core/Text.h"
#include "data/Backend.h"

namespace corvina20::data::pg {
namespace {

std::string Q(const std::string& name) { return "\"" + corvina20::text::Lower(name) + "\""; }

std::string IndexName(const std::string& table, const std::string& column) {
  return corvina20::text::Lower("corls_" + table + "_" + column);
}

// The column exactly as corvina_like folds it before its match, so that the
// server recognises the index's expression in the list's LIKE.
std::string Folded(const std::string& column) { return "(lower(" + Q(column) + " COLLATE \"und-x-icu\") COLLATE \"C\")"; }

bool HasIndex(Backend& backend, const std::string& table, const std::string& column) {
  return !backend.Run("SELECT 1 FROM pg_indexes WHERE tablename = ? AND indexname = ?",
                      {Variant(corvina20::text::Lower(table)), Variant(IndexName(table, column))})
              .rows.empty();
}

}  // namespace

int EnsureListSearchIndexes(Connection& connection, const std::string& table, const std::vector<std::string>& columns) {
  Backend& backend = connection.Backend();
  try {
    if (backend.Run("SELECT 1 FROM pg_extension WHERE extname = 'pg_trgm'", {}).rows.empty())
      connection.ExecuteNative("CREATE EXTENSION IF NOT EXISTS pg_trgm");
  } catch (const std::exception&) {
    return 0;  // not installed, or not ours to create: the lists scan
  }
  int made = 0;
  for (const std::string& column : columns) {
    if (HasIndex(backend, table, column)) continue;
    connection.ExecuteNative("CREATE INDEX " + Q(IndexName(table, column)) + " ON " + Q(table) + " USING gin (" +
                             Folded(column) + " gin_trgm_ops)");
    ++made;
  }
  // The server keeps statistics of an indexed expression only once the
  // table is analysed: without them it guessed a hundred rows for any text,
  // and a common one ("trasporti", a hundred thousand rows at a million
  // parties) was read whole and sorted (324 ms) instead of reading the
  // list's order until the page was full.
  if (made > 0) connection.ExecuteNative("ANALYZE " + Q(table));
  return made;
}

}  // namespace corvina20::data::pg
