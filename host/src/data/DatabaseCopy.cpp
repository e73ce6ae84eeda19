// See DatabaseCopy.h. The copy runs in native SQL on both sides (the tables
// and columns are the schema's, whatever the backend): every column the
// source row has is written, bound, never spliced into the text.
#include "data/DatabaseCopy.h"

#include <algorithm>

#include "core/Text.h"
#include "corvina20/Error.h"
#include "data/Backend.h"
#include "data/Database.h"
#include "corvina20/MervoStatus.h"
#include "data/schema/ReferenceData.h"
#include "data/schema/Schema.h"

namespace corvina20 {
namespace {

constexpr const char* kSource = "Corvina20.Copy";

// A name quoted for `backend`: folded to lower case on PostgreSQL, where the
// schema's names are.
std::string Quote(const data::Backend& backend, std::string_view name) {
  std::string folded = backend.Dialect() == data::SqlDialect::Postgres ? text::Lower(name) : std::string(name);
  std::string out = "\"";
  for (char c : folded) {
    if (c == '"') out += '"';
    out += c;
  }
  return out + "\"";
}

long CountRows(data::Backend& backend, const std::string& table) {
  return backend.Run("SELECT COUNT(*) FROM " + Quote(backend, table), {}).rows[0][0].ToLong();
}

}  // namespace

std::vector<TableCopy> CopyDatabase(Connection& source, Connection& target,
                                    const std::function<void(const TableCopy&)>& progress) {
  data::ApplySchema(target, DataDirectory() + "/schema");
  data::Backend& from = source.Backend();
  data::Backend& to = target.Backend();
  std::vector<TableCopy> result;
  for (const std::string& table : data::SchemaTables(DataDirectory() + "/schema")) {
    if (text::EqualsNoCase(table, "CORSchemaVersioni")) continue;
    if (!source.TableExists(table)) continue;
    // A reference table that init filled takes the source's rows instead:
    // the company may have changed them.
    if (data::IsReferenceTable(table)) to.Run("DELETE FROM " + Quote(to, table), {});
    if (CountRows(to, table) != 0)
      throw Error(kErrDatabase, kSource, "La tabella " + table + " del database di destinazione non è vuota");
    data::ResultSet rows = from.Run("SELECT * FROM " + Quote(from, table), {});
    TableCopy copy{table, static_cast<long>(rows.rows.size()), 0};
    if (!rows.rows.empty()) {
      std::string columns, marks;
      for (const data::ResultColumn& c : rows.columns) {
        columns += (columns.empty() ? "" : ", ") + Quote(to, c.name);
        marks += marks.empty() ? "?" : ", ?";
      }
      // Many rows a statement: one round trip (and one run of the target's
      // statement triggers) for each batch instead of each row. A batch stays
      // under both backends' limits on bound values (SQLite 32766).
      const std::size_t batch = std::max<std::size_t>(1, 8000 / rows.columns.size());
      const std::string insert = "INSERT INTO " + Quote(to, table) + " (" + columns + ") VALUES ";
      target.BeginTrans();
      try {
        for (std::size_t from = 0; from < rows.rows.size(); from += batch) {
          const std::size_t end = std::min(rows.rows.size(), from + batch);
          std::string sql = insert;
          std::vector<Variant> values;
          values.reserve((end - from) * rows.columns.size());
          for (std::size_t i = from; i < end; ++i) {
            sql += (i == from ? "(" : ", (") + marks + ")";
            values.insert(values.end(), rows.rows[i].begin(), rows.rows[i].end());
          }
          to.Run(sql, values);
        }
        target.CommitTrans();
      } catch (...) {
        target.RollbackTrans();
        throw;
      }
    }
    copy.targetRows = CountRows(to, table);
    if (progress) progress(copy);
    result.push_back(copy);
  }
  // The target's own indexes (full text, list search) from the rows copied,
  // and the planner's statistics of every table: a server would otherwise
  // plan the first queries on a register of a million rows as on empty
  // tables until its own background analysis came round.
  InitDatabase(target, false);
  target.ExecuteNative("ANALYZE");
  return result;
}

}  // namespace corvina20
