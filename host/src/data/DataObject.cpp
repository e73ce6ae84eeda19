// The data object: a transaction on the session's connection and the
// statements run inside it.
#include "corvina20/DataObject.h"

#include "corvina20/Error.h"

namespace corvina20 {

DataObject::DataObject(ConnectionPtr connection) : connection_(std::move(connection)) {}

DataObject::~DataObject() {
  if (open_) {
    try {
      connection_->RollbackTrans();
    } catch (...) {
      // Already gone with the connection; nothing was committed.
    }
  }
}

void DataObject::BeginTrans() {
  if (open_)
    throw Error(kErrTransaction, "Corvina20.DataObject",
                "La transazione di questo oggetto dati è già aperta: le transazioni annidate non "
                "sono ammesse");
  connection_->BeginTrans();
  open_ = true;
}

long DataObject::Execute(std::string_view tsql, const std::vector<Variant>& params) {
  return connection_->Execute(tsql, params);
}

void DataObject::CommitTrans() {
  if (!open_)
    throw Error(kErrTransaction, "Corvina20.DataObject",
                "Nessuna transazione aperta su questo oggetto dati");
  open_ = false;
  connection_->CommitTrans();
}

void DataObject::RollbackTrans() {
  if (!open_)
    throw Error(kErrTransaction, "Corvina20.DataObject",
                "Nessuna transazione aperta su questo oggetto dati");
  open_ = false;
  connection_->RollbackTrans();
}

}  // namespace corvina20
