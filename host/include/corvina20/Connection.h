// The session's database connection as the module sees it: T-SQL text in,
// recordsets and row counts out. Every statement is translated from the T-SQL
// subset the module speaks to the dialect of the backend underneath (SQLite by
// default); values travel as bound parameters ("?" in the text), never pasted
// in. One connection per session, shared by the host's query objects and the
// module's recordsets. Not for: opening databases (the host does that).
#pragma once

#include <memory>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "corvina20/Recordset.h"
#include "corvina20/Variant.h"

namespace corvina20 {

namespace data {
class Backend;
class BackendPool;
}

class Connection : public std::enable_shared_from_this<Connection> {
 public:
  // Host side: wraps an open backend, the connection's own for its life.
  explicit Connection(std::unique_ptr<data::Backend> backend);
  // Host side: borrows a backend from `pool` when a statement needs one and
  // keeps it until ReleaseBackend gives it back (see data/BackendPool.h).
  explicit Connection(std::shared_ptr<data::BackendPool> pool);
  ~Connection();
  Connection(const Connection&) = delete;
  Connection& operator=(const Connection&) = delete;

  // Runs a T-SQL query and returns its rows as an open recordset. When the
  // query reads one table with its whole key among the selected columns, the
  // recordset can write back (lock Immediate or Batch); otherwise it is
  // read-only. Raises kErrDatabase with the backend's message (or the
  // translator's, naming the construct it does not know) on failure.
  RecordsetPtr OpenRecordset(std::string_view tsql, const std::vector<Variant>& params = {},
                             LockType lock = LockType::Immediate);

  // Runs a T-SQL statement (or several separated by ';'); returns the rows
  // changed by the last one. Raises kErrDatabase on failure.
  long Execute(std::string_view tsql, const std::vector<Variant>& params = {});

  // Runs text already in the backend's own dialect, untranslated: for the
  // host's schema and data scripts only, never for module SQL.
  void ExecuteNative(std::string_view sql);
  // Host side: the statements in the backend's dialect that `tsql` becomes,
  // as OpenRecordset and Execute would run them (for plans and diagnostics).
  // Raises kErrDatabase as they do for text outside the subset.
  std::vector<std::string> NativeStatements(std::string_view tsql);

  // One transaction at a time. BeginTrans while one is open, and Commit or
  // Rollback without one, raise kErrTransaction.
  void BeginTrans();
  void CommitTrans();
  void RollbackTrans();
  bool InTransaction() const;

  // The declared SQL Server type of a column, nullopt when the table or the
  // column does not exist. Case-insensitive names.
  std::optional<std::string> ColumnType(std::string_view table, std::string_view column);
  // The primary-key columns of a table in key order; empty when none.
  std::vector<std::string> KeyColumns(std::string_view table);
  bool TableExists(std::string_view table);

  // Host side, from any thread: the session that owns this connection is
  // ending. From now on nothing more is written: a transaction in progress is
  // rolled back at its commit and every write raises kErrTransaction; reads
  // still work. Cannot be undone.
  void Abandon();
  // Raises kErrTransaction when the connection was abandoned.
  void RequireWritable() const;

  // "sqlite" or "postgresql".
  std::string BackendName() const;

  // Host side: the backend, for the host's own services; a pooled
  // connection borrows one if it has none. Valid until ReleaseBackend.
  data::Backend& Backend();

  // Host side, between a session's requests: a pooled connection outside a
  // transaction gives its backend back to the pool (true); the next
  // statement borrows one again, maybe another, which sees the same
  // committed data. A connection on its own backend, or in a transaction,
  // keeps it (false).
  bool ReleaseBackend();

 private:
  struct Impl;
  std::unique_ptr<Impl> impl_;
};

using ConnectionPtr = std::shared_ptr<Connection>;

}  // namespace corvina20
