// Statements, SELECT clauses and FROM clauses of the T-SQL subset; token
// helpers. Expressions are in TsqlParseExpr.cpp.
#include "data/tsql/TsqlParser.h"

#include <cassert>
#include <string>
#include <utility>

#include "core/Text.h"
#include "data/tsql/TsqlError.h"

namespace corvina20::data::tsql {
namespace {

constexpr std::string_view kReserved[] = {
    "ALL",      "ALTER",   "AND",      "APPLY",    "AS",       "ASC",       "BEGIN",
    "BETWEEN",  "BY",      "CASE",     "CAST",     "COLLATE",  "COMMIT",    "CONVERT",
    "CREATE",   "CROSS",   "DECLARE",  "DEFAULT",  "DELETE",   "DESC",      "DISTINCT",
    "DROP",     "ELSE",    "END",      "ESCAPE",   "EXCEPT",   "EXEC",      "EXECUTE",
    "EXISTS",   "FOR",     "FROM",     "FULL",     "GO",       "GROUP",     "HAVING",
    "IF",       "IN",      "INNER",    "INSERT",   "INTERSECT", "INTO",     "IS",
    "JOIN",     "LEFT",    "LIKE",     "MERGE",    "NOT",      "NULL",      "ON",
    "OPTION",   "OR",      "ORDER",    "OUTER",    "OVER",     "PERCENT",   "PIVOT",
    "RETURN",   "RIGHT",   "ROLLBACK", "SELECT",   "SET",      "TABLE",     "THEN",
    "TOP",      "TRUNCATE", "UNION",   "UNPIVOT",  "UPDATE",   "VALUES",    "WHEN",
    "WHERE",    "WHILE",   "WITH",
};

bool StartsStatement(const Token& t) {
  if (t.kind != TokenKind::Identifier) return false;
  for (std::string_view k : {"SELECT", "INSERT", "UPDATE", "DELETE"})
    if (text::EqualsNoCase(t.text, k)) return true;
  return false;
}

}  // namespace

bool IsReservedWord(std::string_view word) {
  for (std::string_view k : kReserved)
    if (text::EqualsNoCase(k, word)) return true;
  return false;
}

Parser::Parser(std::vector<Token> tokens) : tokens_(std::move(tokens)) {
  assert(!tokens_.empty() && tokens_.back().kind == TokenKind::End);
}

// --- tokens -----------------------------------------------------------------

const Token& Parser::Peek(std::size_t ahead) const {
  std::size_t k = pos_ + ahead;
  return k < tokens_.size() ? tokens_[k] : tokens_.back();
}

const Token& Parser::Advance() {
  const Token& t = Peek();
  if (pos_ < tokens_.size() - 1) ++pos_;
  return t;
}

bool Parser::IsKeyword(std::string_view keyword, std::size_t ahead) const {
  const Token& t = Peek(ahead);
  return t.kind == TokenKind::Identifier && text::EqualsNoCase(t.text, keyword);
}

bool Parser::AcceptKeyword(std::string_view keyword) {
  if (!IsKeyword(keyword)) return false;
  Advance();
  return true;
}

void Parser::ExpectKeyword(std::string_view keyword) {
  if (!AcceptKeyword(keyword)) Unexpected();
}

bool Parser::IsOperator(std::string_view op, std::size_t ahead) const {
  const Token& t = Peek(ahead);
  return t.kind == TokenKind::Operator && t.text == op;
}

bool Parser::AcceptOperator(std::string_view op) {
  if (!IsOperator(op)) return false;
  Advance();
  return true;
}

void Parser::ExpectOperator(std::string_view op) {
  if (!AcceptOperator(op)) Unexpected();
}

bool Parser::IsName(std::size_t ahead) const {
  const Token& t = Peek(ahead);
  return t.kind == TokenKind::QuotedIdentifier ||
         (t.kind == TokenKind::Identifier && !IsReservedWord(t.text));
}

Name Parser::ParseName() {
  if (!IsName()) Unexpected();
  const Token& t = Advance();
  return Name{t.text, t.kind == TokenKind::QuotedIdentifier};
}

void Parser::Unexpected() const {
  const Token& t = Peek();
  switch (t.kind) {
    case TokenKind::End:
      ThrowUnsupported("fine del testo inattesa");
    case TokenKind::Identifier:
      ThrowUnsupported(text::Upper(t.text));
    case TokenKind::Variable:
      ThrowUnsupported("variabile " + t.text);
    case TokenKind::String:
    case TokenKind::NationalString:
      ThrowUnsupported("testo '" + t.text + "' in questa posizione");
    default:
      ThrowUnsupported("'" + t.text + "' in questa posizione");
  }
}

// --- statements -------------------------------------------------------------

std::vector<Statement> Parser::ParseScript() {
  std::vector<Statement> out;
  for (;;) {
    while (AcceptOperator(";")) {
    }
    if (Peek().kind == TokenKind::End) return out;
    out.push_back(ParseStatement());
    // T-SQL lets statements follow each other without a separator.
    if (!IsOperator(";") && Peek().kind != TokenKind::End && !StartsStatement(Peek())) Unexpected();
  }
}

Statement Parser::ParseStatement() {
  if (IsKeyword("SELECT")) {
    Statement s;
    s.kind = StatementKind::Select;
    s.select = ParseSelect();
    return s;
  }
  if (IsKeyword("INSERT")) return ParseInsert();
  if (IsKeyword("UPDATE")) return ParseUpdate();
  if (IsKeyword("DELETE")) return ParseDelete();
  Unexpected();
}

// INSERT [INTO] T [(cols)] { SELECT … | VALUES (…)[, (…)] }
Statement Parser::ParseInsert() {
  Statement s;
  s.kind = StatementKind::Insert;
  ExpectKeyword("INSERT");
  AcceptKeyword("INTO");
  s.table = ParseTableName();
  if (AcceptOperator("(")) {
    do s.columns.push_back(ParseName());
    while (AcceptOperator(","));
    ExpectOperator(")");
  }
  if (IsKeyword("SELECT")) {
    s.select = ParseSelect();
  } else {
    ExpectKeyword("VALUES");
    do {
      ExpectOperator("(");
      std::vector<ExprPtr> row;
      do row.push_back(ParseExpr());
      while (AcceptOperator(","));
      ExpectOperator(")");
      s.values.push_back(std::move(row));
    } while (AcceptOperator(","));
  }
  return s;
}

// UPDATE T SET [q.]col = expr, … [FROM …] [WHERE …]
Statement Parser::ParseUpdate() {
  Statement s;
  s.kind = StatementKind::Update;
  ExpectKeyword("UPDATE");
  s.table = ParseTableName();
  ExpectKeyword("SET");
  do {
    Assignment a;
    a.column = ParseName();
    if (AcceptOperator(".")) a.column = ParseName();  // T-SQL allows SET T.col
    ExpectOperator("=");
    a.value = ParseExpr();
    s.sets.push_back(std::move(a));
  } while (AcceptOperator(","));
  if (AcceptKeyword("FROM")) s.from = ParseFrom();
  if (AcceptKeyword("WHERE")) s.where = ParseExpr();
  return s;
}

// DELETE [FROM] T [FROM …] [WHERE …]
Statement Parser::ParseDelete() {
  Statement s;
  s.kind = StatementKind::Delete;
  ExpectKeyword("DELETE");
  AcceptKeyword("FROM");
  s.table = ParseTableName();
  if (AcceptKeyword("FROM")) s.from = ParseFrom();
  if (AcceptKeyword("WHERE")) s.where = ParseExpr();
  return s;
}

// --- SELECT -----------------------------------------------------------------

std::unique_ptr<Select> Parser::ParseSelect() {
  auto select = std::make_unique<Select>();
  select->cores.push_back(ParseSelectCore());
  for (;;) {
    std::string op;
    if (AcceptKeyword("UNION")) op = AcceptKeyword("ALL") ? "UNION ALL" : "UNION";
    else if (AcceptKeyword("EXCEPT")) op = "EXCEPT";
    else if (AcceptKeyword("INTERSECT")) op = "INTERSECT";
    else break;
    select->setOps.push_back(op);
    select->cores.push_back(ParseSelectCore());
  }
  if (AcceptKeyword("ORDER")) {
    ExpectKeyword("BY");
    do {
      OrderItem item;
      item.expr = ParseExpr();
      if (AcceptKeyword("DESC")) item.descending = true;
      else AcceptKeyword("ASC");
      select->orderBy.push_back(std::move(item));
    } while (AcceptOperator(","));
  }
  return select;
}

SelectCore Parser::ParseSelectCore() {
  SelectCore core;
  ExpectKeyword("SELECT");
  if (AcceptKeyword("DISTINCT")) core.distinct = true;
  else AcceptKeyword("ALL");
  if (AcceptKeyword("TOP")) {
    bool parenthesised = AcceptOperator("(");
    if (Peek().kind == TokenKind::Param) ThrowUnsupported("TOP con parametro");
    if (Peek().kind != TokenKind::Number || Peek().text.find_first_not_of("0123456789") != std::string::npos)
      Unexpected();
    core.top = std::make_unique<Expr>();
    core.top->kind = ExprKind::Number;
    core.top->text = Advance().text;
    if (parenthesised) ExpectOperator(")");
    if (IsKeyword("PERCENT")) ThrowUnsupported("TOP PERCENT");
    if (IsKeyword("WITH")) ThrowUnsupported("TOP WITH TIES");
  }
  do core.items.push_back(ParseSelectItem());
  while (AcceptOperator(","));
  if (AcceptKeyword("INTO")) core.into = ParseTableName();
  if (AcceptKeyword("FROM")) core.from = ParseFrom();
  if (AcceptKeyword("WHERE")) core.where = ParseExpr();
  if (AcceptKeyword("GROUP")) {
    ExpectKeyword("BY");
    do core.groupBy.push_back(ParseExpr());
    while (AcceptOperator(","));
  }
  if (AcceptKeyword("HAVING")) core.having = ParseExpr();
  return core;
}

// `alias = expr` (T-SQL's own form), `expr [AS] alias`, `*`, `T.*`.
SelectItem Parser::ParseSelectItem() {
  SelectItem item;
  if (IsName() && IsOperator("=", 1)) {
    item.alias = ParseName();
    Advance();
    item.expr = ParseExpr();
    return item;
  }
  if ((Peek().kind == TokenKind::String) && IsOperator("=", 1)) {
    item.alias = Name{Advance().text, true};
    Advance();
    item.expr = ParseExpr();
    return item;
  }
  if (AcceptOperator("*")) {
    item.expr = std::make_unique<Expr>();
    item.expr->kind = ExprKind::Star;
    return item;
  }
  item.expr = ParseExpr();
  item.alias = ParseAlias();
  return item;
}

// [AS] name, [AS] 'name'; empty Name when there is no alias.
Name Parser::ParseAlias() {
  bool as = AcceptKeyword("AS");
  if (as && (Peek().kind == TokenKind::String)) return Name{Advance().text, true};
  if (as || IsName()) return ParseName();
  return Name{};
}

// --- FROM -------------------------------------------------------------------

FromClause Parser::ParseFrom() {
  FromClause from;
  from.first = ParseTableRef();
  for (;;) {
    Join join;
    if (AcceptOperator(",")) {
      join.kind = ",";
    } else if (AcceptKeyword("JOIN")) {
      join.kind = "INNER JOIN";
    } else if (AcceptKeyword("INNER")) {
      ExpectKeyword("JOIN");
      join.kind = "INNER JOIN";
    } else if (IsKeyword("LEFT") || IsKeyword("RIGHT") || IsKeyword("FULL")) {
      join.kind = text::Upper(Advance().text) + " JOIN";
      AcceptKeyword("OUTER");
      ExpectKeyword("JOIN");
    } else if (IsKeyword("CROSS") && IsKeyword("JOIN", 1)) {
      pos_ += 2;
      join.kind = "CROSS JOIN";
    } else if (IsKeyword("CROSS") || IsKeyword("OUTER")) {
      ThrowUnsupported(text::Upper(Peek().text) + " " + text::Upper(Peek(1).text));
    } else {
      return from;
    }
    join.ref = ParseTableRef();
    if (join.kind != "," && join.kind != "CROSS JOIN") {
      ExpectKeyword("ON");
      join.on = ParseExpr();
    }
    from.joins.push_back(std::move(join));
  }
}

TableRef Parser::ParseTableRef() {
  TableRef ref;
  if (AcceptOperator("(")) {
    if (!IsKeyword("SELECT")) Unexpected();
    ref.query = ParseSelect();
    ExpectOperator(")");
    ref.alias = ParseAlias();
    if (ref.alias.empty()) Unexpected();
    return ref;
  }
  if (IsKeyword("FREETEXTTABLE") && IsOperator("(", 1)) return ParseFreeText();
  // Other table-valued functions (CONTAINSTABLE, OPENQUERY…) have no rule.
  if (Peek().kind == TokenKind::Identifier && IsOperator("(", 1)) ThrowUnsupported(text::Upper(Peek().text));
  ref.table = ParseTableName();
  ref.alias = ParseAlias();
  return ref;
}

// FREETEXTTABLE(T, column, 'text') alias: the text must be a literal (the
// module pastes the searched value in, apostrophes replaced by blanks), and
// the optional fourth argument (top n by rank) has no rule.
TableRef Parser::ParseFreeText() {
  TableRef ref;
  Advance();
  Advance();
  FreeTextSource source;
  source.table = ParseTableName();
  ExpectOperator(",");
  source.column = ParseName();
  ExpectOperator(",");
  if (Peek().kind != TokenKind::String && Peek().kind != TokenKind::NationalString) Unexpected();
  source.text = Advance().text;
  if (IsOperator(",")) ThrowUnsupported("FREETEXTTABLE con top_n_by_rank");
  ExpectOperator(")");
  ref.freetext = std::move(source);
  ref.alias = ParseAlias();
  if (ref.alias.empty()) ThrowUnsupported("FREETEXTTABLE senza alias");
  return ref;
}

// T or dbo.T: the dbo schema is the only one the module names, and the
// backends have no such schema, so it is dropped.
Name Parser::ParseTableName() {
  Name name = ParseName();
  if (AcceptOperator(".")) {
    if (!text::EqualsNoCase(name.text, "dbo")) ThrowUnsupported("schema " + name.text);
    name = ParseName();
  }
  return name;
}

}  // namespace corvina20::data::tsql
