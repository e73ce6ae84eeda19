// The Card control's record cycle. The current record lives in one-row
// recordsets of the main and satellite tables; bound controls are copied in
// before ActionInside and written back to the database by key inside one
// transaction. A failed save is rolled back and the recordsets are rebuilt as
// they were, so the user can correct and save again.
#include "corvina20/Card.h"

#include "core/Text.h"
#include "data/text/TextFold.h"
#include "corvina20/Error.h"
#include "corvina20/Form.h"
#include "corvina20/VxBody.h"
#include "corvina20/VxCode.h"

namespace corvina20 {
namespace {

[[noreturn]] void Refused(const std::string& why) {
  throw Error(kErrHost, "Corvina20.Card", why);
}

// A database value as a control shows it: blanks for nulls, false for
// check boxes.
Variant ForControl(const Control& control, const Variant& value) {
  if (control.Kind() == ControlKind::Check) return Variant(!value.IsNull() && value.ToBool());
  if (value.IsNull()) return Variant();
  return value;
}

// A control's value as the database stores it: blanks become nulls.
Variant ForDatabase(const Variant& value) {
  if (value.IsEmpty()) return Variant::Null();
  if (value.Kind() == VariantKind::String && value.StringRef().empty()) return Variant::Null();
  return value;
}

std::vector<Variant> RowValues(Recordset& rs) {
  std::vector<Variant> values;
  if (rs.IsEOF() || rs.IsBOF()) return values;
  for (std::size_t i = 0; i < rs.FieldCount(); ++i) values.push_back(rs.Fields(i).Value());
  return values;
}

}  // namespace

struct Card::Snapshot {
  struct Row {
    std::string table;
    bool isNew = false;
    Variant key;
    std::vector<Variant> values;
  };
  std::vector<Row> rows;  // main first, then satellites
};

Card::Card(std::string name, Form& form) : Control(std::move(name), ControlKind::Card, ""), form_(form) {}
Card::~Card() = default;

void Card::SetMainTable(std::string table, std::string keyField) {
  mainTable_ = std::move(table);
  keyField_ = std::move(keyField);
}

void Card::SetRecordCondition(std::string condition) { condition_ = std::move(condition); }

void Card::AddSatellite(std::string table) { satellites_.push_back({std::move(table), nullptr}); }

void Card::LinkGrid(VxBody& grid) { grids_.push_back(&grid); }

void Card::RequireMode(bool ok, const char* operation) const {
  if (!started_) Refused("La scheda non è stata avviata");
  if (!ok)
    Refused(std::string("Operazione non consentita in questo stato della scheda: ") + operation);
}

RecordsetPtr Card::OpenRow(const std::string& table, const Variant& key) {
  return connection_->OpenRecordset("SELECT * FROM " + table + " WHERE " + keyField_ + " = ?",
                                    {key});
}

RecordsetPtr Card::NewRow(const std::string& table) {
  auto rs = connection_->OpenRecordset("SELECT * FROM " + table + " WHERE 1 = 0");
  rs->AddNew();
  return rs;
}

void Card::Start(ConnectionPtr connection) {
  if (started_) return;
  connection_ = std::move(connection);
  bool ok = true;
  std::string key = keyField_, display = displayField_;
  if (Inizialize) Inizialize(ok, key, display);
  if (!ok) Refused("La scheda ha rifiutato l'avvio");
  if (!key.empty()) keyField_ = key;
  if (!display.empty()) displayField_ = display;
  if (mainTable_.empty() || keyField_.empty())
    Refused("La scheda " + Name() + " non ha una tabella principale");
  started_ = true;
  ClearFields();
  LoadGrids(Variant::Null());
}

bool Card::HasRecord() const { return main_ && !main_->IsEOF() && !main_->IsBOF(); }

Variant Card::KeyValue() const {
  if (!HasRecord()) return Variant::Null();
  Variant key = main_->Fields(keyField_).Value();
  if (key.IsNull() && mode_ == kModeNew) {
    // A new record's key is what its key field shows until the save.
    for (Control* c : BoundControls()) {
      const std::string& b = c->Binding();
      if (text::EqualsNoCase(b, keyField_) || text::EqualsNoCase(b, mainTable_ + "." + keyField_))
        return c->Value().IsEmpty() ? Variant::Null() : c->Value();
    }
  }
  return key;
}

RecordsetPtr Card::GetSatelliteRecordset(const std::string& table) const {
  for (const auto& s : satellites_)
    if (text::EqualsNoCase(s.table, table)) return s.row;
  return nullptr;
}

std::vector<Control*> Card::BoundControls() const {
  std::vector<Control*> bound;
  for (const auto& c : form_.Controls())
    if (!c->Binding().empty() && c->Kind() != ControlKind::Grid && c.get() != this)
      bound.push_back(c.get());
  return bound;
}

Recordset* Card::RowFor(const std::string& binding, std::string& column) const {
  auto dot = binding.find('.');
  if (dot == std::string::npos) {
    column = binding;
    // Unprefixed: the card's own table, the first satellite when there is one.
    if (!satellites_.empty()) return satellites_.front().row.get();
    return main_.get();
  }
  std::string table = binding.substr(0, dot);
  column = binding.substr(dot + 1);
  if (text::EqualsNoCase(table, mainTable_)) return main_.get();
  for (const auto& s : satellites_)
    if (text::EqualsNoCase(s.table, table)) return s.row.get();
  return nullptr;
}

void Card::ClearFields() {
  for (Control* c : BoundControls()) {
    c->SetValue(c->Kind() == ControlKind::Check ? Variant(false) : Variant());
    if (auto* code = dynamic_cast<VxCode*>(c)) code->Refresh(connection_);
  }
}

void Card::ShowRecord() {
  for (Control* c : BoundControls()) {
    std::string column;
    Recordset* row = RowFor(c->Binding(), column);
    Variant value;
    if (row && !row->IsEOF() && row->HasField(column)) value = row->Fields(column).Value();
    else value = Variant::Null();
    c->SetValue(ForControl(*c, value));
    if (auto* code = dynamic_cast<VxCode*>(c)) code->Refresh(connection_);
  }
}

void Card::LoadGrids(const Variant& key) {
  for (VxBody* grid : grids_) grid->LoadFor(connection_, key);
}

bool Card::ShowKey(const Variant& key, bool applyCondition) {
  std::string sql = "SELECT * FROM " + mainTable_ + " WHERE " + keyField_ + " = ?";
  if (applyCondition && !condition_.empty()) sql += " AND (" + condition_ + ")";
  auto row = connection_->OpenRecordset(sql, {key});
  if (row->IsEOF()) return false;
  main_ = row;
  for (auto& s : satellites_) {
    s.row = OpenRow(s.table, key);
    if (s.row->IsEOF()) s.row = NewRow(s.table);  // shown blank, inserted on save
  }
  ShowRecord();
  LoadGrids(key);
  return true;
}

void Card::CommitFields() {
  if (!main_) return;
  for (Control* c : BoundControls()) {
    std::string column;
    Recordset* row = RowFor(c->Binding(), column);
    if (!row || row->IsEOF() || !row->HasField(column)) continue;
    Variant value = ForDatabase(c->Value());
    const Variant& current = row->Fields(column).Value();
    bool same = (value.IsNull() && current.IsNull()) ||
                (!value.IsNull() && !current.IsNull() && value.Kind() == current.Kind() &&
                 value.Equals(current));
    if (!same) row->Fields(column) = value;
  }
}

Card::Snapshot Card::Take() const {
  Snapshot s;
  auto add = [&](const std::string& table, const RecordsetPtr& rs) {
    if (!rs) return;
    Snapshot::Row row;
    row.table = table;
    row.isNew = !rs->IsEOF() && rs->GetEditMode() == EditMode::Add;
    row.values = RowValues(*rs);
    if (!row.isNew && !rs->IsEOF()) row.key = rs->Fields(keyField_).OriginalValue();
    s.rows.push_back(std::move(row));
  };
  add(mainTable_, main_);
  for (const auto& sat : satellites_) add(sat.table, sat.row);
  return s;
}

void Card::Restore(const Snapshot& snapshot) {
  auto rebuild = [&](const Snapshot::Row& row) {
    RecordsetPtr rs = row.isNew ? NewRow(row.table) : OpenRow(row.table, row.key);
    if (rs->IsEOF()) rs = NewRow(row.table);
    for (std::size_t i = 0; i < row.values.size() && i < rs->FieldCount(); ++i) {
      const Variant& v = rs->Fields(i).Value();
      if (!(v.IsNull() && row.values[i].IsNull()) && !v.Equals(row.values[i]))
        rs->Fields(i) = row.values[i];
    }
    return rs;
  };
  std::size_t i = 0;
  if (main_ && i < snapshot.rows.size()) main_ = rebuild(snapshot.rows[i++]);
  for (auto& sat : satellites_)
    if (sat.row && i < snapshot.rows.size()) sat.row = rebuild(snapshot.rows[i++]);
}

bool Card::New() {
  RequireMode(mode_ == kModeBrowse, "nuovo");
  bool cancel = false;
  if (ActionBefore) ActionBefore(kOpNew, cancel);
  if (cancel) return false;
  previousKey_ = KeyValue();
  mode_ = kModeNew;
  main_ = NewRow(mainTable_);
  for (auto& s : satellites_) s.row = NewRow(s.table);
  ClearFields();
  LoadGrids(Variant::Null());
  if (ActionAfter) ActionAfter(kOpNew);
  return true;
}

bool Card::Adopt(const Variant& key) {
  RequireMode(mode_ == kModeNew, "acquisizione di un'anagrafica esistente");
  auto row = OpenRow(mainTable_, key);
  if (row->IsEOF()) return false;
  main_ = row;
  for (auto& s : satellites_) {
    s.row = OpenRow(s.table, key);
    if (s.row->IsEOF()) s.row = NewRow(s.table);
  }
  ShowRecord();
  LoadGrids(key);
  return true;
}

bool Card::Edit() {
  RequireMode(mode_ == kModeBrowse && HasRecord(), "modifica");
  bool cancel = false;
  if (ActionBefore) ActionBefore(kOpEdit, cancel);
  if (cancel) return false;
  mode_ = kModeEdit;
  if (ActionAfter) ActionAfter(kOpEdit);
  return true;
}

bool Card::Save() {
  RequireMode(mode_ == kModeNew || mode_ == kModeEdit, "salva");
  bool cancel = false;
  if (ActionBefore) ActionBefore(kOpSave, cancel);
  if (cancel) return false;

  Snapshot before = Take();
  connection_->BeginTrans();
  Variant key;
  try {
    CommitFields();
    if (ActionInside) ActionInside(kOpSave);
    main_->Update();
    key = main_->Fields(keyField_).Value();
    for (auto& s : satellites_) {
      if (s.row->IsEOF()) continue;
      if (s.row->HasField(keyField_)) {
        const Variant& own = s.row->Fields(keyField_).Value();
        if (own.IsNull() || !own.Equals(key)) s.row->Fields(keyField_) = key;
      }
      s.row->Update();
    }
    for (VxBody* grid : grids_) grid->ResetSaved();
    if (BeginTrans) BeginTrans();
    for (VxBody* grid : grids_)
      if (!grid->SavedInThisTransaction()) {
        grid->LoadLinkValue(key);
        grid->Save();
      }
    connection_->CommitTrans();
  } catch (...) {
    if (connection_->InTransaction()) connection_->RollbackTrans();
    Restore(before);
    throw;
  }
  for (VxBody* grid : grids_) grid->AcceptSaved();
  mode_ = kModeBrowse;
  ShowKey(key, false);
  if (ActionAfter) ActionAfter(kOpSave);
  return true;
}

bool Card::Delete() {
  RequireMode(mode_ == kModeBrowse && HasRecord(), "elimina");
  bool cancel = false;
  if (ActionBefore) ActionBefore(kOpDelete, cancel);
  if (cancel) return false;
  Variant key = KeyValue();
  connection_->BeginTrans();
  try {
    if (ActionInside) ActionInside(kOpDelete);
    if (deletesOwnRows_) {
      for (VxBody* grid : grids_)
        if (!grid->Table().empty())
          connection_->Execute("DELETE FROM " + grid->Table() + " WHERE " + grid->LinkKey() + " = ?",
                               {key});
      for (const auto& s : satellites_)
        connection_->Execute("DELETE FROM " + s.table + " WHERE " + keyField_ + " = ?", {key});
      connection_->Execute("DELETE FROM " + mainTable_ + " WHERE " + keyField_ + " = ?", {key});
    }
    connection_->CommitTrans();
  } catch (...) {
    if (connection_->InTransaction()) connection_->RollbackTrans();
    throw;
  }
  if (ActionAfter) ActionAfter(kOpDelete);
  // Show the next record, else the previous one, else none.
  main_ = OpenRow(mainTable_, key);  // gone: an empty row set positioned at EOF
  previousKey_ = key;
  if (!Navigate(true, true) && !Navigate(false, true)) {
    main_.reset();
    for (auto& s : satellites_) s.row.reset();
    ClearFields();
    LoadGrids(Variant::Null());
  }
  return true;
}

bool Card::Cancel() {
  RequireMode(mode_ == kModeNew || mode_ == kModeEdit, "annulla");
  Variant key = mode_ == kModeEdit ? KeyValue() : previousKey_;
  if (mode_ == kModeEdit && HasRecord()) key = main_->Fields(keyField_).OriginalValue();
  mode_ = kModeBrowse;
  if (key.IsNull() || key.IsEmpty() || !ShowKey(key, false)) {
    main_.reset();
    for (auto& s : satellites_) s.row.reset();
    ClearFields();
    LoadGrids(Variant::Null());
  }
  if (Reposition) Reposition();
  return true;
}

bool Card::Load(const Variant& key) {
  RequireMode(mode_ == kModeBrowse, "carica");
  if (!ShowKey(key, true)) return false;
  if (Reposition) Reposition();
  return true;
}

bool Card::MoveFirst() {
  RequireMode(mode_ == kModeBrowse, "primo");
  return Navigate(true, false);
}
bool Card::MoveLast() {
  RequireMode(mode_ == kModeBrowse, "ultimo");
  return Navigate(false, false);
}
bool Card::MoveNext() {
  RequireMode(mode_ == kModeBrowse, "successivo");
  return Navigate(true, true);
}
bool Card::MovePrevious() {
  RequireMode(mode_ == kModeBrowse, "precedente");
  return Navigate(false, true);
}

std::vector<CardRecordRef> Card::Find(const std::string& text, int limit) {
  RequireMode(true, "cerca");
  std::string display = !nameField_.empty() ? nameField_ : !displayField_.empty() ? displayField_ : keyField_;
  std::string sql = "SELECT TOP " + std::to_string(limit) + " " + keyField_ + ", " + display +
                    " FROM " + mainTable_ + " WHERE ";
  if (!condition_.empty()) sql += "(" + condition_ + ") AND ";
  sql += "(" + keyField_ + " = ? OR " + display + " LIKE ?) ORDER BY " + keyField_;
  auto rs = connection_->OpenRecordset(sql, {Variant(text), Variant("%" + data::text::LikeLiteral(text) + "%")});
  std::vector<CardRecordRef> found;
  for (; !rs->IsEOF(); rs->MoveNext()) {
    const Variant& d = rs->Fields(std::size_t{1}).Value();
    found.push_back({rs->Fields(std::size_t{0}).Value(), d.IsNull() ? "" : d.ToString()});
  }
  return found;
}

void Card::SelectPopupItem(const std::string& key) {
  const PopupItem* item = popup_.Find(key);
  if (!item || !item->enabled || !item->visible)
    Refused("Voce di menu non disponibile: " + key);
  if (PopupItemSelected) PopupItemSelected(key);
}

}  // namespace corvina20
