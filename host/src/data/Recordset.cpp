// Recordset: rows in memory, an ADO-like cursor over the rows the filter lets
// through, per-row pending state for editing, and write-back of changes to the
// source table by its key (see RecordWriter).
#include "corvina20/Recordset.h"

#include <algorithm>

#include "core/Text.h"
#include "corvina20/Connection.h"
#include "corvina20/Error.h"
#include "data/RecordFilter.h"
#include "data/RecordWriter.h"

namespace corvina20 {
namespace {

enum class RowState { Unchanged, Modified, Added, Deleted };

[[noreturn]] void Closed() {
  throw Error(kErrObjectClosed, "Corvina20.Recordset",
              "Operazione non consentita quando l'oggetto è chiuso");
}
[[noreturn]] void NoCurrentRow() {
  throw Error(kErrBofEof, "Corvina20.Recordset",
              "BOF o EOF è True oppure il record corrente è stato eliminato");
}

}  // namespace

struct Recordset::Impl {
  struct Row {
    std::vector<Variant> values;
    std::vector<Variant> original;
    long id = 0;
    RowState state = RowState::Unchanged;
  };

  bool open = false;
  std::vector<FieldInfo> fields;
  std::vector<Row> rows;          // every row, including pending deletions
  std::vector<std::size_t> view;  // indexes into rows that are visible
  long pos = -1;                  // index into view; -1 = BOF, view.size() = EOF
  bool currentDeleted = false;    // the row at pos was deleted and is gone from view
  long nextId = 1;
  std::string filterText;
  std::unique_ptr<data::RecordFilter> filter;
  std::shared_ptr<Connection> connection;
  std::string sourceTable;
  std::vector<std::string> keyColumns;
  LockType lock = LockType::ReadOnly;

  void RequireOpen() const {
    if (!open) Closed();
  }
  bool AtRow() const {
    return open && !currentDeleted && pos >= 0 && pos < static_cast<long>(view.size());
  }
  Row& Current() {
    RequireOpen();
    if (!AtRow()) NoCurrentRow();
    return rows[view[static_cast<std::size_t>(pos)]];
  }
  const Row& Current() const { return const_cast<Impl*>(this)->Current(); }

  std::size_t IndexOf(std::string_view name) const {
    for (std::size_t i = 0; i < fields.size(); ++i)
      if (text::EqualsNoCase(fields[i].name, name)) return i;
    return fields.size();
  }

  bool Visible(const Row& row) const {
    if (row.state == RowState::Deleted) return false;
    return !filter || filter->Matches(row.values);
  }

  void RebuildView() {
    view.clear();
    for (std::size_t i = 0; i < rows.size(); ++i)
      if (Visible(rows[i])) view.push_back(i);
  }


  bool CanWrite() const { return connection && !sourceTable.empty(); }

  // Writes one pending row to the database (its state is left as it is).
  void Write(Row& row) {
    if (CanWrite()) {
      data::RecordWriter writer(connection, sourceTable, fields, keyColumns);
      switch (row.state) {
        case RowState::Added:
          writer.Insert(row.values);
          break;
        case RowState::Modified:
          writer.Update(row.original, row.values);
          break;
        case RowState::Deleted:
          writer.Delete(row.original);
          break;
        case RowState::Unchanged:
          break;
      }
    }
  }

  // The row is now as the database holds it.
  static void Accept(Row& row) {
    row.original = row.values;
    if (row.state != RowState::Deleted) row.state = RowState::Unchanged;
  }

  // Writes one pending row and marks it clean.
  void Flush(Row& row) {
    Write(row);
    Accept(row);
  }

