// A SQLite connection's full-text state (FullTextState, FtsMirror.h): for
// each index it searched, the mirror, the source the mirror reads the
// connection through, and the search table's MATCH statement.
#include <algorithm>

#include "core/Text.h"
#include "corvina20/Error.h"
#include "data/fulltext/FtsMirror.h"
#include "data/fulltext/FtsSqlite.h"

namespace corvina20::data::fulltext {
namespace {

constexpr const char* kKey = "IdAnagrafica";

std::string Q(const std::string& name) { return "\"" + name + "\""; }

[[noreturn]] void Fail(sqlite3* db, const std::string& what) {
  throw Error(kErrDatabase, "Corvina20.FullText", what + ": " + sqlite3_errmsg(db));
}

// Resets a statement when the scope ends, however it ends.
struct Reset {
  sqlite3_stmt* st;
  ~Reset() {
    sqlite3_reset(st);
    sqlite3_clear_bindings(st);
  }
};

// Steps a statement that yields at most one row; true when it did.
bool StepOne(sqlite3* db, sqlite3_stmt* st, const std::string& what) {
  int rc = sqlite3_step(st);
  if (rc == SQLITE_ROW) return true;
  if (rc != SQLITE_DONE) Fail(db, what);
  return false;
}

// The index of table.column through one connection, its statements
// prepared on first use and kept.
class SqliteSource : public MirrorSource {
 public:
  SqliteSource(sqlite3* db, std::string table, std::string column)
      : db_(db), table_(std::move(table)), column_(std::move(column)), log_(Q(LogTableName(table_, column_))) {}
  ~SqliteSource() override {
    for (sqlite3_stmt* st : {last_, tagAt_, since_, rowText_, match_}) sqlite3_finalize(st);
  }

  std::optional<LogEntry> LastEntry() override {
    sqlite3_stmt* st = Prepared(last_, "SELECT seq, tag FROM " + log_ + " ORDER BY seq DESC LIMIT 1");
    Reset reset{st};
    if (!StepOne(db_, st, kLogRead)) return std::nullopt;
    return LogEntry{sqlite3_column_int64(st, 0), sqlite3_column_int64(st, 1), std::nullopt};
  }

  std::optional<std::int64_t> TagAt(std::int64_t seq) override {
    sqlite3_stmt* st = Prepared(tagAt_, "SELECT tag FROM " + log_ + " WHERE seq = ?1");
    Reset reset{st};
    sqlite3_bind_int64(st, 1, seq);
    if (!StepOne(db_, st, kLogRead)) return std::nullopt;
    return sqlite3_column_int64(st, 0);
  }

  std::vector<LogEntry> EntriesSince(std::int64_t seq) override {
    sqlite3_stmt* st = Prepared(since_, "SELECT seq, tag, id FROM " + log_ + " WHERE seq > ?1 ORDER BY seq");
    Reset reset{st};
    sqlite3_bind_int64(st, 1, seq);
    std::vector<LogEntry> entries;
    int rc;
    while ((rc = sqlite3_step(st)) == SQLITE_ROW) {
      LogEntry e{sqlite3_column_int64(st, 0), sqlite3_column_int64(st, 1), std::nullopt};
      if (sqlite3_column_type(st, 2) == SQLITE_INTEGER) e.key = sqlite3_column_int64(st, 2);
      entries.push_back(e);
    }
    if (rc != SQLITE_DONE) Fail(db_, kLogRead);
    return entries;
  }

  void ForEachRow(const std::function<void(std::int64_t, std::string_view)>& row) override {
    sqlite3_stmt* all = nullptr;
    std::string sql = "SELECT " + Q(kKey) + ", " + Q(column_) + " FROM " + Q(table_);
    if (sqlite3_prepare_v2(db_, sql.c_str(), -1, &all, nullptr) != SQLITE_OK) {
      sqlite3_finalize(all);
      Fail(db_, "Lettura di " + table_);
    }
    std::unique_ptr<sqlite3_stmt, int (*)(sqlite3_stmt*)> closer(all, sqlite3_finalize);
    int rc;
    while ((rc = sqlite3_step(all)) == SQLITE_ROW) {
      if (sqlite3_column_type(all, 0) != SQLITE_INTEGER || sqlite3_column_type(all, 1) == SQLITE_NULL) continue;
      const unsigned char* text = sqlite3_column_text(all, 1);
      row(sqlite3_column_int64(all, 0),
          std::string_view(reinterpret_cast<const char*>(text), static_cast<std::size_t>(sqlite3_column_bytes(all, 1))));
    }
    if (rc != SQLITE_DONE) Fail(db_, "Lettura di " + table_);
  }

