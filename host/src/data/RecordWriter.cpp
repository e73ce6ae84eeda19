// Native SQL for one row's write-back; identifiers double-quoted (standard
// SQL, valid on SQLite and PostgreSQL), values always bound.
#include "data/RecordWriter.h"

#include <algorithm>

#include "core/Text.h"
#include "corvina20/Connection.h"
#include "corvina20/Error.h"
#include "data/Backend.h"

namespace corvina20::data {
namespace {

std::string Quote(std::string_view ident) {
  std::string out = "\"";
  for (char c : ident) {
    if (c == '"') out += '"';
    out += c;
  }
  return out + "\"";
}

}  // namespace

RecordWriter::RecordWriter(std::shared_ptr<Connection> connection, std::string table,
                           const std::vector<FieldInfo>& fields,
                           const std::vector<std::string>& keys)
    : connection_(std::move(connection)), table_(std::move(table)), fields_(fields) {
  for (const std::string& key : keys)
    for (std::size_t i = 0; i < fields_.size(); ++i)
      if (Writable(i) && text::EqualsNoCase(fields_[i].baseColumn, key)) {
        keyFields_.push_back(i);
        break;
      }
}

bool RecordWriter::Writable(std::size_t field) const {
  return text::EqualsNoCase(fields_[field].baseTable, table_) && !fields_[field].baseColumn.empty();
}

std::string RecordWriter::KeyCondition(const std::vector<Variant>& original,
                                       std::vector<Variant>& params) const {
  std::string where;
  for (std::size_t k : keyFields_) {
    if (!where.empty()) where += " AND ";
    where += Quote(fields_[k].baseColumn) + " = ?";
    params.push_back(original[k]);
  }
  return where;
}

void RecordWriter::Insert(std::vector<Variant>& values) const {
  connection_->RequireWritable();
  std::string columns, marks;
  std::vector<Variant> params;
  std::size_t generated = fields_.size();
  for (std::size_t i = 0; i < fields_.size(); ++i) {
    if (!Writable(i)) continue;
    bool isKey = std::find(keyFields_.begin(), keyFields_.end(), i) != keyFields_.end();
    if (values[i].IsNull() || values[i].IsEmpty()) {
      if (isKey) generated = i;
      continue;
    }
    if (!columns.empty()) {
      columns += ", ";
      marks += ", ";
    }
    columns += Quote(fields_[i].baseColumn);
    marks += "?";
    params.push_back(values[i]);
  }
  std::string sql = columns.empty()
                        ? "INSERT INTO " + Quote(table_) + " DEFAULT VALUES"
                        : "INSERT INTO " + Quote(table_) + " (" + columns + ") VALUES (" + marks + ")";
  Backend& backend = connection_->Backend();
  backend.Run(sql, params);
  if (generated < fields_.size())
    values[generated] = Variant(static_cast<std::int32_t>(backend.LastInsertId()));
}

void RecordWriter::Update(const std::vector<Variant>& original,
                          const std::vector<Variant>& values) const {
  connection_->RequireWritable();
  std::string sets;
  std::vector<Variant> params;
  for (std::size_t i = 0; i < fields_.size(); ++i) {
    if (!Writable(i)) continue;
    const Variant& a = original[i];
    const Variant& b = values[i];
    bool same = (a.IsNull() && b.IsNull()) || (a.Kind() == b.Kind() && a.Equals(b));
    if (same) continue;
    if (!sets.empty()) sets += ", ";
    sets += Quote(fields_[i].baseColumn) + " = ?";
    params.push_back(b);
  }
  if (sets.empty()) return;
  std::string where = KeyCondition(original, params);
  ResultSet rs =
      connection_->Backend().Run("UPDATE " + Quote(table_) + " SET " + sets + " WHERE " + where,
                                 params);
  if (rs.changes == 0)
    throw Error(kErrDatabase, "Corvina20.Data",
                "Impossibile trovare la riga da aggiornare in " + table_ +
                    ": è stata modificata o eliminata da un altro utente");
}

void RecordWriter::Delete(const std::vector<Variant>& original) const {
  connection_->RequireWritable();
  std::vector<Variant> params;
  std::string where = KeyCondition(original, params);
  connection_->Backend().Run("DELETE FROM " + Quote(table_) + " WHERE " + where, params);
}

}  // namespace corvina20::data
