// The schema files are written once, in a small subset of SQL Server DDL, so
// that the same text could create a SQL Server database. This file turns that
// subset into SQLite statements with a recursive-descent parser, over the
// tokens of DdlTokenizer, that knows exactly the constructs the subset allows;
// whatever else it meets is an error naming the line and the construct, never
// a pass-through.
// Declared column types keep their SQL Server names on purpose: the host maps
// them to ADO field types, so "money" must stay "money" in SQLite too.
#include "data/schema/DdlConverter.h"

#include <algorithm>
#include <cctype>
#include <optional>
#include <string>
#include <vector>

#include "corvina20/Error.h"
#include "data/postgres/PgHostObjects.h"
#include "data/schema/DdlTokenizer.h"
#include "data/sqlite/SqliteText.h"

namespace corvina20::data {

// The tokens and text helpers are this file's vocabulary.
using namespace ddl;

namespace {

// ---------------------------------------------------------------------------
// Column types

struct TypeRule {
  const char* name;
  int minArgs;
  int maxArgs;
  bool allowsMax;
  int maxLength;  // upper bound of a length or precision argument
};

constexpr TypeRule kTypes[] = {
    {"int", 0, 0, false, 0},         {"smallint", 0, 0, false, 0},
    {"tinyint", 0, 0, false, 0},     {"bigint", 0, 0, false, 0},
    {"bit", 0, 0, false, 0},         {"money", 0, 0, false, 0},
    {"smallmoney", 0, 0, false, 0},  {"real", 0, 0, false, 0},
    {"float", 0, 1, false, 53},      {"decimal", 0, 2, false, 38},
    {"numeric", 0, 2, false, 38},    {"datetime", 0, 0, false, 0},
    {"smalldatetime", 0, 0, false, 0}, {"date", 0, 0, false, 0},
    {"ntext", 0, 0, false, 0},       {"text", 0, 0, false, 0},
    {"nvarchar", 1, 1, true, 4000},  {"varchar", 1, 1, true, 8000},
    {"nchar", 1, 1, false, 4000},    {"char", 1, 1, false, 8000},
};

bool IsTextType(const std::string& lowerName) {
  return lowerName == "char" || lowerName == "varchar" || lowerName == "nchar" || lowerName == "nvarchar" ||
         lowerName == "text" || lowerName == "ntext";
}

const TypeRule* FindType(const std::string& lowerName) {
  for (const TypeRule& rule : kTypes) {
    if (lowerName == rule.name) return &rule;
  }
  return nullptr;
}

// ---------------------------------------------------------------------------
// Parser

struct ColumnDef {
  std::string name;  // as written
  std::string key;   // upper-cased bare name
  std::string type;  // declared type for SQLite
  std::string baseType;
  bool identity = false;
  bool notNull = false;
  bool inlinePrimaryKey = false;
  bool unique = false;
  std::string defaultSql;
  int line = 0;
};

struct KeyColumn {
  std::string name;
  std::string key;
  std::string order;  // "", "ASC" or "DESC"
};

// A name for the target: as written for SQLite; for PostgreSQL folded to
// lower case and quoted, the way the translator writes every name there.
std::string TargetName(const std::string& written, bool pg) {
  if (!pg) return written;
  std::string bare = written;
  if (!bare.empty() && (bare.front() == '[' || bare.front() == '"')) bare = bare.substr(1, bare.size() - 2);
  std::string out = "\"";
  for (char c : Lower(bare)) {
    if (c == '"') out += '"';
    out += c;
  }
  return out + "\"";
}

class Parser {
 public:
  Parser(std::string_view batch, int firstLine, bool pg)
      : text_(batch), tokens_(Tokenize(batch, firstLine)), pg_(pg) {}

  void ParseBatch(std::vector<std::string>& out) {
    while (Peek().kind != TokKind::End) {
      if (AcceptPunct(";")) continue;
      const Token& head = Peek();
      if (IsKeyword(head, "CREATE")) {
        Next();
        ParseCreate(out);
      } else if (IsKeyword(head, "ALTER")) {
        Next();
        ParseAlterTable(out);
      } else if (IsKeyword(head, "DROP")) {
        Next();
        ParseDrop(out);
      } else {
        Fail(head.line, "istruzione non gestita '" + head.text + "'");
      }
      const Token& after = Peek();
      if (after.kind != TokKind::End && !IsPunct(after, ";") && !IsKeyword(after, "CREATE") &&
          !IsKeyword(after, "ALTER") && !IsKeyword(after, "DROP")) {
        Fail(after.line, "testo inatteso '" + after.text + "' dopo l'istruzione");
      }
    }
  }

