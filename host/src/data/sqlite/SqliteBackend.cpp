// SQLite implementation of Backend. Values are read by storage class and then
// typed by the column's declared SQL Server type (kept verbatim by SQLite), so
// a "bit" column reads as Boolean and a "datetime" as Date on every query.
#include "data/sqlite/SqliteBackend.h"

#include <sqlite3.h>

#include <string>

#include "corvina20/Error.h"
#include "data/AdoTypes.h"
#include "data/fulltext/FtsSqlite.h"
#include "data/listsearch/ListSearchIndex.h"
#include "data/sqlite/SqliteText.h"

namespace corvina20::data {
namespace {

class Statement {
 public:
  Statement(sqlite3* db, std::string_view sql) {
    const char* tail = nullptr;
    int rc = sqlite3_prepare_v2(db, sql.data(), static_cast<int>(sql.size()), &stmt_, &tail);
    if (rc != SQLITE_OK) Fail(db, sql);
  }
  ~Statement() { sqlite3_finalize(stmt_); }
  sqlite3_stmt* get() const { return stmt_; }

  [[noreturn]] static void Fail(sqlite3* db, std::string_view sql) {
    throw Error(kErrDatabase, "Corvina20.SQLite",
                std::string(sqlite3_errmsg(db)) + " [" + std::string(sql) + "]");
  }

 private:
  sqlite3_stmt* stmt_ = nullptr;
};

void Bind(sqlite3_stmt* stmt, int index, const Variant& v) {
  switch (v.Kind()) {
    case VariantKind::Empty:
    case VariantKind::Null:
      sqlite3_bind_null(stmt, index);
      break;
    case VariantKind::Boolean:
      sqlite3_bind_int(stmt, index, v.ToBool() ? 1 : 0);
      break;
    case VariantKind::Integer:
    case VariantKind::Long:
    case VariantKind::BigInt:
      sqlite3_bind_int64(stmt, index, v.ToBigInt());
      break;
    case VariantKind::Single:
    case VariantKind::Double:
    case VariantKind::Currency:
    case VariantKind::Decimal:
      sqlite3_bind_double(stmt, index, v.ToDouble());
      break;
    case VariantKind::Date: {
      std::string iso = v.ToDate().ToIso();
      sqlite3_bind_text(stmt, index, iso.c_str(), static_cast<int>(iso.size()), SQLITE_TRANSIENT);
      break;
    }
    case VariantKind::String:
      sqlite3_bind_text(stmt, index, v.StringRef().c_str(), static_cast<int>(v.StringRef().size()),
                        SQLITE_TRANSIENT);
      break;
  }
}

Variant ReadRaw(sqlite3_stmt* stmt, int col) {
  switch (sqlite3_column_type(stmt, col)) {
    case SQLITE_INTEGER: {
      sqlite3_int64 v = sqlite3_column_int64(stmt, col);
      if (v >= INT32_MIN && v <= INT32_MAX) return Variant(static_cast<std::int32_t>(v));
      return Variant(static_cast<std::int64_t>(v));
    }
    case SQLITE_FLOAT:
      return Variant(sqlite3_column_double(stmt, col));
    case SQLITE_TEXT:
      return Variant(std::string(reinterpret_cast<const char*>(sqlite3_column_text(stmt, col)),
                                 static_cast<std::size_t>(sqlite3_column_bytes(stmt, col))));
    case SQLITE_BLOB:
      return Variant(std::string(static_cast<const char*>(sqlite3_column_blob(stmt, col)),
                                 static_cast<std::size_t>(sqlite3_column_bytes(stmt, col))));
    default:
      return Variant::Null();
  }
}

const char* OrEmpty(const char* s) { return s ? s : ""; }

class SqliteBackend final : public Backend {
 public:
  explicit SqliteBackend(const std::string& path) {
    int rc = sqlite3_open_v2(path.c_str(), &db_, SQLITE_OPEN_READWRITE | SQLITE_OPEN_CREATE,
                             nullptr);
    if (rc != SQLITE_OK) {
      std::string msg = db_ ? sqlite3_errmsg(db_) : "out of memory";
      sqlite3_close(db_);
      db_ = nullptr;
      throw Error(kErrDatabase, "Corvina20.SQLite",
                  "Impossibile aprire il database " + path + ": " + msg);
    }
    // Several sessions (web host threads, the command line) share the file:
    // wait for a lock rather than fail at once.
    sqlite3_busy_timeout(db_, 10000);
    // Before anything reads the schema: its text columns name the collation.
    try {
      RegisterTextSemantics(db_);
    } catch (...) {
      sqlite3_close(db_);
      db_ = nullptr;
      throw;
    }
    RunScript("PRAGMA journal_mode=WAL; PRAGMA foreign_keys=ON; PRAGMA synchronous=NORMAL;");
    fulltext::RegisterFullText(db_);
    listsearch::RegisterListSearch(db_);
  }
  ~SqliteBackend() override { fulltext::ReleaseFullText(db_); sqlite3_close_v2(db_); }

