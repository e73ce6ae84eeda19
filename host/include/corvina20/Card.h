// The Card control: the record cycle of one card form (browse, new, edit,
// save, delete, cancel, load by key, move), raising the form's events in a
// fixed order and writing the bound fields of the card's main table, its
// satellite tables and its grids inside one database transaction, so a save
// lands whole or not at all. A refused or failed operation leaves the card in
// its mode with every value as typed.
//
// Event order of a save:
//   ActionBefore(4, cancel) → [cancel: stop] → transaction begins →
//   the bound fields are copied into the record → ActionInside(4) →
//   the card writes its main row and its satellite rows → BeginTrans →
//   grids not yet saved write their rows → commit → the record is read back →
//   ActionAfter(4).
// New: ActionBefore(1, cancel) → fields cleared, mode 1 → ActionAfter(1).
// Edit: ActionBefore(2, cancel) → mode 2 → ActionAfter(2).
// Delete: ActionBefore(3, cancel) → transaction → ActionInside(3) → the card
//   deletes its satellite and main rows when it owns them → commit →
//   ActionAfter(3) → the next record (or none) is shown.
#pragma once

#include <functional>
#include <memory>
#include <string>
#include <vector>

#include "corvina20/Connection.h"
#include "corvina20/Controls.h"
#include "corvina20/Recordset.h"

namespace corvina20 {

class Form;
class VxBody;

// Operation codes passed to the action events.
inline constexpr int kOpNew = 1;
inline constexpr int kOpEdit = 2;
inline constexpr int kOpDelete = 3;
inline constexpr int kOpSave = 4;

// Card modes.
inline constexpr int kModeBrowse = 0;
inline constexpr int kModeNew = 1;
inline constexpr int kModeEdit = 2;

struct CardRecordRef {
  Variant key;
  std::string display;
};

// A column of a card's record list: a column of its main table and the
// caption shown over it.
struct ListColumn {
  std::string field;
  std::string caption;
};

// What a record list shows: the records matching `search` (the key equal to
// it, or the name, VAT number, fiscal code, town or phone containing it, for
// the columns the main table has) and every filter (the list column `field`
// containing `text`), ordered by `sortField` (a list column; "" for the key)
// and then by the key.
struct ListQuery {
  struct Filter {
    std::string field;
    std::string text;
  };
  std::string search;
  std::vector<Filter> filters;
  std::string sortField;
  bool descending = false;
};

// One page of a record list. `next` is the cursor of the page after this one
// (the last row's sort value and key), empty when no row follows.
struct ListPage {
  std::vector<ListColumn> columns;
  std::vector<Variant> keys;
  std::vector<std::vector<Variant>> rows;  // values in column order
  std::vector<Variant> next;
};

class Card : public Control {
 public:
  // REQUIRES: the form outlives the card (the card is one of its controls).
  Card(std::string name, Form& form);
  ~Card() override;

  // ---- Set-up (the form, usually in its constructor or in Inizialize) ----
  // The main table and its key column; the records the card moves through
  // may be narrowed by a fixed T-SQL condition ("Vettore = 1").
  void SetMainTable(std::string table, std::string keyField);
  void SetRecordCondition(std::string condition);
  // A satellite table sharing the key: fields bound without a prefix live
  // there. Its row is written after the main row, and inserted when missing.
  void AddSatellite(std::string table);
  // The column shown next to the key in lists.
  void SetDisplayField(std::string field) { displayField_ = std::move(field); }
  // The column searched by name in Find ("RagioneSociale"); the display
  // field when not set.
  void SetNameField(std::string field) { nameField_ = std::move(field); }
  // Party cards leave the deletion of the party row to the role procedures
  // (another role may keep it); other cards delete their own rows.
  void SetDeletesOwnRows(bool deletes) { deletesOwnRows_ = deletes; }
  // Grids whose rows follow the card's key: loaded with each record, saved
  // inside the save transaction after the BeginTrans event (unless the form
  // saved them itself there).
  void LinkGrid(VxBody& grid);

  const std::string& MainTable() const { return mainTable_; }
  const std::string& KeyField() const { return keyField_; }
  const std::string& DisplayField() const { return displayField_; }

  // ---- Events ----
  // Raised once by Start(): the form tells the key field and the display
  // field (and may leave `ok` false to refuse the card).
  std::function<void(bool& ok, std::string& keyField, std::string& displayField)> Inizialize;
  std::function<void(int operation, bool& cancel)> ActionBefore;
  std::function<void(int operation)> ActionInside;
  std::function<void(int operation)> ActionAfter;
  std::function<void()> BeginTrans;
  std::function<void(const std::string& key)> PopupItemSelected;
  std::function<void()> Reposition;