 private:
  // ---- token helpers

  const Token& Peek(std::size_t ahead = 0) const {
    return tokens_[std::min(pos_ + ahead, tokens_.size() - 1)];
  }
  const Token& Next() {
    const Token& token = Peek();
    if (pos_ < tokens_.size() - 1) ++pos_;
    return token;
  }
  static bool IsKeyword(const Token& token, const char* word) {
    return token.kind == TokKind::Word && Upper(token.text) == word;
  }
  static bool IsPunct(const Token& token, const char* punct) {
    return token.kind == TokKind::Punct && token.text == punct;
  }
  bool AcceptKeyword(const char* word) {
    if (!IsKeyword(Peek(), word)) return false;
    Next();
    return true;
  }
  bool AcceptPunct(const char* punct) {
    if (!IsPunct(Peek(), punct)) return false;
    Next();
    return true;
  }
  static std::string Describe(const Token& token) {
    return token.kind == TokKind::End ? std::string("fine del blocco") : "'" + token.text + "'";
  }
  void ExpectKeyword(const char* word) {
    if (!AcceptKeyword(word)) {
      Fail(Peek().line, std::string("atteso ") + word + ", trovato " + Describe(Peek()));
    }
  }
  void ExpectPunct(const char* punct) {
    if (!AcceptPunct(punct)) {
      Fail(Peek().line, std::string("atteso '") + punct + "', trovato " + Describe(Peek()));
    }
  }
  const Token& ExpectName(const char* what) {
    const Token& token = Peek();
    if (token.kind != TokKind::Word && token.kind != TokKind::QuotedName) {
      Fail(token.line, std::string("atteso il nome ") + what + ", trovato " + Describe(token));
    }
    return Next();
  }
  // A table, view or index name; "dbo." in front is dropped, any other
  // schema is outside the subset.
  std::string ExpectObjectName(const char* what) {
    const Token& first = ExpectName(what);
    if (!AcceptPunct(".")) return N(first.text);
    if (NameKey(first) != "DBO") Fail(first.line, "schema non gestito '" + first.text + "'");
    return N(ExpectName(what).text);
  }
  std::string N(const std::string& written) const { return TargetName(written, pg_); }
  static void SkipClustering(Parser& parser) {
    if (!parser.AcceptKeyword("CLUSTERED")) parser.AcceptKeyword("NONCLUSTERED");
  }

  // ---- CREATE

  void ParseCreate(std::vector<std::string>& out) {
    const Token& what = Peek();
    if (AcceptKeyword("TABLE")) {
      ParseCreateTable(out);
    } else if (IsKeyword(what, "UNIQUE") || IsKeyword(what, "INDEX") ||
               IsKeyword(what, "CLUSTERED") || IsKeyword(what, "NONCLUSTERED")) {
      out.push_back(ParseCreateIndex());
    } else if (AcceptKeyword("VIEW")) {
      out.push_back(ParseCreateView());
    } else {
      Fail(what.line, "CREATE " + what.text + " non gestito");
    }
  }