  // ADO updates a pending immediate edit before the cursor leaves the row.
  void SettleBeforeMove() {
    if (lock != LockType::Batch && AtRow()) {
      Row& row = rows[view[static_cast<std::size_t>(pos)]];
      if (row.state == RowState::Modified || row.state == RowState::Added) Flush(row);
    }
    currentDeleted = false;
  }
};

// ---- Field -------------------------------------------------------------------

const std::string& Field::Name() const { return owner_->impl_->fields[index_].name; }
int Field::Type() const { return owner_->impl_->fields[index_].type; }
const std::string& Field::SqlType() const { return owner_->impl_->fields[index_].sqlType; }

const Variant& Field::Value() const { return owner_->impl_->Current().values[index_]; }

const Variant& Field::OriginalValue() const {
  return owner_->impl_->Current().original[index_];
}

void Field::SetValue(const Variant& value) {
  auto& impl = *owner_->impl_;
  auto& row = impl.Current();
  if (impl.lock == LockType::ReadOnly)
    throw Error(kErrHost, "Corvina20.Recordset",
                "Il recordset è di sola lettura: il campo " + Name() + " non può essere modificato");
  row.values[index_] = value;
  if (row.state == RowState::Unchanged) row.state = RowState::Modified;
}

// ---- Recordset -----------------------------------------------------------------

Recordset::Recordset() : impl_(std::make_unique<Impl>()) {}
Recordset::~Recordset() = default;

std::shared_ptr<Recordset> Recordset::CreateInMemory(std::vector<FieldInfo> fields) {
  auto rs = std::make_shared<Recordset>();
  rs->OpenWith(std::move(fields), {}, nullptr, "", {}, LockType::Batch);
  return rs;
}

std::shared_ptr<Recordset> Recordset::CreateTextRow(
    const std::vector<std::pair<std::string, std::string>>& values) {
  std::vector<FieldInfo> fields;
  for (const auto& [name, value] : values) fields.push_back({name, ado::kVarWChar, "nvarchar", "", ""});
  auto rs = CreateInMemory(std::move(fields));
  rs->AddNew();
  for (const auto& [name, value] : values) rs->Fields(name) = Variant(value);
  return rs;
}

void Recordset::OpenWith(std::vector<FieldInfo> fields, std::vector<std::vector<Variant>> rows,
                         std::shared_ptr<Connection> connection, std::string sourceTable,
                         std::vector<std::string> keyColumns, LockType lock) {
  Impl& m = *impl_;
  m = Impl();
  m.open = true;
  m.fields = std::move(fields);
  for (auto& values : rows) {
    Impl::Row row;
    row.original = values;
    row.values = std::move(values);
    row.id = m.nextId++;
    m.rows.push_back(std::move(row));
  }
  m.connection = std::move(connection);
  m.sourceTable = std::move(sourceTable);
  m.keyColumns = std::move(keyColumns);
  m.lock = lock;
  m.RebuildView();
  m.pos = m.view.empty() ? -1 : 0;
}

int Recordset::State() const { return impl_->open ? 1 : 0; }

void Recordset::Close() {
  impl_->RequireOpen();
  *impl_ = Impl();
}

bool Recordset::IsBOF() const {
  impl_->RequireOpen();
  return impl_->pos < 0 || impl_->view.empty();
}

bool Recordset::IsEOF() const {
  impl_->RequireOpen();
  return impl_->pos >= static_cast<long>(impl_->view.size()) || impl_->view.empty();
}

void Recordset::MoveFirst() {
  impl_->RequireOpen();
  impl_->SettleBeforeMove();
  impl_->pos = impl_->view.empty() ? -1 : 0;
}

void Recordset::MoveLast() {
  impl_->RequireOpen();
  impl_->SettleBeforeMove();
  impl_->pos = impl_->view.empty() ? -1 : static_cast<long>(impl_->view.size()) - 1;
}

void Recordset::MoveNext() {
  Impl& m = *impl_;
  m.RequireOpen();
  if (m.currentDeleted) {
    // The deleted row left the view: the next row already stands at pos.
    m.currentDeleted = false;
    return;
  }
  if (IsEOF()) NoCurrentRow();
  m.SettleBeforeMove();
  ++m.pos;
}

void Recordset::MovePrevious() {
  Impl& m = *impl_;
  m.RequireOpen();
  if (m.currentDeleted) {
    m.currentDeleted = false;
    --m.pos;
    if (m.pos < -1) m.pos = -1;
    return;
  }
  if (IsBOF()) NoCurrentRow();
  m.SettleBeforeMove();
  --m.pos;
}

long Recordset::RecordCount() const {
  impl_->RequireOpen();
  return static_cast<long>(impl_->view.size());
}

long Recordset::AbsolutePosition() const {
  impl_->RequireOpen();
  return impl_->AtRow() ? impl_->pos + 1 : 0;
}

std::size_t Recordset::FieldCount() const {
  impl_->RequireOpen();
  return impl_->fields.size();
}

Field Recordset::Fields(std::string_view name) {
  impl_->RequireOpen();
  std::size_t i = impl_->IndexOf(name);
  if (i == impl_->fields.size())
    throw Error(kErrItemNotFound, "Corvina20.Recordset",
                "Impossibile trovare l'elemento nell'insieme: campo " + std::string(name));
  return Field(this, i);
}

Field Recordset::Fields(std::size_t index) {
  impl_->RequireOpen();
  if (index >= impl_->fields.size())
    throw Error(kErrItemNotFound, "Corvina20.Recordset",
                "Impossibile trovare l'elemento nell'insieme: indice " + std::to_string(index));
  return Field(this, index);
}

const FieldInfo& Recordset::Info(std::size_t index) const {
  impl_->RequireOpen();
  return impl_->fields.at(index);
}

bool Recordset::HasField(std::string_view name) const {
  return impl_->open && impl_->IndexOf(name) < impl_->fields.size();
}

void Recordset::AddNew() {
  Impl& m = *impl_;
  m.RequireOpen();
  if (m.lock == LockType::ReadOnly)
    throw Error(kErrHost, "Corvina20.Recordset", "Il recordset è di sola lettura");
  m.SettleBeforeMove();
  Impl::Row row;
  row.values.assign(m.fields.size(), Variant::Null());
  row.original = row.values;
  row.id = m.nextId++;
  row.state = RowState::Added;
  m.rows.push_back(std::move(row));
  // A new row is shown whatever the filter says, until it is saved.
  m.view.push_back(m.rows.size() - 1);
  m.pos = static_cast<long>(m.view.size()) - 1;
}

void Recordset::Update() {
  Impl& m = *impl_;
  m.RequireOpen();
  if (!m.AtRow()) return;
  Impl::Row& row = m.Current();
  if (row.state == RowState::Unchanged || m.lock == LockType::Batch) return;
  m.Flush(row);
}

void Recordset::CancelUpdate() {
  Impl& m = *impl_;
  m.RequireOpen();
  if (!m.AtRow()) return;
  Impl::Row& row = m.Current();
  if (row.state == RowState::Added) {
    std::size_t index = m.view[static_cast<std::size_t>(m.pos)];
    m.rows.erase(m.rows.begin() + static_cast<long>(index));
    m.RebuildView();
    m.pos = m.view.empty() ? -1 : static_cast<long>(m.view.size()) - 1;
  } else if (row.state == RowState::Modified) {
    row.values = row.original;
    row.state = RowState::Unchanged;
  }
}

void Recordset::Delete() {
  Impl& m = *impl_;
  Impl::Row& row = m.Current();
  if (m.lock == LockType::ReadOnly)
    throw Error(kErrHost, "Corvina20.Recordset", "Il recordset è di sola lettura");
  std::size_t index = m.view[static_cast<std::size_t>(m.pos)];
  if (row.state == RowState::Added) {
    m.rows.erase(m.rows.begin() + static_cast<long>(index));
  } else {
    row.values = row.original;  // a pending edit goes with the row
    row.state = RowState::Deleted;
    if (m.lock != LockType::Batch) {
      m.Flush(row);
      m.rows.erase(m.rows.begin() + static_cast<long>(index));
    }
  }
  m.RebuildView();
  m.currentDeleted = true;
}

void Recordset::UpdateBatch() {
  WriteBatch();
  AcceptBatch();
}

void Recordset::WriteBatch() {
  Impl& m = *impl_;
  m.RequireOpen();
  for (auto& row : m.rows)
    if (row.state != RowState::Unchanged) m.Write(row);
}

void Recordset::AcceptBatch() {
  Impl& m = *impl_;
  m.RequireOpen();
  for (auto& row : m.rows)
    if (row.state != RowState::Unchanged) Impl::Accept(row);
  std::erase_if(m.rows, [](const Impl::Row& r) { return r.state == RowState::Deleted; });
  long bookmark = m.AtRow() ? m.rows[m.view[static_cast<std::size_t>(m.pos)]].id : 0;
  m.RebuildView();
  m.pos = m.view.empty() ? -1 : 0;
  for (std::size_t i = 0; i < m.view.size(); ++i)
    if (m.rows[m.view[i]].id == bookmark) m.pos = static_cast<long>(i);
}

void Recordset::CancelBatch() {
  Impl& m = *impl_;
  m.RequireOpen();
  std::erase_if(m.rows, [](const Impl::Row& r) { return r.state == RowState::Added; });
  for (auto& row : m.rows) {
    row.values = row.original;
    row.state = RowState::Unchanged;
  }
  m.RebuildView();
  m.pos = m.view.empty() ? -1 : 0;
  m.currentDeleted = false;
}

EditMode Recordset::GetEditMode() const {
  impl_->RequireOpen();
  if (!impl_->AtRow()) return EditMode::None;
  switch (impl_->Current().state) {
    case RowState::Added: return EditMode::Add;
    case RowState::Modified: return EditMode::InProgress;
    default: return EditMode::None;
  }
}

void Recordset::SetFilter(std::string_view filter) {
  Impl& m = *impl_;
  m.RequireOpen();
  std::unique_ptr<data::RecordFilter> parsed;
  if (!text::Trim(filter).empty()) parsed = data::RecordFilter::Parse(filter, m.fields);
  m.SettleBeforeMove();
  m.filter = std::move(parsed);
  m.filterText = std::string(filter);
  m.RebuildView();
  m.pos = m.view.empty() ? -1 : 0;
}

const std::string& Recordset::Filter() const { return impl_->filterText; }

Variant Recordset::Bookmark() const {
  return Variant(static_cast<std::int32_t>(impl_->Current().id));
}

void Recordset::SetBookmark(const Variant& bookmark) {
  Impl& m = *impl_;
  m.RequireOpen();
  long id = bookmark.ToLong();
  for (std::size_t i = 0; i < m.view.size(); ++i) {
    if (m.rows[m.view[i]].id == id) {
      m.SettleBeforeMove();
      m.pos = static_cast<long>(i);
      return;
    }
  }
  NoCurrentRow();
}

const std::string& Recordset::SourceTable() const { return impl_->sourceTable; }
const std::vector<std::string>& Recordset::KeyColumns() const { return impl_->keyColumns; }

}  // namespace corvina20
