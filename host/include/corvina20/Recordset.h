// An ADO-like recordset: the rows of a query held in memory with a cursor, the
// field types as ADO type codes, editing (AddNew/Update/Delete/CancelUpdate),
// a simple Filter and bookmarks. The module's logic is written against
// recordsets, so their edge behaviour (BOF/EOF, EditMode, null values) follows
// ADO's. A recordset opened from one table knows that table and its key and
// writes its changes back through the connection it came from; a recordset
// built in memory (no source table) keeps changes to itself.
// Not for: SQL translation or the database itself (Connection).
#pragma once

#include <cstdint>
#include <memory>
#include <string>
#include <string_view>
#include <vector>

#include "corvina20/Variant.h"

namespace corvina20 {

class Connection;

// ADO data type codes (DataTypeEnum) of the field types the schema uses.
namespace ado {
inline constexpr int kEmpty = 0;
inline constexpr int kSmallInt = 2;
inline constexpr int kInteger = 3;
inline constexpr int kSingle = 4;
inline constexpr int kDouble = 5;
inline constexpr int kCurrency = 6;
inline constexpr int kDate = 7;
inline constexpr int kBSTR = 8;
inline constexpr int kBoolean = 11;
inline constexpr int kVariant = 12;
inline constexpr int kDecimal = 14;
inline constexpr int kTinyInt = 16;
inline constexpr int kUnsignedTinyInt = 17;
inline constexpr int kBigInt = 20;
inline constexpr int kGuid = 72;
inline constexpr int kBinary = 128;
inline constexpr int kChar = 129;
inline constexpr int kWChar = 130;
inline constexpr int kNumeric = 131;
inline constexpr int kDBDate = 133;
inline constexpr int kDBTime = 134;
inline constexpr int kDBTimeStamp = 135;
inline constexpr int kVarChar = 200;
inline constexpr int kLongVarChar = 201;
inline constexpr int kVarWChar = 202;
inline constexpr int kLongVarWChar = 203;
inline constexpr int kVarBinary = 204;

// The ADO type of an SQL Server column type text ("int", "nvarchar(50)",
// "money", "datetime", "bit", "decimal(18,4)"…), case-insensitive.
// Returns kVariant for an empty or unknown type.
int TypeOfSqlServerType(std::string_view sqlType);
}  // namespace ado

// ADO EditModeEnum.
enum class EditMode : int { None = 0, InProgress = 1, Add = 2 };

// When changes reach the database. Immediate: each Update/Delete writes at
// once (ADO's optimistic lock). Batch: rows keep their pending state (EditMode
// stays Add for an added row) until UpdateBatch writes them all, as grids do
// inside the card's save transaction.
enum class LockType : int { ReadOnly = 1, Immediate = 3, Batch = 4 };

struct FieldInfo {
  std::string name;          // as the query names it
  int type = ado::kVariant;  // ADO type code
  std::string sqlType;       // the declared SQL Server type, "" when computed
  std::string baseTable;     // source table of the column, "" when computed
  std::string baseColumn;    // its column there
};

class Recordset;

// One field of the current row.
class Field {
 public:
  const std::string& Name() const;
  int Type() const;
  const std::string& SqlType() const;
  // The value in the current row.
  // Raises kErrBofEof when the recordset is at BOF or EOF.
  const Variant& Value() const;
  // Changes the value in the current row; the row enters EditMode InProgress
  // unless it is being added. Raises kErrBofEof without a current row and
  // kErrHost on a read-only recordset.
  void SetValue(const Variant& value);
  Field& operator=(const Variant& value) {
    SetValue(value);
    return *this;
  }
  // The value as read from the database, before pending changes.
  const Variant& OriginalValue() const;

 private:
  friend class Recordset;
  Field(Recordset* owner, std::size_t index) : owner_(owner), index_(index) {}
  Recordset* owner_;
  std::size_t index_;
};

class Recordset {
 public:
  // A closed recordset (State 0).
  Recordset();
  ~Recordset();
  Recordset(const Recordset&) = delete;
  Recordset& operator=(const Recordset&) = delete;