  void ParseCreateTable(std::vector<std::string>& out) {
    const int line = Peek().line;
    const std::string table = ExpectObjectName("della tabella");
    ExpectPunct("(");
    std::vector<ColumnDef> columns;
    std::vector<std::string> constraints;
    std::optional<std::vector<KeyColumn>> primaryKey;
    std::string primaryKeyName;
    do {
      const Token& head = Peek();
      if (IsKeyword(head, "CONSTRAINT") || IsKeyword(head, "PRIMARY") ||
          IsKeyword(head, "UNIQUE") || IsKeyword(head, "FOREIGN")) {
        ParseTableConstraint(table, constraints, primaryKey, primaryKeyName);
      } else {
        ColumnDef column = ParseColumn(table);
        for (const ColumnDef& other : columns) {
          if (other.key == column.key) {
            Fail(column.line, "colonna " + table + "." + column.name + " ripetuta");
          }
        }
        columns.push_back(std::move(column));
      }
    } while (AcceptPunct(","));
    ExpectPunct(")");
    if (columns.empty()) Fail(line, "la tabella " + table + " non ha colonne");

    const auto findColumn = [&](const std::string& key) -> ColumnDef* {
      for (ColumnDef& column : columns) {
        if (column.key == key) return &column;
      }
      return nullptr;
    };
    if (primaryKey) {
      for (const KeyColumn& keyColumn : *primaryKey) {
        if (findColumn(keyColumn.key) == nullptr) {
          Fail(line, "la chiave primaria di " + table + " nomina la colonna sconosciuta " +
                         keyColumn.name);
        }
      }
    }
    int inlineKeys = 0;
    for (const ColumnDef& column : columns) inlineKeys += column.inlinePrimaryKey ? 1 : 0;
    if (inlineKeys > 1 || (inlineKeys == 1 && primaryKey)) {
      Fail(line, "la tabella " + table + " dichiara due chiavi primarie");
    }

    // IDENTITY: SQLite numbers rows itself only through an INTEGER PRIMARY KEY
    // column, so the identity column must be the whole key; the table
    // constraint then becomes redundant and is dropped.
    bool dropPrimaryKey = false;
    const ColumnDef* identity = nullptr;
    for (const ColumnDef& column : columns) {
      if (!column.identity) continue;
      if (identity != nullptr) Fail(column.line, "la tabella " + table + " ha due colonne IDENTITY");
      identity = &column;
      if (column.baseType != "int") {
        Fail(column.line, "IDENTITY su una colonna " + column.baseType + " (" + table + "." +
                              column.name + "): solo int");
      }
      const bool wholeKey = column.inlinePrimaryKey ||
                            (primaryKey && primaryKey->size() == 1 &&
                             primaryKey->front().key == column.key);
      if (!wholeKey) {
        Fail(column.line, "la colonna IDENTITY " + table + "." + column.name +
                              " deve essere l'intera chiave primaria");
      }
      dropPrimaryKey = primaryKey.has_value();
    }

    std::string sql = "CREATE TABLE " + table + " (";
    bool first = true;
    if (pg_) dropPrimaryKey = false;
    const auto add = [&](const std::string& element) {
      sql += first ? "\n  " : ",\n  ";
      sql += element;
      first = false;
    };
    for (const ColumnDef& column : columns) add(ColumnSql(column));
    if (primaryKey && !dropPrimaryKey) {
      std::string element;
      if (!primaryKeyName.empty()) element = "CONSTRAINT " + N(primaryKeyName) + " ";
      add(element + "PRIMARY KEY " + KeyListSql(*primaryKey));
    }
    for (const std::string& constraint : constraints) add(constraint);
    sql += "\n)";
    out.push_back(std::move(sql));
    if (!pg_) return;
    for (const ColumnDef& column : columns) out.push_back(CommentSql(table, column));
    if (identity != nullptr) {
      // Names here are folded and quoted: "t" → t_identity, argument 'col'.
      const std::string bareTable = table.substr(1, table.size() - 2);
      const std::string column = N(identity->name);
      out.push_back("CREATE TRIGGER " + N(bareTable + "_identity") + " AFTER INSERT ON " + table +
                    " FOR EACH STATEMENT EXECUTE FUNCTION " + pg::kIdentityFollow + "('" +
                    column.substr(1, column.size() - 2) + "')");
    }
  }

  // PostgreSQL: the column's SQL Server type and its name as the schema
  // writes it ("nvarchar(80) RagioneSociale"), read back by the backend so
  // that values, field types and field names are those of the schema.
  std::string CommentSql(const std::string& table, const ColumnDef& column) const {
    std::string bare = N(column.name);
    std::string name = column.name;
    if (!name.empty() && (name.front() == '[' || name.front() == '"')) name = name.substr(1, name.size() - 2);
    if (name.find_first_of(" '") != std::string::npos) name = bare.substr(1, bare.size() - 2);
    return "COMMENT ON COLUMN " + table + "." + bare + " IS '" + column.type + " " + name + "'";
  }

