// The catalogue's full-text indexes on SQLite; see FtsIndexes.h. Each index
// of T.C is an external-content FTS5 table (the text stays in T only), a table
// of term frequencies, and three triggers on T. The update trigger fires only
// when C or the key really changes, since cards write every bound field on
// save.
#include "data/fulltext/FtsIndexes.h"

#include <set>
#include <string>
#include <vector>

#include "core/Text.h"
#include "corvina20/Error.h"
#include "corvina20/FullText.h"
#include "data/Backend.h"
#include "data/fulltext/FtsSqlite.h"

namespace corvina20::data::fulltext {
namespace {

constexpr const char* kKey = "IdAnagrafica";

constexpr const char* kBookkeeping =
    "CREATE TABLE IF NOT EXISTS CORFullText (NomeIndice nvarchar(200) NOT NULL PRIMARY KEY, "
    "Tabella nvarchar(128) NOT NULL, Colonna nvarchar(128) NOT NULL, Versione int NOT NULL)";

std::string Q(const std::string& name) { return "\"" + name + "\""; }

bool IsPlainName(const std::string& s) {
  if (s.empty()) return false;
  for (char c : s)
    if (!((c >= 'A' && c <= 'Z') || (c >= 'a' && c <= 'z') || (c >= '0' && c <= '9') || c == '_'))
      return false;
  return true;
}

std::vector<std::string> DropStatements(const std::string& table, const std::string& column) {
  std::string index = IndexTableName(table, column);
  return {"DROP TRIGGER IF EXISTS " + Q(index + "_ai"), "DROP TRIGGER IF EXISTS " + Q(index + "_ad"),
          "DROP TRIGGER IF EXISTS " + Q(index + "_au"), "DROP TABLE IF EXISTS " + Q(index),
          "DROP TABLE IF EXISTS " + Q(FrequencyTableName(table, column))};
}

std::vector<std::string> CreateStatements(const std::string& table, const std::string& column) {
  const std::string index = Q(IndexTableName(table, column));
  const std::string df = Q(FrequencyTableName(table, column));
  const std::string t = Q(table), c = Q(column), key = Q(kKey);
  const std::string name = IndexTableName(table, column);
  auto add = [&](const std::string& row) {
    return "INSERT INTO " + df + " (term, df) SELECT value, 1 FROM json_each(corvina_ft_terms(" + row + "." + c +
           ")) WHERE true ON CONFLICT (term) DO UPDATE SET df = df + 1;";
  };
  auto remove = [&](const std::string& row) {
    std::string terms = "(SELECT value FROM json_each(corvina_ft_terms(" + row + "." + c + ")))";
    return "UPDATE " + df + " SET df = df - 1 WHERE term IN " + terms + "; DELETE FROM " + df +
           " WHERE df <= 0 AND term IN " + terms + ";";
  };
  std::string insertRow = "INSERT INTO " + index + " (rowid, " + c + ") VALUES (new." + key + ", new." + c + ");";
  std::string deleteRow = "INSERT INTO " + index + " (" + index + ", rowid, " + c + ") VALUES ('delete', old." +
                          key + ", old." + c + ");";
  return {
      "CREATE VIRTUAL TABLE " + index + " USING fts5(" + c + ", content='" + table + "', content_rowid='" + kKey +
          "', tokenize='corvina', detail=none, columnsize=0)",
      "CREATE TABLE " + df + " (term TEXT NOT NULL PRIMARY KEY, df INTEGER NOT NULL) WITHOUT ROWID",
      "INSERT INTO " + index + " (" + index + ") VALUES ('rebuild')",
      "INSERT INTO " + df + " (term, df) SELECT j.value, count(*) FROM " + t + " AS r, json_each(corvina_ft_terms(r." +
          c + ")) AS j GROUP BY j.value",
      "CREATE TRIGGER " + Q(name + "_ai") + " AFTER INSERT ON " + t + " BEGIN " + insertRow + " " + add("new") +
          " END",
      "CREATE TRIGGER " + Q(name + "_ad") + " AFTER DELETE ON " + t + " BEGIN " + deleteRow + " " +
          remove("old") + " END",
      "CREATE TRIGGER " + Q(name + "_au") + " AFTER UPDATE OF " + c + ", " + key + " ON " + t + " WHEN old." + c +
          " IS NOT new." + c + " OR old." + key + " IS NOT new." + key + " BEGIN " + deleteRow + " " +
          remove("old") + " " + insertRow + " " + add("new") + " END",
  };
}

}  // namespace

int EnsureFullTextIndexes(Connection& connection) {
  const std::vector<FullTextColumn>& catalogue = FullTextCatalogue();
  for (const FullTextColumn& c : catalogue) {
    if (!IsPlainName(c.table) || !IsPlainName(c.column) || !connection.ColumnType(c.table, c.column) ||
        !connection.ColumnType(c.table, kKey))
      throw Error(kErrDatabase, "Corvina20.FullText",
                  "Catalogo full-text: colonna " + c.table + "." + c.column + " (o la sua chiave " + kKey +
                      ") assente dal database");
  }
  Backend& backend = connection.Backend();
  connection.BeginTrans();
  int built = 0;
  try {
    backend.Run(kBookkeeping, {});
    std::set<std::string> wanted;
    for (const FullTextColumn& c : catalogue) {
      std::string name = IndexTableName(c.table, c.column);
      wanted.insert(text::Upper(name));
      ResultSet known = backend.Run("SELECT Versione FROM CORFullText WHERE NomeIndice = ?", {Variant(name)});
      bool current = !known.rows.empty() && known.rows[0][0].ToLong() == kIndexVersion &&
                     !backend.Columns(name).empty();
      if (current) continue;
      for (const std::string& s : DropStatements(c.table, c.column)) connection.ExecuteNative(s);
      for (const std::string& s : CreateStatements(c.table, c.column)) connection.ExecuteNative(s);
      backend.Run("INSERT OR REPLACE INTO CORFullText (NomeIndice, Tabella, Colonna, Versione) VALUES (?, ?, ?, ?)",
                  {Variant(name), Variant(c.table), Variant(c.column), Variant(static_cast<std::int32_t>(kIndexVersion))});
      ++built;
    }
    ResultSet recorded = backend.Run("SELECT NomeIndice, Tabella, Colonna FROM CORFullText", {});
    for (const auto& row : recorded.rows) {
      if (wanted.count(text::Upper(row[0].ToString()))) continue;
      for (const std::string& s : DropStatements(row[1].ToString(), row[2].ToString()))
        connection.ExecuteNative(s);
      backend.Run("DELETE FROM CORFullText WHERE NomeIndice = ?", {row[0]});
    }
    connection.CommitTrans();
  } catch (...) {
    connection.RollbackTrans();
    throw;
  }
  return built;
}

}  // namespace corvina20::data::fulltext
