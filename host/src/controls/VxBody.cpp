// The VxBody grid: a batch recordset of detail rows with the user's edits
// raising the grid's events; saved by the card inside its transaction.
#include "corvina20/VxBody.h"

#include <algorithm>

#include "core/Text.h"
#include "corvina20/Error.h"

namespace corvina20 {
namespace {

[[noreturn]] void Refused(const std::string& why) {
  throw Error(kErrHost, "Corvina20.VxBody", why);
}

}  // namespace

VxBody::VxBody(std::string name, std::string caption)
    : Control(std::move(name), ControlKind::Grid, std::move(caption)) {}
VxBody::~VxBody() = default;

void VxBody::BindTable(std::string table, std::string rowKey, std::string linkKey,
                       std::string orderColumn) {
  table_ = std::move(table);
  rowKey_ = std::move(rowKey);
  linkKey_ = std::move(linkKey);
  orderColumn_ = std::move(orderColumn);
}

void VxBody::AddColumn(GridColumn column) { columns_.push_back(std::move(column)); }

void VxBody::LoadFor(const ConnectionPtr& connection, const Variant& linkValue) {
  if (table_.empty()) return;
  linkValue_ = linkValue;
  std::string sql = "SELECT * FROM " + table_ + " WHERE " + linkKey_ + " = ?";
  if (!orderColumn_.empty()) sql += " ORDER BY " + orderColumn_ + ", " + rowKey_;
  else sql += " ORDER BY " + rowKey_;
  // A new card has no key yet: an empty, connected row set to add rows to.
  if (linkValue.IsNull() || linkValue.IsEmpty())
    data_ = connection->OpenRecordset("SELECT * FROM " + table_ + " WHERE 1 = 0", {},
                                      LockType::Batch);
  else
    data_ = connection->OpenRecordset(sql, {linkValue}, LockType::Batch);
  selection_.clear();
  current_ = data_->RecordCount() > 0 ? 0 : -1;
  if (current_ == 0) data_->MoveFirst();
  if (RowChanged) RowChanged();
}

void VxBody::SetData(RecordsetPtr data) {
  data_ = std::move(data);
  selection_.clear();
  current_ = data_ && data_->IsOpen() && data_->RecordCount() > 0 ? 0 : -1;
}

void VxBody::Clear() {
  if (data_ && data_->IsOpen()) {
    std::vector<FieldInfo> fields;
    for (std::size_t i = 0; i < data_->FieldCount(); ++i) fields.push_back(data_->Info(i));
    data_ = Recordset::CreateInMemory(std::move(fields));
  }
  selection_.clear();
  current_ = -1;
}

long VxBody::RowCount() const { return data_ && data_->IsOpen() ? data_->RecordCount() : 0; }

void VxBody::Save() {
  saved_ = true;
  if (table_.empty() || !data_ || !data_->IsOpen()) return;
  // New rows take the card's key; the order column numbers the rows as shown.
  long position = 0;
  for (data_->MoveFirst(); !data_->IsEOF(); data_->MoveNext()) {
    ++position;
    if (data_->HasField(linkKey_)) {
      const Variant& link = data_->Fields(linkKey_).Value();
      if (link.IsNull() || !link.Equals(linkValue_)) data_->Fields(linkKey_) = linkValue_;
    }
    if (!orderColumn_.empty() && data_->HasField(orderColumn_)) {
      const Variant& order = data_->Fields(orderColumn_).Value();
      if (order.IsNull() || order.ToLong() != position)
        data_->Fields(orderColumn_) = Variant(static_cast<std::int32_t>(position));
    }
  }
  data_->WriteBatch();
}

void VxBody::AcceptSaved() {
  if (!table_.empty() && data_ && data_->IsOpen()) data_->AcceptBatch();
}

void VxBody::GoToRow(long row) {
  if (!data_ || !data_->IsOpen() || row < 0 || row >= data_->RecordCount())
    Refused("Riga " + std::to_string(row) + " inesistente nella griglia " + Name());
  data_->MoveFirst();
  for (long i = 0; i < row; ++i) data_->MoveNext();
}

void VxBody::SetCurrentRow(long row) {
  GoToRow(row);
  current_ = row;
  if (RowChanged) RowChanged();
}

void VxBody::SetCells(long row, const std::vector<std::pair<std::string, Variant>>& values) {
  if (!Enabled() || Locked()) Refused("La griglia " + Name() + " non è modificabile");
  GoToRow(row);
  for (const auto& [column, value] : values) {
    if (!data_->HasField(column)) Refused("Colonna sconosciuta nella griglia " + Name() + ": " + column);
    for (const GridColumn& c : columns_)
      if (text::EqualsNoCase(c.field, column) && !c.editable)
        Refused("La colonna " + column + " non è modificabile");
    bool cancel = false;
    if (BeforeColEdit) BeforeColEdit(column, cancel);
    if (cancel) continue;
    data_->Fields(column) = value;
    if (AfterColUpdate) AfterColUpdate(column);
  }
}

long VxBody::AddRow(const std::vector<std::pair<std::string, Variant>>& values) {
  if (!allowAddDelete_ || !Enabled() || Locked())
    Refused("Non si possono aggiungere righe alla griglia " + Name());
  if (!data_ || !data_->IsOpen()) Refused("La griglia " + Name() + " non ha dati");
  data_->AddNew();
  if (OnAddNew) OnAddNew();
  long row = data_->RecordCount() - 1;
  // The new row is the current one before its values are typed, as a
  // person's new row is: handlers of the typed values read it as current.
  current_ = row;
  if (RowChanged) RowChanged();
  SetCells(row, values);
  GoToRow(row);
  return row;
}

bool VxBody::DeleteRow(long row) {
  if (!allowAddDelete_ || !Enabled() || Locked())
    Refused("Non si possono eliminare righe dalla griglia " + Name());
  GoToRow(row);
  bool cancel = false;
  if (BeforeDeleteAt) BeforeDeleteAt(row, cancel);
  if (cancel) return false;
  GoToRow(row);  // the handler may have moved the cursor
  data_->Delete();
  selection_.clear();
  if (AfterDelete) AfterDelete();
  // The row after the deleted one becomes current (the last when it was the last).
  const long count = data_->RecordCount();
  current_ = count == 0 ? -1 : std::min(row, count - 1);
  if (current_ >= 0) GoToRow(current_);
  if (RowChanged) RowChanged();
  return true;
}

void VxBody::Select(const std::vector<long>& rows) {
  for (long row : rows)
    if (row < 0 || row >= RowCount())
      Refused("Riga " + std::to_string(row) + " inesistente nella griglia " + Name());
  selection_ = rows;
}

Variant VxBody::SelectedBookmark(std::size_t index) const {
  if (index >= selection_.size()) Refused("Selezione inesistente");
  const_cast<VxBody*>(this)->GoToRow(selection_[index]);
  return data_->Bookmark();
}

bool VxBody::PreparePopup() {
  bool cancel = false;
  if (BeforeShowPopupMenu) BeforeShowPopupMenu(cancel);
  return !cancel;
}

void VxBody::SelectPopupItem(const std::string& key) {
  if (!PreparePopup()) Refused("Menu non disponibile sulla griglia " + Name());
  const PopupItem* item = popup_.Find(key);
  if (!item || !item->enabled || !item->visible)
    Refused("Voce di menu non disponibile: " + key);
  if (PopupItemSelected) PopupItemSelected(key);
}

}  // namespace corvina20
