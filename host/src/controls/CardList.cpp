// The card's record list: pages of the records a card moves through, with
// a search over the usual party columns, column filters and a sort, read by
// key set (the last row's sort value and key bound into an index range) so a
// page costs the same at the millionth record as at the first; and the moves
// that follow a list's order. Not for: drawing the list (the hosts do) or
// full-text similarity (data/fulltext). A search narrows through the list
// search index (data/listsearch) when the card's table has one.
#include "core/Text.h"
#include "data/listsearch/ListSearchIndex.h"
#include "data/text/TextFold.h"
#include "corvina20/Card.h"
#include "corvina20/Error.h"
#include "corvina20/Form.h"

namespace corvina20 {
namespace {

[[noreturn]] void Refused(const std::string& why) { throw Error(kErrHost, "Corvina20.Card", why); }

std::string Join(const std::string& a, const std::string& b) {
  if (a.empty()) return b;
  if (b.empty()) return a;
  return a + " AND " + b;
}

// Columns a search looks into, after the key and the name, when the main
// table has them.
const char* const kSearched[] = {"PartitaIva", "CodiceFiscale", "Citta", "Telefono"};
// The default list after the key and the name.
const char* const kListed[] = {"PartitaIva", "Citta", "Provincia"};

// Above this many rows that may hold a search, the list scans instead: they
// are then common enough that a page fills after a short read in any order.
constexpr std::size_t kMostCandidates = 2000;

// "key IN (…)" over `keys` (the rows a search may match) and the row whose
// key is the text searched, which is found whatever it holds; parameters
// appended to `params`.
std::string KeyAmong(Connection& connection, const std::string& table, const std::string& key,
                     const std::string& search, std::vector<Variant> keys, std::vector<Variant>& params) {
  auto exact = connection.OpenRecordset("SELECT " + key + " FROM " + table + " WHERE " + key + " = ?",
                                        {Variant(search)}, LockType::ReadOnly);
  if (!exact->IsEOF()) keys.push_back(exact->Fields(std::size_t{0}).Value());
  if (keys.empty()) return "1 = 0";
  std::string in = key + " IN (";
  for (std::size_t i = 0; i < keys.size(); ++i) in += i == 0 ? "?" : ", ?";
  params.insert(params.end(), std::make_move_iterator(keys.begin()), std::make_move_iterator(keys.end()));
  return in + ")";
}

}  // namespace

std::vector<ListColumn> Card::ListColumns() const {
  if (!listColumns_.empty()) return listColumns_;
  std::vector<std::string> fields{keyField_};
  const std::string name = !nameField_.empty() ? nameField_ : displayField_;
  if (!name.empty() && !text::EqualsNoCase(name, keyField_)) fields.push_back(name);
  for (const char* f : kListed)
    if (connection_ && connection_->ColumnType(mainTable_, f)) fields.emplace_back(f);
  std::vector<ListColumn> columns;
  for (const auto& f : fields) {
    // The caption the form gives the field bound to the column.
    std::string caption = f;
    for (const auto& c : form_.Controls())
      if (!c->Caption().empty() &&
          (text::EqualsNoCase(c->Binding(), f) || text::EqualsNoCase(c->Binding(), mainTable_ + "." + f) ||
           text::EqualsNoCase(c->Binding(), "STDAnagrafiche." + f))) {
        caption = c->Caption();
        break;
      }
    columns.push_back({f, caption});
  }
  return columns;
}

void Card::CheckListField(const std::string& field) const {
  if (field.empty() || text::EqualsNoCase(field, keyField_)) return;
  for (const auto& c : ListColumns())
    if (text::EqualsNoCase(c.field, field)) return;
  Refused("Colonna non presente nell'elenco: " + field);
}

std::string Card::ListWhere(const ListQuery& query, std::vector<Variant>& params) const {
  std::string where = condition_.empty() ? "" : "(" + condition_ + ")";
  const std::string search(text::Trim(query.search));
  if (!search.empty()) {
    std::vector<std::string> searched;
    const std::string name = !nameField_.empty() ? nameField_ : displayField_;
    if (!name.empty() && !text::EqualsNoCase(name, keyField_)) searched.push_back(name);
    for (const char* f : kSearched)
      if (connection_->ColumnType(mainTable_, f)) searched.emplace_back(f);
    // The rows that may match, from the list search index, so that a rare
    // text reads a few rows rather than the register; the test below still
    // decides, so the rows found are those of the plain search.
    if (auto narrowed = data::listsearch::ListSearchCandidates(*connection_, mainTable_, keyField_, searched,
                                                               search, kMostCandidates))
      where = Join(where, KeyAmong(*connection_, mainTable_, keyField_, search, std::move(*narrowed), params));
    std::string any = keyField_ + " = ?";
    params.push_back(Variant(search));
    for (const auto& f : searched) {
      any += " OR " + f + " LIKE ?";
      params.push_back(Variant("%" + data::text::LikeLiteral(search) + "%"));
    }
    where = Join(where, "(" + any + ")");
  }
  for (const auto& f : query.filters) {
    CheckListField(f.field);
    const std::string wanted(text::Trim(f.text));
    if (wanted.empty()) continue;
    where = Join(where, f.field + " LIKE ?");
    params.push_back(Variant("%" + data::text::LikeLiteral(wanted) + "%"));
  }
  return where;
}

std::string Card::AfterCursor(const std::string& sortField, bool descending, const std::vector<Variant>& cursor,
                              std::vector<Variant>& params) const {
  if (cursor.size() != 2) Refused("Il segno di pagina dell'elenco deve avere due valori");
  const std::string& k = keyField_;
  const Variant& key = cursor[1];
  if (sortField.empty() || text::EqualsNoCase(sortField, k)) {
    params.push_back(key);
    return k + (descending ? " < ?" : " > ?");
  }
  const std::string& s = sortField;
  const Variant& value = cursor[0];
  // Nulls come first going up and last going down, as both backends order
  // them. "s >= ? AND (s > ? OR k > ?)" rather than the plain OR, so that the
  // backend reads an index range from the cursor on.
  if (value.IsNull() || value.IsEmpty()) {
    params.push_back(key);
    return descending ? "(" + s + " IS NULL AND " + k + " < ?)"
                      : "((" + s + " IS NULL AND " + k + " > ?) OR " + s + " IS NOT NULL)";
  }
  params.insert(params.end(), {value, value, key});
  return descending ? "(" + s + " IS NULL OR (" + s + " <= ? AND (" + s + " < ? OR " + k + " < ?)))"
                    : "(" + s + " >= ? AND (" + s + " > ? OR " + k + " > ?))";
}

std::string Card::OrderBy(const std::string& sortField, bool descending) const {
  const char* dir = descending ? " DESC" : "";
  if (sortField.empty() || text::EqualsNoCase(sortField, keyField_)) return " ORDER BY " + keyField_ + dir;
  return " ORDER BY " + sortField + dir + ", " + keyField_ + dir;
}

ListPage Card::List(const ListQuery& query, const std::vector<Variant>& after, int limit) {
  if (!started_) Refused("La scheda non è stata avviata");
  if (limit < 1) limit = 1;
  CheckListField(query.sortField);
  ListPage page;
  page.columns = ListColumns();
  std::vector<Variant> params;
  std::string where = ListWhere(query, params);
  if (!after.empty()) where = Join(where, AfterCursor(query.sortField, query.descending, after, params));
  const std::string sort = query.sortField.empty() ? keyField_ : query.sortField;
  std::string sql = "SELECT TOP " + std::to_string(limit + 1) + " " + keyField_ + ", " + sort;
  for (const auto& c : page.columns) sql += ", " + c.field;
  sql += " FROM " + mainTable_;
  if (!where.empty()) sql += " WHERE " + where;
  sql += OrderBy(query.sortField, query.descending);
  auto rs = connection_->OpenRecordset(sql, params, LockType::ReadOnly);
  Variant lastSort;  // the sort value of the page's last row
  for (; !rs->IsEOF(); rs->MoveNext()) {
    if (static_cast<int>(page.keys.size()) == limit) {
      // A row beyond the page: the page's last row is where the next begins.
      page.next = {lastSort, page.keys.back()};
      break;
    }
    page.keys.push_back(rs->Fields(std::size_t{0}).Value());
    lastSort = rs->Fields(std::size_t{1}).Value();
    std::vector<Variant> row;
    for (std::size_t i = 0; i < page.columns.size(); ++i) row.push_back(rs->Fields(i + 2).Value());
    page.rows.push_back(std::move(row));
  }
  return page;
}

void Card::FollowList(const ListQuery& query) {
  CheckListField(query.sortField);
  for (const auto& f : query.filters) CheckListField(f.field);
  following_ = query;
}

bool Card::Navigate(bool forward, bool fromCurrent) {
  const ListQuery& q = following_;
  std::vector<Variant> params;
  std::string where = ListWhere(q, params);
  // Going back walks the list's order the other way.
  const bool descending = forward ? q.descending : !q.descending;
  const bool byKey = q.sortField.empty() || text::EqualsNoCase(q.sortField, keyField_);
  if (fromCurrent) {
    Variant from = HasRecord() ? KeyValue() : previousKey_;
    if (from.IsNull() || from.IsEmpty()) return false;
    Variant sortValue = from;
    if (!byKey) {
      // After a delete the record is gone and its place in a sorted list with
      // it: the list starts again from its top.
      if (!HasRecord() || !main_->HasField(q.sortField)) return Navigate(forward, false);
      sortValue = main_->Fields(q.sortField).Value();
    }
    where = Join(where, AfterCursor(q.sortField, descending, {sortValue, from}, params));
  }
  std::string sql = "SELECT TOP 1 " + keyField_ + " FROM " + mainTable_;
  if (!where.empty()) sql += " WHERE " + where;
  sql += OrderBy(q.sortField, descending);
  auto rs = connection_->OpenRecordset(sql, params, LockType::ReadOnly);
  if (rs->IsEOF()) return false;
  if (!ShowKey(rs->Fields(std::size_t{0}).Value(), false)) return false;
  if (Reposition) Reposition();
  return true;
}

}  // namespace corvina20
