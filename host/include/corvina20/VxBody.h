// The VxBody grid: detail rows of a card (addresses, references, banks…) or
// the rows of a list (duplicates, snapshots). It holds a batch recordset; a
// grid bound to a table with a row key and a link key loads the rows of the
// card's record and saves them inside the card's transaction. Rows are
// addressed by their 0-based position among the visible rows.
#pragma once

#include <functional>
#include <string>
#include <vector>

#include "corvina20/Connection.h"
#include "corvina20/Controls.h"
#include "corvina20/Recordset.h"

namespace corvina20 {

struct GridColumn {
  std::string field;    // recordset field
  std::string caption;
  ControlKind kind = ControlKind::Text;  // how the host edits it
  bool editable = true;
  bool visible = true;
  std::string lookup;   // lookup name of the catalogue for a coded column, "" when none
  std::string currency; // the currency of an amount column (a code of STDDivise), "" when none
  std::vector<std::pair<std::string, Variant>> entries;  // fixed choices, when any
};

class VxBody : public Control {
 public:
  VxBody(std::string name, std::string caption);
  ~VxBody() override;

  // ---- Set-up ----
  // Binds the grid to `table` with `rowKey` (its own key), `linkKey` (the
  // column holding the card's key) and `orderColumn` ("" for none); the rows
  // are then read by LoadFor and written by Save.
  void BindTable(std::string table, std::string rowKey, std::string linkKey,
                 std::string orderColumn = "");
  void AddColumn(GridColumn column);
  const std::vector<GridColumn>& Columns() const { return columns_; }
  // When false, the user cannot add or delete rows.
  void SetAllowAddDelete(bool allow) { allowAddDelete_ = allow; }
  bool AllowAddDelete() const { return allowAddDelete_; }
  // Declares that each row is a period from the date column `fromColumn` to
  // the date column `toColumn` (an empty end means open-ended): a host may
  // draw the rows as bars on a time line. "" and "" (the default) for none.
  void SetDateRange(std::string fromColumn, std::string toColumn) {
    rangeFrom_ = std::move(fromColumn);
    rangeTo_ = std::move(toColumn);
  }
  const std::string& RangeFrom() const { return rangeFrom_; }
  const std::string& RangeTo() const { return rangeTo_; }

  // ---- Data ----
  // Reads the rows linked to `linkValue` (none for Null) through `connection`.
  void LoadFor(const ConnectionPtr& connection, const Variant& linkValue);
  // The card's key that new rows get in their link column when saved.
  void LoadLinkValue(const Variant& linkValue) { linkValue_ = linkValue; }
  // Shows any recordset (a query's result): the grid's data until the next
  // load. A null recordset empties the grid.
  void SetData(RecordsetPtr data);
  // Forgets every row.
  void Clear();
  RecordsetPtr Data() const { return data_; }
  long RowCount() const;
  // Writes the pending rows (link key and order column filled in for new rows)
  // through the data's connection, inside the card's transaction: the rows
  // stay pending until AcceptSaved (after the commit), so a save that rolls
  // back writes them again next time. No-op for an unbound grid.
  void Save();
  void AcceptSaved();
  bool SavedInThisTransaction() const { return saved_; }
  void ResetSaved() { saved_ = false; }
  const std::string& Table() const { return table_; }
  const std::string& LinkKey() const { return linkKey_; }
  const std::string& RowKey() const { return rowKey_; }

  // ---- What the user does (each raises the grid's events) ----
  // Adds a row with the given values (OnAddNew first, then the values typed
  // one by one with BeforeColEdit/AfterColUpdate). Returns its position.
  long AddRow(const std::vector<std::pair<std::string, Variant>>& values);
  // Types values into row `row`. Raises kErrHost for an unknown row or column
  // or a column that cannot be edited.
  void SetCells(long row, const std::vector<std::pair<std::string, Variant>>& values);
  // Deletes row `row` unless BeforeDeleteAt cancels; true when deleted.
  bool DeleteRow(long row);
  // The selected rows, in selection order.
  void Select(const std::vector<long>& rows);
  const std::vector<long>& Selection() const { return selection_; }
  // The bookmark of the selected row number `index` (0-based in selection order).
  Variant SelectedBookmark(std::size_t index) const;
  // Positions the recordset on `row`; raises kErrHost when out of range.
  void GoToRow(long row);
  // The user's current row: the row the user moved to (SetCurrentRow), the
  // row added last (AddRow), the first row after LoadFor; -1 when the grid
  // has no rows. It is not the recordset's cursor, which handlers and
  // readers move freely.
  long CurrentRow() const { return current_; }
  // The user moves to `row`: the cursor goes there and RowChanged is raised
  // (also when `row` was already current). Raises kErrHost when out of range.
  void SetCurrentRow(long row);
  // Raises BeforeShowPopupMenu, where the form enables the items that can
  // run in the card's state, before a host shows the menu; returns false
  // when the form cancels it (no menu shows). The items are then Popup().
  bool PreparePopup();
  // Raises PopupItemSelected for an enabled popup item (after PreparePopup,
  // so the item's state is the card's present one); kErrHost otherwise.
  void SelectPopupItem(const std::string& key);
  PopupMenu& Popup() { return popup_; }

  // ---- Events (those the cards use) ----
  std::function<void()> OnInitLayout;
  std::function<void()> OnAddNew;
  std::function<void(const std::string& column, bool& cancel)> BeforeColEdit;
  std::function<void(const std::string& column)> AfterColUpdate;
  std::function<void(long row, bool& cancel)> BeforeDeleteAt;
  std::function<void()> AfterDelete;
  // The current row changed (LoadFor, SetCurrentRow, AddRow, DeleteRow):
  // raised with the cursor on the new current row, or at EOF when the grid
  // has no rows.
  std::function<void()> RowChanged;
  std::function<void(bool& cancel)> BeforeShowPopupMenu;
  std::function<void(const std::string& key)> PopupItemSelected;
  std::function<void()> DblClick;

 private:
  std::string table_;
  std::string rowKey_;
  std::string linkKey_;
  std::string orderColumn_;
  Variant linkValue_;
  std::vector<GridColumn> columns_;
  RecordsetPtr data_;
  std::vector<long> selection_;
  PopupMenu popup_;
  bool allowAddDelete_ = true;
  bool saved_ = false;
  long current_ = -1;
  std::string rangeFrom_;
  std::string rangeTo_;
};

}  // namespace corvina20