  void FollowNewestCopies() override {
    try {
      Run("SELECT corvina_ft_follow()", {});
    } catch (const std::exception&) {
      // The next search follows them anyway.
    }
  }

  SqlDialect Dialect() const override { return SqlDialect::Sqlite; }
  std::string Name() const override { return "sqlite"; }

  ResultSet Run(std::string_view sql, const std::vector<Variant>& params) override {
    Statement st(db_, sql);
    sqlite3_stmt* s = st.get();
    int expected = sqlite3_bind_parameter_count(s);
    if (expected != static_cast<int>(params.size())) {
      throw Error(kErrDatabase, "Corvina20.SQLite",
                  "Numero di parametri errato: attesi " + std::to_string(expected) +
                      ", forniti " + std::to_string(params.size()) + " [" + std::string(sql) + "]");
    }
    for (std::size_t i = 0; i < params.size(); ++i) Bind(s, static_cast<int>(i + 1), params[i]);

    ResultSet result;
    int n = sqlite3_column_count(s);
    std::vector<int> types(static_cast<std::size_t>(n), ado::kVariant);
    std::vector<int> scales(static_cast<std::size_t>(n), 0);
    for (int i = 0; i < n; ++i) {
      ResultColumn c;
      c.name = OrEmpty(sqlite3_column_name(s, i));
      c.declType = OrEmpty(sqlite3_column_decltype(s, i));
      c.baseTable = OrEmpty(sqlite3_column_table_name(s, i));
      c.baseColumn = OrEmpty(sqlite3_column_origin_name(s, i));
      types[static_cast<std::size_t>(i)] = ado::TypeOfSqlServerType(c.declType);
      scales[static_cast<std::size_t>(i)] = ScaleOfSqlServerType(c.declType);
      result.columns.push_back(std::move(c));
    }
    for (;;) {
      int rc = sqlite3_step(s);
      if (rc == SQLITE_DONE) break;
      if (rc != SQLITE_ROW) Statement::Fail(db_, sql);
      std::vector<Variant> row;
      row.reserve(static_cast<std::size_t>(n));
      for (int i = 0; i < n; ++i) {
        auto k = static_cast<std::size_t>(i);
        row.push_back(CoerceToAdoType(ReadRaw(s, i), types[k], scales[k]));
      }
      result.rows.push_back(std::move(row));
    }
    result.changes = n == 0 ? sqlite3_changes(db_) : 0;
    lastInsertId_ = sqlite3_last_insert_rowid(db_);
    return result;
  }

  void RunScript(std::string_view sql) override {
    std::string text(sql);
    char* err = nullptr;
    if (sqlite3_exec(db_, text.c_str(), nullptr, nullptr, &err) != SQLITE_OK) {
      std::string msg = err ? err : sqlite3_errmsg(db_);
      sqlite3_free(err);
      throw Error(kErrDatabase, "Corvina20.SQLite",
                  msg + " [" + (text.size() > 80 ? text.substr(0, 80) + "…" : text) + "]");
    }
  }

  // IMMEDIATE takes the write lock at once: two sessions that both read and
  // then write can't deadlock on a lock upgrade in WAL mode.
  void Begin() override { RunScript("BEGIN IMMEDIATE"); }
  void Commit() override { RunScript("COMMIT"); }
  void Rollback() override { RunScript("ROLLBACK"); }

  std::vector<TableColumn> Columns(std::string_view table) override {
    std::vector<TableColumn> cols;
    Statement st(db_, "SELECT name, type, pk, \"notnull\" FROM pragma_table_info(?)");
    std::string t(table);
    sqlite3_bind_text(st.get(), 1, t.c_str(), static_cast<int>(t.size()), SQLITE_TRANSIENT);
    while (sqlite3_step(st.get()) == SQLITE_ROW) {
      TableColumn c;
      c.name = reinterpret_cast<const char*>(sqlite3_column_text(st.get(), 0));
      c.declType = OrEmpty(reinterpret_cast<const char*>(sqlite3_column_text(st.get(), 1)));
      c.keyPosition = sqlite3_column_int(st.get(), 2);
      c.notNull = sqlite3_column_int(st.get(), 3) != 0;
      cols.push_back(std::move(c));
    }
    return cols;
  }

  std::int64_t LastInsertId() override { return lastInsertId_; }

 private:
  sqlite3* db_ = nullptr;
  std::int64_t lastInsertId_ = 0;
};

}  // namespace

std::unique_ptr<Backend> OpenSqliteBackend(const std::string& path) {
  return std::make_unique<SqliteBackend>(path);
}

Backend::~Backend() = default;

}  // namespace corvina20::data