  std::string ColumnSql(const ColumnDef& column) const {
    if (pg_) return PostgresColumnSql(column);
    std::string sql = column.name + " ";
    if (column.identity) {
      sql += "INTEGER PRIMARY KEY AUTOINCREMENT";
    } else {
      sql += column.type;
      // Text compares as on the server the module was written for: without
      // regard to case. The column's collation makes =, IN, ORDER BY, GROUP
      // BY, DISTINCT and the indexes on it (unique ones included) follow it.
      if (IsTextType(column.baseType)) sql += std::string(" COLLATE ") + kTextCollation;
      if (column.inlinePrimaryKey) sql += " PRIMARY KEY";
    }
    if (column.unique) sql += " UNIQUE";
    if (column.notNull) sql += " NOT NULL";
    if (!column.defaultSql.empty()) sql += " DEFAULT " + column.defaultSql;
    return sql;
  }

  std::string PostgresColumnSql(const ColumnDef& column) const {
    std::string sql = N(column.name) + " ";
    if (column.identity) {
      sql += "integer GENERATED BY DEFAULT AS IDENTITY";
      if (column.inlinePrimaryKey) sql += " PRIMARY KEY";
    } else {
      sql += pg::PostgresTypeOf(column.type);
      if (IsTextType(column.baseType)) sql += std::string(" COLLATE ") + pg::kTextCollation;
      if (column.inlinePrimaryKey) sql += " PRIMARY KEY";
    }
    if (column.unique) sql += " UNIQUE";
    if (column.notNull) sql += " NOT NULL";
    if (!column.defaultSql.empty())
      sql += " DEFAULT " + (column.defaultSql == "CURRENT_TIMESTAMP" ? std::string("LOCALTIMESTAMP(0)") : column.defaultSql);
    return sql;
  }

  std::string KeyListSql(const std::vector<KeyColumn>& keys) const {
    std::string sql = "(";
    for (std::size_t i = 0; i < keys.size(); ++i) {
      if (i > 0) sql += ", ";
      sql += N(keys[i].name);
      if (!keys[i].order.empty()) sql += " " + keys[i].order;
    }
    return sql + ")";
  }

  std::vector<KeyColumn> ParseKeyList(bool allowOrder) {
    ExpectPunct("(");
    std::vector<KeyColumn> keys;
    do {
      const Token& name = ExpectName("della colonna");
      KeyColumn key{name.text, NameKey(name), ""};
      if (allowOrder) {
        if (AcceptKeyword("ASC")) key.order = "ASC";
        else if (AcceptKeyword("DESC")) key.order = "DESC";
      }
      keys.push_back(std::move(key));
    } while (AcceptPunct(","));
    ExpectPunct(")");
    return keys;
  }

  void ParseTableConstraint(const std::string& table, std::vector<std::string>& constraints,
                            std::optional<std::vector<KeyColumn>>& primaryKey,
                            std::string& primaryKeyName) {
    std::string name;
    if (AcceptKeyword("CONSTRAINT")) name = N(ExpectName("del vincolo").text);
    const Token& kind = Peek();
    std::string prefix = name.empty() ? std::string() : "CONSTRAINT " + name + " ";
    if (AcceptKeyword("PRIMARY")) {
      ExpectKeyword("KEY");
      SkipClustering(*this);
      if (primaryKey) Fail(kind.line, "la tabella " + table + " dichiara due chiavi primarie");
      primaryKey = ParseKeyList(true);
      primaryKeyName = name;
    } else if (AcceptKeyword("UNIQUE")) {
      SkipClustering(*this);
      constraints.push_back(prefix + "UNIQUE " + KeyListSql(ParseKeyList(true)));
    } else if (AcceptKeyword("FOREIGN")) {
      ExpectKeyword("KEY");
      const std::vector<KeyColumn> columns = ParseKeyList(false);
      ExpectKeyword("REFERENCES");
      const std::string target = ExpectObjectName("della tabella");
      const std::vector<KeyColumn> targetColumns = ParseKeyList(false);
      if (targetColumns.size() != columns.size()) {
        Fail(kind.line, "chiave esterna di " + table + " con un numero di colonne diverso da " +
                            target);
      }
      std::string sql = prefix + "FOREIGN KEY " + KeyListSql(columns) + " REFERENCES " + target +
                        " " + KeyListSql(targetColumns);
      while (AcceptKeyword("ON")) {
        const Token& event = Peek();
        if (!AcceptKeyword("DELETE") && !AcceptKeyword("UPDATE")) {
          Fail(event.line, "ON " + event.text + " non gestito nella chiave esterna");
        }
        sql += " ON " + Upper(event.text) + " " + ParseReferentialAction();
      }
      constraints.push_back(sql);
    } else {
      Fail(kind.line, "vincolo non gestito " + Describe(kind) + " nella tabella " + table);
    }
  }

