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

// The column as corvina_like compares it, in a collation LIKE and the
// trigram operators accept (the column's own ignores case, and PostgreSQL
// refuses LIKE on such a collation).
std::string Folded(const std::string& column) { return "(lower(" + Q(column) + " COLLATE \"und-x-icu\") COLLATE \"C\")"; }

bool HasIndex(Backend& backend, const std::string& table, const std::string& column) {
  return !backend.Run("SELECT 1 FROM pg_indexes WHERE tablename = ? AND indexname = ?",
                      {Variant(corvina20::text::Lower(table)), Variant(IndexName(table, column))})
              .rows.empty();
}

// pg_trgm takes its trigrams from the runs of letters and digits of a
// pattern; without one of three it would read the whole index.
bool HasThreeInARun(std::string_view text) {
  int run = 0;
  for (char c : text) {
    const bool alnum = (c >= 'a' && c <= 'z') || (c >= 'A' && c <= 'Z') || (c >= '0' && c <= '9');
    run = alnum ? run + 1 : 0;
    if (run == 3) return true;
  }
  return false;
}

// `text` taken literally in a LIKE pattern (backslash is the escape).
std::string LikeEscaped(std::string_view text) {
  std::string out;
  for (char c : text) {
    if (c == '\\' || c == '%' || c == '_') out += '\\';
    out += c;
  }
  return out;
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
  // list's order until the page was full (7 ms).
  if (made > 0) connection.ExecuteNative("ANALYZE " + Q(table));
  return made;
}

std::optional<std::vector<Variant>> ListSearchCandidates(Connection& connection, const std::string& table,
                                                         const std::string& key,
                                                         const std::vector<std::string>& columns,
                                                         std::string_view text, std::size_t most) {
  if (!HasThreeInARun(text)) return std::nullopt;
  Backend& backend = connection.Backend();
  for (const std::string& column : columns)
    if (!HasIndex(backend, table, column)) return std::nullopt;
  // Folded by the server, as the rows are.
  const std::string folded =
      backend.Run("SELECT lower(CAST(? AS text) COLLATE \"und-x-icu\")", {Variant(std::string(text))}).rows.at(0).at(0).ToString();
  const Variant pattern("%" + LikeEscaped(folded) + "%");
  std::string where;
  std::vector<Variant> params;
  for (const std::string& column : columns) {
    where += (where.empty() ? "" : " OR ") + Folded(column) + " LIKE ?";
    params.push_back(pattern);
  }
  params.push_back(Variant(static_cast<std::int64_t>(most) + 1));
  ResultSet rows = backend.Run("SELECT " + Q(key) + " FROM " + Q(table) + " WHERE " + where + " LIMIT ?", params);
  if (rows.rows.size() > most) return std::nullopt;
  std::vector<Variant> keys;
  keys.reserve(rows.rows.size());
  for (auto& r : rows.rows) keys.push_back(std::move(r[0]));
  return keys;
}

}  // namespace corvina20::data::pg