  // A disconnected recordset with the given fields and no rows, open: what a
  // grid holds for rows that no query gave. Changes stay in memory.
  static std::shared_ptr<Recordset> CreateInMemory(std::vector<FieldInfo> fields);
  // A disconnected recordset holding one row of text fields with the given
  // values, positioned on it (EditMode Add): what a card's current values look
  // like to a procedure that reads them by name.
  static std::shared_ptr<Recordset> CreateTextRow(
      const std::vector<std::pair<std::string, std::string>>& values);

  // Host side: opens the recordset on the rows of a query. `connection` may be
  // null (disconnected). `sourceTable` and `keyColumns` enable write-back;
  // leave them empty for a read-only result of joins or computed columns.
  void OpenWith(std::vector<FieldInfo> fields, std::vector<std::vector<Variant>> rows,
                std::shared_ptr<Connection> connection, std::string sourceTable,
                std::vector<std::string> keyColumns, LockType lock);

  // 1 when open, 0 when closed (ADO's State).
  int State() const;
  bool IsOpen() const { return State() == 1; }
  // Closes the recordset, dropping its rows and any pending change.
  void Close();

  // Cursor. On an empty recordset BOF and EOF are both true. Move* on a closed
  // recordset raises kErrObjectClosed; moving past EOF (or before BOF) raises
  // kErrBofEof. A pending Immediate edit is updated before the cursor moves,
  // as ADO does.
  bool IsBOF() const;
  bool IsEOF() const;  // not EOF(): that is a C macro
  void MoveFirst();
  void MoveLast();
  void MoveNext();
  void MovePrevious();
  // Rows visible through the current filter; -1 never (the rows are all read).
  long RecordCount() const;
  // 1-based position of the current row among the visible ones, 0 at BOF/EOF.
  long AbsolutePosition() const;

  // Fields. Lookup by name is case-insensitive. An unknown name or an index out
  // of range raises kErrItemNotFound; a closed recordset raises kErrObjectClosed.
  std::size_t FieldCount() const;
  Field Fields(std::string_view name);
  Field Fields(std::size_t index);
  Field operator[](std::string_view name) { return Fields(name); }
  const FieldInfo& Info(std::size_t index) const;
  bool HasField(std::string_view name) const;

  // Editing.
  // AddNew: appends an empty row (every value Null), makes it current, EditMode Add.
  void AddNew();
  // Update: Immediate: writes the current row's pending change to the source
  // table (INSERT for an added row, UPDATE by key otherwise) and clears its
  // pending state. Batch: keeps the change pending. No pending change: no-op.
  void Update();
  // CancelUpdate: forgets the current row's pending change; an added row that
  // was never written disappears and the cursor goes to the last row.
  void CancelUpdate();
  // Delete: removes the current row (Immediate: DELETE by key at once; Batch:
  // at UpdateBatch). The cursor stays on the deleted position: call MoveNext.
  void Delete();
  // Writes every pending row (Batch) and marks them saved. With nothing
  // pending it is a no-op.
  void UpdateBatch();
  // The two halves of UpdateBatch, for a write inside a transaction that may
  // still roll back: WriteBatch writes the pending rows but keeps them
  // pending (a generated key is filled in); AcceptBatch marks them saved once
  // the transaction committed. After a rollback the rows are still pending and
  // the next WriteBatch writes them again.
  void WriteBatch();
  void AcceptBatch();
  // Forgets every pending change (Batch).
  void CancelBatch();
  EditMode GetEditMode() const;

  // Filter: "" shows every row. Otherwise comparisons "Column op value" with
  // op one of = <> < > <= >= LIKE, value a number, 'text', #date# or Null,
  // joined by AND / OR (AND binds tighter), parentheses allowed. A malformed
  // filter raises kErrHost and leaves the previous filter in place. Setting a
  // filter moves to the first visible row.
  void SetFilter(std::string_view filter);
  const std::string& Filter() const;

  // Bookmark: a Long that identifies the current row for as long as the
  // recordset is open. SetBookmark raises kErrBofEof for an unknown bookmark
  // (or one hidden by the filter).
  Variant Bookmark() const;
  void SetBookmark(const Variant& bookmark);

  // Where changes go. Empty when the recordset cannot write back.
  const std::string& SourceTable() const;
  const std::vector<std::string>& KeyColumns() const;

 private:
  friend class Field;
  struct Impl;
  std::unique_ptr<Impl> impl_;
};

using RecordsetPtr = std::shared_ptr<Recordset>;

}  // namespace corvina20
