// The catalogue's full-text indexes on SQLite; see FtsIndexes.h. Each index
// of T.C is an external-content FTS5 table (the text stays in T only), a
// change log, and three triggers on T. The update trigger fires only when C
// or the key really changes, since cards write every bound field on save.
#include "data/fulltext/FtsIndexes.h"

#include <set>
#include <string>
#include <vector>

#include "core/Text.h"
#include "corvina20/Error.h"
#include "corvina20/FullText.h"
#include "data/Backend.h"
#include "data/fulltext/FtsSqlite.h"
#include "data/fulltext/FtsWords.h"

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

// How many entries the change log keeps: a connection whose mirror is
// further behind reloads it whole (FtsMirror.h).
constexpr int kLogEntries = 10000;

std::vector<std::string> DropStatements(const std::string& table, const std::string& column) {
  std::string index = IndexTableName(table, column);
  return {"DROP TRIGGER IF EXISTS " + Q(index + "_ai"), "DROP TRIGGER IF EXISTS " + Q(index + "_ad"),
          "DROP TRIGGER IF EXISTS " + Q(index + "_au"), "DROP TABLE IF EXISTS " + Q(index),
          "DROP TABLE IF EXISTS " + Q(LogTableName(table, column)),
          // the term frequencies of version 1, now counted by the mirrors
          "DROP TABLE IF EXISTS " + Q("CORftdf_" + table + "_" + column)};
}

std::vector<std::string> CreateStatements(const std::string& table, const std::string& column) {
  const std::string index = Q(IndexTableName(table, column));
  const std::string log = Q(LogTableName(table, column));
  const std::string c = Q(column), key = Q(kKey);
  const std::string name = IndexTableName(table, column);
  // Each change logs the key it touched under a random tag, and the log
  // keeps its last kLogEntries entries.
  auto logged = [&](const std::string& row) {
    return "INSERT INTO " + log + " (id, tag) VALUES (" + row + "." + key + ", random());";
  };
  const std::string prune = "DELETE FROM " + log + " WHERE seq <= (SELECT max(seq) FROM " + log + ") - " +
                            std::to_string(kLogEntries) + ";";
  std::string insertRow = "INSERT INTO " + index + " (rowid, " + c + ") VALUES (new." + key + ", new." + c + ");";
  std::string deleteRow = "INSERT INTO " + index + " (" + index + ", rowid, " + c + ") VALUES ('delete', old." +
                          key + ", old." + c + ");";
  return {
      "CREATE VIRTUAL TABLE " + index + " USING fts5(" + c + ", content='" + table + "', content_rowid='" + kKey +
          "', tokenize='corvina', detail=none, columnsize=0)",
      "CREATE TABLE " + log + " (seq INTEGER PRIMARY KEY, id INTEGER, tag INTEGER NOT NULL)",
      "INSERT INTO " + index + " (" + index + ") VALUES ('rebuild')",
      // A first entry of no row: a mirror of an index built anew never
      // takes it for the one it knew.
      "INSERT INTO " + log + " (id, tag) VALUES (NULL, random())",
      "CREATE TRIGGER " + Q(name + "_ai") + " AFTER INSERT ON " + Q(table) + " BEGIN " + insertRow + " " +
          logged("new") + " " + prune + " END",
      "CREATE TRIGGER " + Q(name + "_ad") + " AFTER DELETE ON " + Q(table) + " BEGIN " + deleteRow + " " +
          logged("old") + " " + prune + " END",
      "CREATE TRIGGER " + Q(name + "_au") + " AFTER UPDATE OF " + c + ", " + key + " ON " + Q(table) + " WHEN old." +
          c + " IS NOT new." + c + " OR old." + key + " IS NOT new." + key + " BEGIN " + deleteRow + " " +
          insertRow + " " + logged("old") + " INSERT INTO " + log + " (id, tag) SELECT new." + key +
          ", random() WHERE new." + key + " IS NOT old." + key + "; " + prune + " END",
  };
}

}  // namespace

int IndexVersion() {
  // The version in the low 4 bits, 26 bits of the checksum above: a
  // positive int.
  return kIndexVersion | static_cast<int>((LoadedThesaurus().checksum & 0x3FFFFFFu) << 4);
}

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
      bool current = !known.rows.empty() && known.rows[0][0].ToLong() == IndexVersion() &&
                     !backend.Columns(name).empty();
      if (current) continue;
      for (const std::string& s : DropStatements(c.table, c.column)) connection.ExecuteNative(s);
      for (const std::string& s : CreateStatements(c.table, c.column)) connection.ExecuteNative(s);
      backend.Run("INSERT OR REPLACE INTO CORFullText (NomeIndice, Tabella, Colonna, Versione) VALUES (?, ?, ?, ?)",
                  {Variant(name), Variant(c.table), Variant(c.column), Variant(static_cast<std::int32_t>(IndexVersion()))});
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
