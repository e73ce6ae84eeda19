// See PgFullText.h. The log has the shape of SQLite's (seq, id, tag) and keeps
// at least as many entries, so the mirrors follow it unchanged. Candidates: every
// row of the mirror that has terms, as the connection sees it, ranked there
// (a few array reads each, no read from the database); SQLite narrows them
// with its FTS5 index first.
#include "data/postgres/PgFullText.h"

#include "core/Text.h"
#include "corvina20/Error.h"
#include "corvina20/FullText.h"
#include "data/fulltext/FtsMirror.h"
#include "data/fulltext/FtsRank.h"
#include "data/fulltext/FtsSqlite.h"

namespace corvina20::data::pg {
namespace {

constexpr const char* kSource = "Corvina20.FullText";
constexpr const char* kKey = "idanagrafica";
constexpr int kLogEntries = 10000;  // as on SQLite (FtsIndexes.cpp)

std::string Q(const std::string& name) {
  std::string out = "\"";
  for (char c : text::Lower(name)) {
    if (c == '"') out += '"';
    out += c;
  }
  return out + "\"";
}

std::vector<std::string> CreateStatements(const std::string& table, const std::string& column) {
  const std::string log = Q(fulltext::LogTableName(table, column));
  const std::string view = Q(fulltext::IndexTableName(table, column));
  const std::string function = Q(fulltext::LogTableName(table, column) + "_log");
  const std::string c = Q(column), t = Q(table);
  // A change of the key or the text logs the keys it touched, under a
  // random tag; the log keeps its last kLogEntries entries.
  return {
      "CREATE TABLE IF NOT EXISTS " + log +
          " (seq bigint GENERATED ALWAYS AS IDENTITY PRIMARY KEY, id bigint, tag bigint NOT NULL)",
      "INSERT INTO " + log + " (id, tag) SELECT NULL, (random() * 9007199254740991)::bigint WHERE NOT EXISTS "
          "(SELECT 1 FROM " + log + ")",
      "CREATE OR REPLACE VIEW " + view + " AS SELECT " + Q(kKey) + ", " + c + " FROM " + t,
      "CREATE OR REPLACE FUNCTION " + function + "() RETURNS trigger LANGUAGE plpgsql AS $fn$\n"
          "DECLARE\n"
          "  s bigint := 0;\n"
          "BEGIN\n"
          "  IF TG_OP <> 'INSERT' THEN\n"
          "    IF TG_OP = 'DELETE' OR OLD." + c + " IS DISTINCT FROM NEW." + c + " OR OLD." + Q(kKey) +
          " IS DISTINCT FROM NEW." + Q(kKey) + " THEN\n"
          "      INSERT INTO " + log + " (id, tag) VALUES (OLD." + Q(kKey) +
          ", (random() * 9007199254740991)::bigint) RETURNING seq INTO s;\n"
          "    END IF;\n"
          "  END IF;\n"
          "  IF TG_OP = 'INSERT' OR (TG_OP = 'UPDATE' AND OLD." + Q(kKey) + " IS DISTINCT FROM NEW." + Q(kKey) +
          ") THEN\n"
          "    INSERT INTO " + log + " (id, tag) VALUES (NEW." + Q(kKey) +
          ", (random() * 9007199254740991)::bigint) RETURNING seq INTO s;\n"
          "  END IF;\n"
          // Pruned every 256 entries: the log keeps at least kLogEntries.
          "  IF s % 256 = 0 AND s > 0 THEN\n"
          "    DELETE FROM " + log + " WHERE seq <= s - " + std::to_string(kLogEntries) + ";\n"
          "  END IF;\n"
          "  RETURN NULL;\n"
          "END\n$fn$",
      "DROP TRIGGER IF EXISTS " + Q(fulltext::LogTableName(table, column) + "_t") + " ON " + t,
      "CREATE TRIGGER " + Q(fulltext::LogTableName(table, column) + "_t") + " AFTER INSERT OR UPDATE OR DELETE ON " +
          t + " FOR EACH ROW EXECUTE FUNCTION " + function + "()",
  };
}

// The index as the connection sees it, read through its backend.
class PgMirrorSource final : public fulltext::MirrorSource {
 public:
  PgMirrorSource(Backend& backend, std::function<bool()> inTransaction, std::string table, std::string column)
      : backend_(backend), inTransaction_(std::move(inTransaction)), table_(std::move(table)),
        column_(std::move(column)), log_(Q(fulltext::LogTableName(table_, column_))) {}