  std::string ParseReferentialAction() {
    const Token& action = Peek();
    if (AcceptKeyword("CASCADE")) return "CASCADE";
    if (AcceptKeyword("NO")) {
      ExpectKeyword("ACTION");
      return "NO ACTION";
    }
    if (AcceptKeyword("SET")) {
      if (AcceptKeyword("NULL")) return "SET NULL";
      if (AcceptKeyword("DEFAULT")) return "SET DEFAULT";
    }
    Fail(action.line, "azione " + Describe(action) + " non gestita nella chiave esterna");
  }

  ColumnDef ParseColumn(const std::string& table) {
    const Token& nameToken = ExpectName("della colonna");
    ColumnDef column;
    column.name = nameToken.text;
    column.key = NameKey(nameToken);
    column.line = nameToken.line;
    ParseType(table, column);
    bool nullSeen = false;
    for (;;) {
      const Token& option = Peek();
      if (AcceptKeyword("NOT")) {
        ExpectKeyword("NULL");
        if (nullSeen) Fail(option.line, "NULL/NOT NULL ripetuto in " + table + "." + column.name);
        column.notNull = true;
        nullSeen = true;
      } else if (AcceptKeyword("NULL")) {
        if (nullSeen) Fail(option.line, "NULL/NOT NULL ripetuto in " + table + "." + column.name);
        nullSeen = true;
      } else if (AcceptKeyword("IDENTITY")) {
        if (AcceptPunct("(")) {
          const Token& seed = Next();
          ExpectPunct(",");
          const Token& step = Next();
          ExpectPunct(")");
          if (seed.text != "1" || step.text != "1") {
            Fail(option.line, "IDENTITY(" + seed.text + "," + step.text + ") non gestito in " +
                                  table + "." + column.name + ": solo IDENTITY(1,1)");
          }
        }
        column.identity = true;
      } else if (AcceptKeyword("DEFAULT")) {
        if (!column.defaultSql.empty()) {
          Fail(option.line, "DEFAULT ripetuto in " + table + "." + column.name);
        }
        column.defaultSql = ParseDefaultValue();
      } else if (AcceptKeyword("PRIMARY")) {
        ExpectKeyword("KEY");
        SkipClustering(*this);
        column.inlinePrimaryKey = true;
      } else if (AcceptKeyword("UNIQUE")) {
        SkipClustering(*this);
        column.unique = true;
      } else if (option.kind == TokKind::End || IsPunct(option, ",") || IsPunct(option, ")")) {
        break;
      } else {
        Fail(option.line, "opzione di colonna non gestita '" + option.text + "' in " + table +
                              "." + column.name);
      }
    }
    if (column.identity && !column.defaultSql.empty()) {
      Fail(column.line, "IDENTITY con DEFAULT in " + table + "." + column.name);
    }
    return column;
  }

  void ParseType(const std::string& table, ColumnDef& column) {
    const Token& typeToken = Peek();
    if (typeToken.kind != TokKind::Word) {
      Fail(typeToken.line, "atteso il tipo di " + table + "." + column.name + ", trovato " +
                               Describe(typeToken));
    }
    Next();
    const std::string name = Lower(typeToken.text);
    const TypeRule* rule = FindType(name);
    if (rule == nullptr) {
      Fail(typeToken.line, "tipo di colonna non gestito '" + typeToken.text + "' in " + table + "." +
                               column.name);
    }
    column.baseType = name;
    std::vector<std::string> args;
    bool isMax = false;
    if (AcceptPunct("(")) {
      do {
        const Token& arg = Next();
        if (IsKeyword(arg, "MAX") && rule->allowsMax) {
          isMax = true;
          args.push_back("max");
        } else if (arg.kind == TokKind::Number && arg.text.find('.') == std::string::npos) {
          args.push_back(arg.text);
        } else {
          Fail(arg.line, "argomento di tipo non gestito " + Describe(arg) + " in " + table + "." +
                             column.name);
        }
      } while (AcceptPunct(","));
      ExpectPunct(")");
    }
    const int count = static_cast<int>(args.size());
    if (count < rule->minArgs || count > rule->maxArgs || (isMax && count != 1)) {
      Fail(typeToken.line, "numero di argomenti errato per il tipo " + name + " in " + table + "." +
                               column.name);
    }
    if (isMax) {
      // SQLite cannot parse "(max)"; ntext/text are the SQL Server types of
      // the same unlimited text, so the host still maps them to memo fields.
      column.type = name == "nvarchar" ? "ntext" : "text";
      return;
    }
    // A length or precision runs from 1; a scale from 0 up to the precision.
    for (int i = 0; i < count; ++i) {
      const long value = args[static_cast<std::size_t>(i)].size() > 6
                             ? -1
                             : std::stol(args[static_cast<std::size_t>(i)]);
      const long lowest = i == 0 ? 1 : 0;
      const long highest = i == 0 ? rule->maxLength : std::stol(args.front());
      if (value < lowest || value > highest) {
        Fail(typeToken.line, "argomento " + args[static_cast<std::size_t>(i)] +
                                 " fuori limite per il tipo " + name + " in " + table + "." +
                                 column.name);
      }
    }
    column.type = name;
    if (count > 0) {
      column.type += "(" + args.front();
      if (count == 2) column.type += "," + args[1];
      column.type += ")";
    }
  }