  std::optional<std::string> RowText(std::int64_t key) override {
    sqlite3_stmt* st =
        Prepared(rowText_, "SELECT " + Q(column_) + " FROM " + Q(table_) + " WHERE " + Q(kKey) + " = ?1");
    Reset reset{st};
    sqlite3_bind_int64(st, 1, key);
    if (!StepOne(db_, st, "Lettura della riga " + std::to_string(key)) || sqlite3_column_type(st, 0) == SQLITE_NULL)
      return std::nullopt;
    return std::string(reinterpret_cast<const char*>(sqlite3_column_text(st, 0)),
                       static_cast<std::size_t>(sqlite3_column_bytes(st, 0)));
  }

  bool Uncommitted() override { return sqlite3_txn_state(db_, "main") == SQLITE_TXN_WRITE; }

  sqlite3_stmt* Match() {
    std::string index = Q(IndexTableName(table_, column_));
    return Prepared(match_, "SELECT rowid FROM " + index + " WHERE " + index + " MATCH ?1");
  }

 private:
  static constexpr const char* kLogRead = "Registro dell'indice full-text";

  sqlite3_stmt* Prepared(sqlite3_stmt*& st, const std::string& sql) {
    if (st) return st;
    if (sqlite3_prepare_v3(db_, sql.c_str(), -1, SQLITE_PREPARE_PERSISTENT, &st, nullptr) != SQLITE_OK) {
      std::string message = sqlite3_errmsg(db_);
      sqlite3_finalize(st);
      st = nullptr;
      throw Error(kErrDatabase, "Corvina20.FullText",
                  "Indice full-text assente: " + table_ + "." + column_ + " (" + message + ")");
    }
    return st;
  }

  sqlite3* db_;
  std::string table_, column_, log_;
  sqlite3_stmt* last_ = nullptr;
  sqlite3_stmt* tagAt_ = nullptr;
  sqlite3_stmt* since_ = nullptr;
  sqlite3_stmt* rowText_ = nullptr;
  sqlite3_stmt* match_ = nullptr;
};

}  // namespace

struct FullTextState::Index {
  Index(sqlite3* db, const std::string& database, std::string table, std::string column)
      : source(db, table, column), mirror(source, database, std::move(table), std::move(column)) {}
  SqliteSource source;
  IndexMirror mirror;
};

FullTextState::FullTextState(sqlite3* db) : db_(db) {
  // A file's connections share their copies of its indexes; a database in
  // memory or in a temporary file is the connection's own.
  const char* file = sqlite3_db_filename(db, "main");
  database_ = file != nullptr ? file : "";
}

FullTextState::~FullTextState() = default;

FullTextState::Index& FullTextState::IndexOf(std::string_view table, std::string_view column) {
  std::string name = text::Upper(std::string(table) + "." + std::string(column));
  auto& slot = indexes_[name];
  if (!slot) slot = std::make_unique<Index>(db_, database_, std::string(table), std::string(column));
  return *slot;
}

IndexMirror& FullTextState::Mirror(std::string_view table, std::string_view column) {
  Index& index = IndexOf(table, column);
  index.mirror.Sync();
  return index.mirror;
}

sqlite3_stmt* FullTextState::MatchStatement(std::string_view table, std::string_view column) {
  return IndexOf(table, column).source.Match();
}

void FullTextState::FollowNewest() {
  for (auto& [name, index] : indexes_) index->mirror.FollowNewest();
}

void FullTextState::Release() { indexes_.clear(); }

}  // namespace corvina20::data::fulltext
