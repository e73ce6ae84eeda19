// The VxCode lookup and the host's lookup catalogue (data/lookups.tsv).
#include "corvina20/VxCode.h"

#include <sstream>

#include "core/Text.h"
#include "data/text/TextFold.h"
#include "core/Tsv.h"
#include "corvina20/Error.h"
#include "corvina20/MervoStatus.h"
#include "corvina20/QueryBuilder.h"
#include "session/HostSession.h"

namespace corvina20 {
namespace {

std::vector<std::string> SplitList(const std::string& text) {
  std::vector<std::string> out;
  std::stringstream in(text);
  std::string item;
  while (std::getline(in, item, ','))
    if (!text::Trim(item).empty()) out.emplace_back(text::Trim(item));
  return out;
}

std::vector<LookupDefinition> ReadCatalogue() {
  std::vector<LookupDefinition> lookups;
  for (const TsvRow& row : ReadTsv("lookups.tsv", "Corvina20.Lookups")) {
    if (row.cells.size() < 5)
      row.Fail("Corvina20.Lookups", "servono nome, tabella, codice, descrizione, colonne");
    lookups.push_back({row.cells[0], row.cells[1], row.cells[2], row.cells[3], SplitList(row.cells[4]),
                       row.Cell(5), row.Cell(6), SplitList(row.Cell(7))});
  }
  return lookups;
}

// "2025-6-3" (year-month-day without leading zeros) as a date.
Variant ValidityDate(const std::string& value) {
  int y = 0, m = 0, d = 0;
  char a = 0, b = 0;
  std::stringstream in(value);
  if (!(in >> y >> a >> m >> b >> d) || a != '-' || b != '-')
    throw Error(kErrHost, "Corvina20.Lookups", "Data di validità non valida: " + value);
  return Variant(DateTime::FromParts(y, m, d));
}

}  // namespace

const std::vector<LookupDefinition>& Catalogue() {
  static const std::vector<LookupDefinition> catalogue = ReadCatalogue();
  return catalogue;
}

LookupDefinition FindLookup(const std::string& name) {
  for (const auto& l : Catalogue())
    if (text::EqualsNoCase(l.name, name)) return l;
  throw Error(kErrHost, "Corvina20.Lookups", "Ricerca sconosciuta: " + name);
}

const LookupDefinition* LookupOfColumn(std::string_view column) {
  const auto dot = column.rfind('.');
  if (dot != std::string_view::npos) column.remove_prefix(dot + 1);
  if (column.empty()) return nullptr;
  for (const auto& l : Catalogue())
    for (const auto& c : l.typedColumns)
      if (text::EqualsNoCase(c, column)) return &l;
  return nullptr;
}

std::string CodeRefusal(const LookupDefinition& def, const std::string& typed) {
  std::string why = def.refusal.empty() ? "il codice «%s» non è tra quelli ammessi" : def.refusal;
  auto at = why.find("%s");
  if (at != std::string::npos) why.replace(at, 2, typed);
  return why;
}

Variant CheckTypedCode(const ConnectionPtr& connection, const LookupDefinition& def, const std::string& caption,
                       const Variant& typed) {
  if (typed.IsEmpty() || typed.IsNull()) return typed;
  Variant code = typed;
  if (typed.Kind() == VariantKind::String) {
    code = Variant(std::string(text::Trim(typed.StringRef())));
    if (code.StringRef().empty()) return typed;
  }
  if (!connection) return code;
  std::string sql = "SELECT TOP 1 " + def.codeField + " FROM " + def.table + " WHERE " + def.codeField + " = ?";
  std::vector<Variant> params{code};
  if (!def.validityField.empty()) {
    sql += " AND (" + def.validityField + " IS NULL OR " + def.validityField + " >= ?)";
    params.push_back(Variant(Today()));
  }
  auto rs = connection->OpenRecordset(sql, params, LockType::ReadOnly);
  if (rs->IsEOF()) throw Error(kErrInvalidValue, "Corvina20.Lookups", FieldRefusal(caption, CodeRefusal(def, code.ToString())));
  Variant stored = rs->Fields(std::size_t{0}).Value();
  // A number typed as text stays as typed, as in a coded field.
  return stored.Kind() == VariantKind::String && code.Kind() == VariantKind::String ? stored : code;
}

VxCode::VxCode(std::string name, std::string caption, std::string lookupName)
    : Control(std::move(name), ControlKind::Lookup, std::move(caption)),
      lookupName_(std::move(lookupName)) {}

RecordsetPtr VxCode::Search(const ConnectionPtr& connection, const std::string& typed, int limit) {
  bool cancel = false;
  if (BrowserStart) BrowserStart(cancel);
  return Query(connection, typed, nullptr, limit);
}

RecordsetPtr VxCode::Query(const ConnectionPtr& connection, const std::string& typed, const Variant* exact,
                           int limit) {
  LookupDefinition def = FindLookup(lookupName_);
  LookupQuery query;
  if (BrowserSql) BrowserSql(query);

  QueryBuilder q(connection);
  std::string fields = def.codeField + ", " + def.descriptionField;
  for (const auto& c : def.columns)
    if (!text::EqualsNoCase(c, def.codeField) && !text::EqualsNoCase(c, def.descriptionField))
      fields += ", " + c;
  q.AddFields(fields);
  q.SetTable(def.table);
  q.SetTop(limit);
  if (!typed.empty()) {
    // Either the code or the description holds what was typed.
    Variant pattern("%" + data::text::LikeLiteral(typed) + "%");  // typed % and _ are text
    q.AddConditionText(def.codeField + " LIKE ? OR " + def.descriptionField + " LIKE ?",
                       {pattern, pattern});
  }
  if (exact) q.AddConditionText(def.codeField + " = ?", {*exact});
  for (const auto& f : query.Filters()) {
    // "Validita" names the lookup's validity column, whatever its name.
    std::string field = text::EqualsNoCase(f.field, "Validita") && !def.validityField.empty()
                            ? def.validityField
                            : f.field;
    if (f.flag == 1) q.AddConditionOrNull(field, f.kind, ValidityDate(f.value));
    else q.AddCondition(field, f.kind, Variant(f.value));
  }
  q.AddOrderBy(def.codeField);
  return q.Open(LockType::ReadOnly);
}

Variant VxCode::Offered(const ConnectionPtr& connection, const Variant& code) {
  auto rs = Query(connection, "", &code, 1);
  if (rs->IsEOF()) return Variant();
  return rs->Fields(std::size_t{0}).Value();
}

void VxCode::Choose(const ConnectionPtr& connection, const Variant& code) {
  Variant chosen = code;
  // Text codes are compared trimmed: a blank typed around a code is no part of it.
  if (code.Kind() == VariantKind::String) chosen = Variant(std::string(text::Trim(code.StringRef())));
  bool blank = chosen.IsEmpty() || chosen.IsNull() ||
               (chosen.Kind() == VariantKind::String && chosen.StringRef().empty());
  if (blank) {
    chosen = Variant();
  } else if (connection) {
    // Checked before anything changes, so a refused code leaves the field
    // and the card's other fields as they were.
    Variant stored = Offered(connection, chosen);
    if (stored.IsEmpty() || stored.IsNull()) {
      throw Error(kErrInvalidValue, "Corvina20.Lookups",
                  FieldRefusal(*this, CodeRefusal(FindLookup(lookupName_), chosen.ToString())));
    }
    // Text codes take their stored spelling; a number typed as text stays
    // as typed, so the field's value keeps the kind it always had.
    if (stored.Kind() == VariantKind::String && chosen.Kind() == VariantKind::String) chosen = stored;
  }
  Type(chosen);
  Refresh(connection);
  if (BrowserResult) BrowserResult();
}

void VxCode::Refresh(const ConnectionPtr& connection) {
  description_.clear();
  if (Value().IsEmpty() || Value().IsNull() || !connection) return;
  LookupDefinition def = FindLookup(lookupName_);
  auto rs = connection->OpenRecordset("SELECT " + def.descriptionField + " FROM " + def.table +
                                          " WHERE " + def.codeField + " = ?",
                                      {Value()}, LockType::ReadOnly);
  if (!rs->IsEOF() && !rs->Fields(std::size_t{0}).Value().IsNull())
    description_ = rs->Fields(std::size_t{0}).Value().ToString();
}

}  // namespace corvina20
