// See TextCollation.h. SQLite cannot alter a column's collation; the table's
// CREATE text in sqlite_schema is rewritten instead (the stored rows do not
// depend on a collation, only the indexes' order does) and every index is
// rebuilt, in the way SQLite documents for schema changes that keep the
// rows' format: writable_schema, a new schema version, REINDEX, all inside
// one transaction so that a failure leaves the old schema whole.
#include "data/schema/TextCollation.h"

#include <utility>
#include <vector>

#include "corvina20/Error.h"
#include "data/Backend.h"
#include "data/schema/DdlTokenizer.h"
#include "data/sqlite/SqliteText.h"

namespace corvina20::data {

using namespace ddl;

namespace {

bool IsTextTypeName(const std::string& upper) {
  return upper == "CHAR" || upper == "VARCHAR" || upper == "NCHAR" || upper == "NVARCHAR" || upper == "TEXT" ||
         upper == "NTEXT";
}

bool IsConstraintStart(const std::string& upper) {
  return upper == "CONSTRAINT" || upper == "PRIMARY" || upper == "UNIQUE" || upper == "FOREIGN" ||
         upper == "CHECK";
}

}  // namespace

std::string AddTextCollation(std::string_view createTable) {
  const std::vector<Token> tokens = Tokenize(createTable, 1);
  std::vector<std::size_t> inserts;  // offsets, ascending
  std::size_t i = 0;
  while (i < tokens.size() && !(tokens[i].kind == TokKind::Punct && tokens[i].text == "(")) ++i;
  // Each element of the column list: a name, a type, then its options up to
  // the ',' or ')' at the list's own depth.
  while (i < tokens.size() && tokens[i].kind != TokKind::End) {
    ++i;  // past '(' or ','
    const std::size_t start = i;
    int depth = 0;
    bool collated = false;
    while (tokens[i].kind != TokKind::End) {
      const Token& t = tokens[i];
      if (t.kind == TokKind::Punct && t.text == "(") ++depth;
      if (t.kind == TokKind::Punct && t.text == ")" && depth-- == 0) break;
      if (t.kind == TokKind::Punct && t.text == "," && depth == 0) break;
      if (t.kind == TokKind::Word && Upper(t.text) == "COLLATE") collated = true;
      ++i;
    }
    const bool column = start + 1 < i && (tokens[start].kind == TokKind::Word || tokens[start].kind == TokKind::QuotedName) &&
                        !(tokens[start].kind == TokKind::Word && IsConstraintStart(Upper(tokens[start].text)));
    if (column && !collated && tokens[start + 1].kind == TokKind::Word && IsTextTypeName(Upper(tokens[start + 1].text))) {
      std::size_t end = start + 1;
      std::size_t offset = tokens[end].offset + tokens[end].text.size();
      if (end + 1 < i && tokens[end + 1].kind == TokKind::Punct && tokens[end + 1].text == "(") {
        end += 1;
        while (end < i && !(tokens[end].kind == TokKind::Punct && tokens[end].text == ")")) ++end;
        if (end < i) offset = tokens[end].offset + 1;
      }
      inserts.push_back(offset);
    }
    if (tokens[i].kind == TokKind::End || tokens[i].text == ")") break;
  }
  std::string out(createTable);
  const std::string clause = std::string(" COLLATE ") + kTextCollation;
  for (auto it = inserts.rbegin(); it != inserts.rend(); ++it) out.insert(*it, clause);
  return out;
}

int MigrateTextCollation(Connection& connection) {
  Backend& backend = connection.Backend();
  std::vector<std::pair<std::string, std::string>> changed;  // table, new CREATE text
  for (const auto& row : backend.Run("SELECT name, sql FROM sqlite_schema WHERE type = 'table' AND "
                                     "substr(name, 1, 7) <> 'sqlite_' AND sql IS NOT NULL AND "
                                     "upper(substr(sql, 1, 13)) = 'CREATE TABLE '", {}).rows) {
    std::string sql = row[1].ToString();
    std::string updated = AddTextCollation(sql);
    if (updated != sql) changed.emplace_back(row[0].ToString(), std::move(updated));
  }
  if (changed.empty()) return 0;

  connection.BeginTrans();
  try {
    const std::int64_t version = backend.Run("PRAGMA schema_version", {}).rows.at(0).at(0).ToBigInt();
    backend.RunScript("PRAGMA writable_schema = ON");
    for (const auto& [table, sql] : changed)
      backend.Run("UPDATE sqlite_schema SET sql = ? WHERE type = 'table' AND name = ?", {Variant(sql), Variant(table)});
    // A new version makes SQLite read the schema again before the next
    // statement, so REINDEX already sorts by the new collation.
    backend.RunScript("PRAGMA schema_version = " + std::to_string(version + 1));
    backend.RunScript("PRAGMA writable_schema = OFF");
    backend.RunScript("REINDEX");
    connection.CommitTrans();
  } catch (...) {
    const Error error = CurrentError();
    try {
      backend.RunScript("PRAGMA writable_schema = OFF");
      if (connection.InTransaction()) connection.RollbackTrans();
    } catch (...) {
      // The rebuild's own failure is the one to report.
    }
    throw Error(kErrDatabase, "Corvina20.Schema",
                "Conversione delle colonne di testo senza distinzione di maiuscole non riuscita: " +
                    error.Description());
  }
  return static_cast<int>(changed.size());
}

}  // namespace corvina20::data