  // DEFAULT values: literals (numbers, strings, NULL), any number of
  // parentheses around them, and getdate() as the current time.
  std::string ParseDefaultValue() {
    const Token& token = Peek();
    if (AcceptPunct("(")) {
      std::string inner = ParseDefaultValue();
      ExpectPunct(")");
      return inner;
    }
    if (token.kind == TokKind::Number) {
      Next();
      return token.text;
    }
    if (IsPunct(token, "-") || IsPunct(token, "+")) {
      Next();
      const Token& number = Next();
      if (number.kind != TokKind::Number) {
        Fail(number.line, "valore DEFAULT non gestito " + Describe(number));
      }
      return (token.text == "-" ? "-" : "") + number.text;
    }
    if (token.kind == TokKind::String) {
      Next();
      return token.text.front() == '\'' ? token.text : token.text.substr(1);
    }
    if (AcceptKeyword("NULL")) return "NULL";
    if (AcceptKeyword("GETDATE")) {
      ExpectPunct("(");
      ExpectPunct(")");
      return "CURRENT_TIMESTAMP";
    }
    if (AcceptKeyword("CURRENT_TIMESTAMP")) return "CURRENT_TIMESTAMP";
    Fail(token.line, "valore DEFAULT non gestito " + Describe(token));
  }

  std::string ParseCreateIndex() {
    std::string sql = "CREATE ";
    if (AcceptKeyword("UNIQUE")) sql += "UNIQUE ";
    SkipClustering(*this);
    ExpectKeyword("INDEX");
    const std::string name = ExpectObjectName("dell'indice");
    ExpectKeyword("ON");
    const std::string table = ExpectObjectName("della tabella");
    const std::vector<KeyColumn> columns = ParseKeyList(true);
    const Token& after = Peek();
    if (IsKeyword(after, "INCLUDE") || IsKeyword(after, "WHERE") || IsKeyword(after, "WITH")) {
      Fail(after.line, after.text + " non gestito nell'indice " + name);
    }
    return sql + "INDEX " + name + " ON " + table + " " + IndexKeyListSql(columns);
  }

  // PostgreSQL puts NULLs last in ascending order, SQL Server and SQLite
  // first, and the translator keeps their order (NULLS FIRST): an index
  // ordered the server's way could not serve those ORDER BYs, and a list's
  // page by name would sort the whole table.
  std::string IndexKeyListSql(const std::vector<KeyColumn>& keys) const {
    if (!pg_) return KeyListSql(keys);
    std::string sql = "(";
    for (std::size_t i = 0; i < keys.size(); ++i) {
      if (i > 0) sql += ", ";
      sql += N(keys[i].name);
      sql += keys[i].order == "DESC" ? " DESC NULLS LAST" : " NULLS FIRST";
    }
    return sql + ")";
  }