  std::optional<fulltext::LogEntry> LastEntry() override {
    ResultSet r = backend_.Run("SELECT seq, tag FROM " + log_ + " ORDER BY seq DESC LIMIT 1", {});
    if (r.rows.empty()) return std::nullopt;
    return fulltext::LogEntry{r.rows[0][0].ToBigInt(), r.rows[0][1].ToBigInt(), std::nullopt};
  }
  std::optional<std::int64_t> TagAt(std::int64_t seq) override {
    ResultSet r = backend_.Run("SELECT tag FROM " + log_ + " WHERE seq = ?", {Variant(seq)});
    if (r.rows.empty()) return std::nullopt;
    return r.rows[0][0].ToBigInt();
  }
  std::vector<fulltext::LogEntry> EntriesSince(std::int64_t seq) override {
    std::vector<fulltext::LogEntry> out;
    for (const auto& row : backend_.Run("SELECT seq, tag, id FROM " + log_ + " WHERE seq > ? ORDER BY seq",
                                        {Variant(seq)}).rows) {
      fulltext::LogEntry e{row[0].ToBigInt(), row[1].ToBigInt(), std::nullopt};
      if (!row[2].IsNull()) e.key = row[2].ToBigInt();
      out.push_back(e);
    }
    return out;
  }
  void ForEachRow(const std::function<void(std::int64_t, std::string_view)>& each) override {
    // In slices of the key's order: a million rows read at once came back
    // as one result of some 150 MB, a server's peak at its start. A row
    // changed between two slices is in the log after the entry the copy
    // was read at, and is read again from there as any later change is.
    constexpr std::size_t kSlice = 50000;
    const std::string select = "SELECT " + Q(kKey) + ", " + Q(column_) + " FROM " + Q(table_) + " WHERE " +
                               Q(column_) + " IS NOT NULL";
    const std::string order = " ORDER BY " + Q(kKey) + " LIMIT " + std::to_string(kSlice);
    std::optional<std::int64_t> after;
    for (;;) {
      ResultSet slice = after ? backend_.Run(select + " AND " + Q(kKey) + " > ?" + order, {Variant(*after)})
                              : backend_.Run(select + order, {});
      for (const auto& row : slice.rows) each(row[0].ToBigInt(), row[1].StringRef());
      if (slice.rows.size() < kSlice) return;
      after = slice.rows.back()[0].ToBigInt();
    }
  }
  std::optional<std::string> RowText(std::int64_t key) override {
    ResultSet r = backend_.Run("SELECT " + Q(column_) + " FROM " + Q(table_) + " WHERE " + Q(kKey) + " = ?",
                               {Variant(key)});
    if (r.rows.empty() || r.rows[0][0].IsNull()) return std::nullopt;
    return r.rows[0][0].ToString();
  }
  bool Uncommitted() override { return inTransaction_(); }

 private:
  Backend& backend_;
  std::function<bool()> inTransaction_;
  std::string table_, column_, log_;
};

}  // namespace

void EnsureFullTextIndexes(Connection& connection) {
  const std::vector<FullTextColumn>& catalogue = FullTextCatalogue();
  for (const FullTextColumn& c : catalogue)
    if (!connection.ColumnType(c.table, c.column) || !connection.ColumnType(c.table, kKey))
      throw Error(kErrDatabase, kSource,
                  "Catalogo full-text: colonna " + c.table + "." + c.column + " (o la sua chiave IdAnagrafica) "
                  "assente dal database");
  connection.BeginTrans();
  try {
    for (const FullTextColumn& c : catalogue)
      for (const std::string& s : CreateStatements(c.table, c.column)) connection.ExecuteNative(s);
    connection.CommitTrans();
  } catch (...) {
    connection.RollbackTrans();
    throw;
  }
}

struct FullTextSearch::Index {
  std::string table, column;
  PgMirrorSource source;
  fulltext::IndexMirror mirror;
  Index(Backend& backend, const std::function<bool()>& inTransaction, const std::string& database,
        const std::string& t, const std::string& c)
      : table(t), column(c), source(backend, inTransaction, t, c), mirror(source, database, t, c) {}
};

FullTextSearch::FullTextSearch(Backend& backend, std::string database, std::function<bool()> inTransaction)
    : backend_(backend), database_(std::move(database)), inTransaction_(std::move(inTransaction)) {}

FullTextSearch::~FullTextSearch() = default;

void FullTextSearch::FollowNewest() {
  for (auto& index : indexes_) index->mirror.FollowNewest();
}

std::vector<std::pair<std::int64_t, int>> FullTextSearch::Search(const std::string& table, const std::string& column,
                                                                 const std::string& text, int minRank) {
  Index* index = nullptr;
  for (auto& i : indexes_)
    if (text::EqualsNoCase(i->table, table) && text::EqualsNoCase(i->column, column)) index = i.get();
  if (index == nullptr) {
    if (backend_.Columns(fulltext::LogTableName(table, column)).empty())
      throw Error(kErrDatabase, kSource, "Indice full-text assente: " + table + "." + column);
    indexes_.push_back(std::make_unique<Index>(backend_, inTransaction_, database_, table, column));
    index = indexes_.back().get();
  }
  fulltext::IndexMirror& mirror = index->mirror;
  mirror.Sync();
  fulltext::SearchedText searched(mirror, text);
  // Only rows holding a term that can lift them to minRank, as SQLite's
  // index gives them (FtsSqlite.cpp): the same rows, the same ranks.
  std::vector<std::string> candidates;
  for (const fulltext::CandidatePart& part : fulltext::CandidateParts(searched.Terms(), minRank, searched.Power()))
    candidates.push_back(part.term);
  std::vector<std::pair<std::int64_t, int>> found;
  mirror.ForEachRowHolding(candidates, [&](std::int64_t key, std::span<const std::uint32_t> terms) {
    double score = searched.RankTerms(mirror, terms);
    if (score < 0) return;
    int rank = fulltext::RoundRank(score);
    if (rank >= minRank) found.emplace_back(key, rank);
  });
  return found;
}

}  // namespace corvina20::data::pg
