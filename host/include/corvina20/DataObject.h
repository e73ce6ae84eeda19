// The host's data object: a transaction with statements run inside it, the
// way the module's merges and deletions write several tables at once. One
// transaction at a time on the session's connection: beginning a second one
// (on this object or while the connection is already in one) is refused with
// kErrTransaction and a clear description. A data object destroyed with its
// transaction still open rolls it back, so nothing half-written stays.
#pragma once

#include <string_view>
#include <vector>

#include "corvina20/Connection.h"
#include "corvina20/Variant.h"

namespace corvina20 {

class DataObject {
 public:
  // REQUIRES: connection not null.
  explicit DataObject(ConnectionPtr connection);
  ~DataObject();
  DataObject(const DataObject&) = delete;
  DataObject& operator=(const DataObject&) = delete;

  void BeginTrans();
  // Runs a T-SQL statement; returns the rows changed. Allowed with or without
  // a transaction. Raises kErrDatabase on failure (the transaction stays open:
  // the caller rolls back).
  long Execute(std::string_view tsql, const std::vector<Variant>& params = {});
  // Raise kErrTransaction when this object has no open transaction.
  void CommitTrans();
  void RollbackTrans();
  bool InTransaction() const { return open_; }

 private:
  ConnectionPtr connection_;
  bool open_ = false;
};

}  // namespace corvina20