  // ---- Operations (the tool bar) ----
  // Raises Inizialize and readies the card on the session's connection; the
  // host calls it once after the form is attached. Raises kErrHost when the
  // form gives no main table.
  void Start(ConnectionPtr connection);
  const ConnectionPtr& GetConnection() const { return connection_; }
  // Each returns true when the operation was carried out, false when a
  // handler cancelled it. Errors raised by handlers or the database propagate
  // after the transaction (if any) is rolled back and the card is back in
  // its mode with its values as typed. Calling an operation in the wrong mode
  // (Save while browsing, Edit without a record…) raises kErrHost.
  bool New();
  bool Edit();
  bool Save();
  bool Delete();
  bool Cancel();
  // Shows the record with `key`; false when there is none (the card stays as
  // it was). Refused with kErrHost while editing.
  bool Load(const Variant& key);
  // In new mode: takes over the existing main-table record `key` (its values
  // into the fields and its rows into the linked grids), so that the save
  // updates it instead of inserting a second one. False when there is none.
  bool Adopt(const Variant& key);
  bool MoveFirst();
  bool MovePrevious();
  bool MoveNext();
  bool MoveLast();
  // Records whose key equals `text` or whose display field contains it,
  // at most `limit`, in key order.
  std::vector<CardRecordRef> Find(const std::string& text, int limit = 50);
  // Raises PopupItemSelected for an enabled item of the card's popup menu;
  // kErrHost for an unknown or disabled key.
  void SelectPopupItem(const std::string& key);

  // ---- Record list (CardList.cpp) ----
  // The columns of the card's record list, as the form names them; by
  // default the key, the name field, VAT number, town and province, those of
  // them the main table has, each captioned as the form's control bound to
  // it (else by its column name).
  void SetListColumns(std::vector<ListColumn> columns) { listColumns_ = std::move(columns); }
  std::vector<ListColumn> ListColumns() const;
  // A page of at most `limit` records of the list `query` (the card's record
  // condition always applies), starting after `after` (a page's `next`;
  // empty for the first page). Pages are read by key set (an index range),
  // never by skipping rows. Raises kErrHost for a sort or filter field that is
  // not a list column, or a cursor that is not two values.
  ListPage List(const ListQuery& query, const std::vector<Variant>& after = {}, int limit = 50);
  // From now on the moves (first, previous, next, last) go through the
  // records of `query` in its order, as the list shows them; an empty query
  // brings back the key order over every record. Validated as List does.
  void FollowList(const ListQuery& query);

  // ---- State ----
  int Mode() const { return mode_; }
  bool HasRecord() const;
  // The current record of the main table (one row; a pending new row in new
  // mode). The handlers read and write its fields by name.
  RecordsetPtr GetRecordset() const { return main_; }
  // The current row of a satellite table; null when the table is not one.
  RecordsetPtr GetSatelliteRecordset(const std::string& table) const;
  // The key of the record shown (Null when none).
  Variant KeyValue() const;
  PopupMenu& Popup() { return popup_; }
  // Copies the bound fields into the record now (a handler that reads the
  // record before the card writes it calls this first).
  void CommitFields();

 private:
  struct Satellite {
    std::string table;
    RecordsetPtr row;
  };
  // The row of `table` whose key is `key`, as a writable recordset (at EOF
  // when there is none).
  RecordsetPtr OpenRow(const std::string& table, const Variant& key);
  // An empty writable recordset of `table` with one new row.
  RecordsetPtr NewRow(const std::string& table);
  bool ShowKey(const Variant& key, bool applyCondition);
  void ShowRecord();
  void ClearFields();
  void LoadGrids(const Variant& key);
  bool Navigate(bool forward, bool fromCurrent);
  // The WHERE text (without WHERE; "" when none) and its parameters of the
  // list `query`, the record condition included.
  std::string ListWhere(const ListQuery& query, std::vector<Variant>& params) const;
  // The condition that keeps the rows after `cursor` (sort value, key) in the
  // order of `sortField` (descending or not), with its parameters appended.
  std::string AfterCursor(const std::string& sortField, bool descending, const std::vector<Variant>& cursor,
                          std::vector<Variant>& params) const;
  std::string OrderBy(const std::string& sortField, bool descending) const;
  void CheckListField(const std::string& field) const;
  std::vector<Control*> BoundControls() const;
  // The recordset and column a binding names; nullptr when the card has no
  // such table.
  Recordset* RowFor(const std::string& binding, std::string& column) const;
  void RequireMode(bool ok, const char* operation) const;
  struct Snapshot;
  Snapshot Take() const;
  void Restore(const Snapshot& snapshot);

  Form& form_;
  ConnectionPtr connection_;
  Variant previousKey_;
  std::string mainTable_;
  std::string keyField_;
  std::string displayField_;
  std::string nameField_;
  std::string condition_;
  bool deletesOwnRows_ = true;
  bool started_ = false;
  int mode_ = kModeBrowse;
  RecordsetPtr main_;
  std::vector<Satellite> satellites_;
  std::vector<VxBody*> grids_;
  PopupMenu popup_;
  std::vector<ListColumn> listColumns_;
  ListQuery following_;  // the list the moves follow
};

}  // namespace corvina20
