// The database underneath a Connection, in its own dialect. A backend runs
// native SQL with bound parameters and reports column metadata; it knows
// nothing of T-SQL (the translator's job) or recordsets (the Connection's).
// SQLite is the embedded default; other servers implement the same interface.
#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

#include "corvina20/Variant.h"

namespace corvina20::data {

enum class SqlDialect { Sqlite, Postgres };

struct ResultColumn {
  std::string name;
  std::string declType;    // declared column type when the column is a table column, else ""
  std::string baseTable;   // origin table, "" for computed columns
  std::string baseColumn;  // origin column
};

struct ResultSet {
  std::vector<ResultColumn> columns;
  std::vector<std::vector<Variant>> rows;
  long changes = 0;  // rows changed, for statements that change rows
};

struct TableColumn {
  std::string name;
  std::string declType;
  int keyPosition = 0;  // 1-based position in the primary key, 0 when not part of it
  bool notNull = false;
};

class Backend {
 public:
  virtual ~Backend();
  virtual SqlDialect Dialect() const = 0;
  virtual std::string Name() const = 0;

  // Runs one native statement with `params` bound to its placeholders in
  // order. Values come back typed by the declared column type when there is
  // one (a "bit" column gives Boolean, "datetime" a Date, "money" Currency…).
  // Throws corvina20::Error kErrDatabase with the backend's message.
  virtual ResultSet Run(std::string_view sql, const std::vector<Variant>& params) = 0;
  // Runs a script of several statements without parameters.
  virtual void RunScript(std::string_view sql) = 0;

  virtual void Begin() = 0;
  virtual void Commit() = 0;
  virtual void Rollback() = 0;

  // The key the last INSERT generated (an IDENTITY column's value).
  virtual std::int64_t LastInsertId() = 0;

  // The columns of a table (case-insensitive name); empty when it does not exist.
  virtual std::vector<TableColumn> Columns(std::string_view table) = 0;

  // For a backend whose translator leaves FREETEXTTABLE to the host
  // (PostgreSQL): the rows of table.column sharing a word with `text`, as
  // (KEY, RANK), RANK at least `minRank`. The default throws kErrDatabase.
  virtual std::vector<std::pair<std::int64_t, int>> FreeText(const std::string& table, const std::string& column,
                                                             const std::string& text, int minRank);

  // Moves the backend's full-text mirrors to the newest shared copies
  // (fulltext/FtsShared.h), so that a backend idle between requests (in a
  // server's pool) does not keep an older copy alive: a few tens of MB at a
  // million parties. Reads nothing when there is no newer copy. Call it
  // between statements, outside a transaction. Never throws: the next
  // search follows them anyway. The default does nothing.
  virtual void FollowNewestCopies();
};

}  // namespace corvina20::data