  // The body of a view is kept as written: it must be written in SQL that
  // both servers read (the schema's views are plain SELECT ... UNION ...).
  std::string ParseCreateView() {
    const std::string name = ExpectObjectName("della vista");
    std::string columns;
    if (IsPunct(Peek(), "(")) columns = " " + KeyListSql(ParseKeyList(false));
    ExpectKeyword("AS");
    const std::size_t start = Peek().offset;
    if (Peek().kind == TokKind::End) Fail(Peek().line, "vista " + name + " senza SELECT");
    int depth = 0;
    while (Peek().kind != TokKind::End) {
      const Token& token = Peek();
      if (IsPunct(token, "(")) ++depth;
      if (IsPunct(token, ")")) --depth;
      if (depth == 0 && IsPunct(token, ";")) break;
      Next();
    }
    const std::string_view body = Trim(text_.substr(start, Peek().offset - start));
    return "CREATE VIEW " + name + columns + " AS " + std::string(body);
  }

  // ---- ALTER TABLE name ADD column [, column]

  void ParseAlterTable(std::vector<std::string>& out) {
    ExpectKeyword("TABLE");
    const std::string table = ExpectObjectName("della tabella");
    ExpectKeyword("ADD");
    do {
      const Token& head = Peek();
      if (IsKeyword(head, "CONSTRAINT") || IsKeyword(head, "PRIMARY") ||
          IsKeyword(head, "FOREIGN") || IsKeyword(head, "UNIQUE")) {
        Fail(head.line, "ALTER TABLE " + table + " ADD " + head.text + " non gestito");
      }
      const ColumnDef column = ParseColumn(table);
      if (column.identity || column.inlinePrimaryKey || column.unique) {
        Fail(column.line, "ALTER TABLE ADD di una colonna chiave o IDENTITY (" + table + "." +
                              column.name + ") non gestito");
      }
      if (column.notNull && column.defaultSql.empty()) {
        Fail(column.line, "ALTER TABLE ADD di una colonna NOT NULL senza DEFAULT (" + table +
                              "." + column.name + ")");
      }
      out.push_back("ALTER TABLE " + table + " ADD COLUMN " + ColumnSql(column));
      if (pg_) out.push_back(CommentSql(table, column));
    } while (AcceptPunct(","));
  }

  // ---- DROP TABLE name | DROP VIEW name | DROP INDEX name ON table

  void ParseDrop(std::vector<std::string>& out) {
    const Token& what = Peek();
    if (AcceptKeyword("TABLE") || AcceptKeyword("VIEW")) {
      out.push_back("DROP " + Upper(what.text) + " " + ExpectObjectName("dell'oggetto"));
    } else if (AcceptKeyword("INDEX")) {
      const std::string name = N(ExpectName("dell'indice").text);
      ExpectKeyword("ON");
      ExpectObjectName("della tabella");
      out.push_back("DROP INDEX " + name);
    } else {
      Fail(what.line, "DROP " + what.text + " non gestito");
    }
  }

  std::string_view text_;
  std::vector<Token> tokens_;
  std::size_t pos_ = 0;
  bool pg_ = false;
};

}  // namespace

std::vector<std::string> ConvertDdlStatementsForSqlite(std::string_view ddl) {
  return ConvertDdlStatements(ddl, SqlDialect::Sqlite);
}

std::vector<std::string> ConvertDdlStatements(std::string_view ddl, SqlDialect dialect) {
  std::vector<std::string> statements;
  // Batches end at lines holding only GO (any case), as the SQL Server tools
  // read them; a line is never a GO separator inside a batch's text otherwise.
  std::size_t batchStart = 0;
  int batchLine = 1;
  int line = 1;
  std::size_t pos = 0;
  const auto flush = [&](std::size_t end) {
    Parser parser(ddl.substr(batchStart, end - batchStart), batchLine, dialect == SqlDialect::Postgres);
    parser.ParseBatch(statements);
  };
  while (pos <= ddl.size()) {
    std::size_t end = ddl.find('\n', pos);
    if (end == std::string_view::npos) end = ddl.size();
    if (Upper(Trim(ddl.substr(pos, end - pos))) == "GO") {
      flush(pos);
      batchStart = std::min(end + 1, ddl.size());
      batchLine = line + 1;
    }
    ++line;
    pos = end + 1;
  }
  flush(ddl.size());
  return statements;
}

std::string ConvertDdlForSqlite(std::string_view ddl) {
  std::string script;
  for (const std::string& statement : ConvertDdlStatementsForSqlite(ddl)) {
    script += statement;
    script += ";\n";
  }
  return script;
}

}  // namespace corvina20::data
