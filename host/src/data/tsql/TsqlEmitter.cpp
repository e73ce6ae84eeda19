// The dialect-neutral part of printing; see TsqlEmitter.h. Output is one
// line per statement, keywords upper-cased, names and literals as written.
#include "data/tsql/TsqlEmitter.h"

#include <cmath>
#include <optional>
#include <string>
#include <utility>

#include "core/Text.h"
#include "data/tsql/TsqlTypes.h"
#include "data/tsql/TsqlError.h"

namespace corvina20::data::tsql {
namespace {

int BinaryPrecedence(const Expr& e) {
  const std::string& op = e.text;
  if (op == "OR") return 1;
  if (op == "AND") return 2;
  if (op == "+" || op == "-") return e.concat ? 8 : 6;
  if (op == "*" || op == "/" || op == "%") return 7;
  return 4;  // comparisons
}

bool IsNullLiteral(const Expr& e) { return e.kind == ExprKind::Null; }

// The terms of a chain of ANDs, through parentheses.
void Conjuncts(const Expr* e, std::vector<const Expr*>& out) {
  if (e == nullptr) return;
  if (e->kind == ExprKind::Paren) return Conjuncts(e->args[0].get(), out);
  if (e->kind == ExprKind::Binary && e->text == "AND") {
    Conjuncts(e->args[0].get(), out);
    Conjuncts(e->args[1].get(), out);
    return;
  }
  out.push_back(e);
}

bool IsRankOf(const Expr& e, const Name& alias) {
  return e.kind == ExprKind::Column && text::EqualsNoCase(e.qualifier.text, alias.text) &&
         text::EqualsNoCase(e.name.text, "RANK");
}

std::optional<double> NumberOf(const Expr& e) {
  if (e.kind == ExprKind::Paren) return NumberOf(*e.args[0]);
  if (e.kind == ExprKind::Unary && e.text == "-") {
    std::optional<double> n = NumberOf(*e.args[0]);
    return n ? std::optional<double>(-*n) : std::nullopt;
  }
  if (e.kind != ExprKind::Number) return std::nullopt;
  try {
    return std::stod(e.text);
  } catch (...) {
    return std::nullopt;
  }
}

}  // namespace

int PrecedenceOf(const Expr& e) {
  switch (e.kind) {
    case ExprKind::Binary:
      return BinaryPrecedence(e);
    case ExprKind::Unary:
      return e.text == "NOT" ? 3 : 9;
    case ExprKind::IsNullTest:
    case ExprKind::In:
    case ExprKind::Between:
    case ExprKind::Like:
      return 4;
    default:
      return kPrimary;
  }
}

Emitter::~Emitter() = default;

std::string Emitter::Take() {
  std::string s = std::move(out_);
  out_.clear();
  return s;
}

std::vector<std::string> Emitter::Emit(const Statement& s) {
  out_.clear();
  paramUses_.clear();
  numberParams_.clear();
  freeTexts_.clear();
  switch (s.kind) {
    case StatementKind::Select:
      if (!s.select->cores[0].into.empty()) return EmitSelectInto(s);
      WriteSelect(*s.select);
      break;
    case StatementKind::Insert:
      WriteInsert(s);
      break;
    case StatementKind::Update:
      WriteUpdate(s);
      break;
    case StatementKind::Delete:
      WriteDelete(s);
      break;
  }
  return {Take()};
}

// SELECT … INTO W: the work table is created with the SQL Server types of the
// output columns (the host reads them back as field types), then filled.
// When a * hides the columns, CREATE TABLE … AS SELECT is the fallback and
// the backend chooses the column types.
std::vector<std::string> Emitter::EmitSelectInto(const Statement& s) {
  const Select& select = *s.select;
  const Name& table = select.cores[0].into;
  bool star = false;
  for (const OutputColumn& c : select.outputs) {
    if (c.star) star = true;
    else if (c.name.empty()) ThrowUnsupported("SELECT INTO con una colonna senza nome");
  }
  if (star) {
    Put(CreateWorkTable());
    WriteName(table);
    Put(" AS ");
    WriteSelect(select);
    return {Take()};
  }
  std::vector<std::string> out;
  Put(CreateWorkTable());
  WriteName(table);
  Put(" (");
  for (std::size_t i = 0; i < select.outputs.size(); ++i) {
    if (i) Put(", ");
    WriteColumnDefinition(select.outputs[i]);
  }
  Put(")");
  out.push_back(Take());
  Put("INSERT INTO ");
  WriteName(table);
  Put(" ");
  WriteSelect(select);
  out.push_back(Take());
  return out;
}

void Emitter::WriteInsert(const Statement& s) {
  Put("INSERT INTO ");
  WriteName(s.table);
  if (!s.columns.empty()) {
    Put(" (");
    for (std::size_t i = 0; i < s.columns.size(); ++i) {
      if (i) Put(", ");
      WriteName(s.columns[i]);
    }
    Put(")");
  }
  if (s.select) {
    Put(" ");
    WriteSelect(*s.select);
    return;
  }
  Put(" VALUES ");
  for (std::size_t i = 0; i < s.values.size(); ++i) {
    if (i) Put(", ");
    Put("(");
    WriteList(s.values[i]);
    Put(")");
  }
}

// " SET a = x, b = y" of an UPDATE.
void Emitter::WriteSets(const Statement& s) {
  Put(" SET ");
  for (std::size_t i = 0; i < s.sets.size(); ++i) {
    if (i) Put(", ");
    WriteName(s.sets[i].column);
    Put(" = ");
    WriteExpr(*s.sets[i].value);
  }
}

void Emitter::WriteUpdate(const Statement& s) {
  if (s.from) {
    WriteUpdateWithFrom(s);
    return;
  }
  Put("UPDATE ");
  WriteName(s.table);
  WriteSets(s);
  WriteWhere(s.where.get());
}

// `Delete T where …` and `Delete from T where …` are the same statement.
void Emitter::WriteDelete(const Statement& s) {
  if (s.from) {
    WriteDeleteWithJoin(s);
    return;
  }
  Put("DELETE FROM ");
  WriteName(s.table);
  WriteWhere(s.where.get());
}

void Emitter::WriteWhere(const Expr* where) {
  if (!where) return;
  Put(" WHERE ");
  WriteExpr(*where);
}

const TableRef& Emitter::FindTarget(const FromClause& from, const Name& target) {
  auto matches = [&](const TableRef& ref) {
    return !ref.query && (text::EqualsNoCase(ref.Qualifier().text, target.text) ||
                          text::EqualsNoCase(ref.table.text, target.text));
  };
  if (matches(from.first)) return from.first;
  for (const Join& j : from.joins)
    if (matches(j.ref)) return j.ref;
  ThrowUnsupported("tabella " + target.text + " assente dal FROM");
}

// --- SELECT -----------------------------------------------------------------

// TOP n becomes LIMIT n at the end of its own SELECT. In a UNION the member
// with TOP is wrapped as SELECT * FROM (… LIMIT n), since a LIMIT there
// would limit the whole compound.
void Emitter::WriteSelect(const Select& select) {
  bool compound = select.cores.size() > 1;
  for (std::size_t i = 0; i < select.cores.size(); ++i) {
    const SelectCore& core = select.cores[i];
    if (i) Put(" " + select.setOps[i - 1] + " ");
    if (compound && core.top) {
      Put("SELECT * FROM (");
      WriteCore(core);
      Put(" LIMIT " + core.top->text + ")" + DerivedTableAlias());
    } else {
      WriteCore(core);
    }
  }
  if (!select.orderBy.empty()) {
    Put(" ORDER BY ");
    for (std::size_t i = 0; i < select.orderBy.size(); ++i) {
      if (i) Put(", ");
      const Expr& term = *select.orderBy[i].expr;
      WriteExpr(term);
      // A column sorts by its own collation; a text expression is given the
      // columns' rule explicitly.
      if (term.kind != ExprKind::Column && term.kind != ExprKind::Number && IsTextType(term.type))
        Put(TextCollationClause());
      if (select.orderBy[i].descending) Put(" DESC");
      // A column that holds no NULL needs no place for them: said anyway, it
      // would keep a server from reading the column's index in order.
      if (!(term.kind == ExprKind::Column && term.notNull)) Put(NullsOrder(select.orderBy[i].descending));
    }
  }
  if (!compound && select.cores[0].top) Put(" LIMIT " + select.cores[0].top->text);
}

void Emitter::WriteCore(const SelectCore& core) {
  // A nested SELECT has its own conditions and its own sources.
  const Expr* outerWhere = where_;
  const Name* outerOn = onFreeText_;
  where_ = core.where.get();
  onFreeText_ = nullptr;
  WriteCoreBody(core);
  where_ = outerWhere;
  onFreeText_ = outerOn;
}

void Emitter::WriteCoreBody(const SelectCore& core) {
  Put(core.distinct ? "SELECT DISTINCT " : "SELECT ");
  for (std::size_t i = 0; i < core.items.size(); ++i) {
    if (i) Put(", ");
    WriteExpr(*core.items[i].expr);
    if (!core.items[i].alias.empty()) {
      Put(" AS ");
      WriteName(core.items[i].alias);
    }
  }
  if (core.from) {
    Put(" FROM ");
    WriteFrom(*core.from);
  }
  WriteWhere(core.where.get());
  if (!core.groupBy.empty()) {
    Put(" GROUP BY ");
    WriteList(core.groupBy);
  }
  if (core.having) {
    Put(" HAVING ");
    WriteExpr(*core.having);
  }
}

// In an ON clause a bare [KEY] or Rank names the nearest FREETEXTTABLE joined
// so far, as in SQL Server, where the sources joined later are not yet
// visible; SQLite sees them all, so the name is qualified.
void Emitter::WriteFrom(const FromClause& from) {
  const Name* freetext = from.first.freetext ? &from.first.alias : nullptr;
  bool outerDrives = freeTextDrives_;
  freeTextDrives_ = true;
  WriteTableRef(from.first);
  for (const Join& j : from.joins) {
    Put(j.kind == "," ? ", " : " " + j.kind + " ");
    joinOn_ = j.on.get();
    WriteTableRef(j.ref);
    joinOn_ = nullptr;
    if (j.ref.freetext) freetext = &j.ref.alias;
    if (j.on) {
      Put(" ON ");
      const Name* outer = onFreeText_;
      onFreeText_ = freetext;
      WriteExpr(*j.on);
      onFreeText_ = outer;
    }
  }
  freeTextDrives_ = outerDrives;
}

int Emitter::FreeTextMinRank(const Name& alias, const Expr* on) const {
  std::vector<const Expr*> terms;
  Conjuncts(where_, terms);
  Conjuncts(on, terms);
  double least = 0;
  for (const Expr* t : terms) {
    std::optional<double> bound;
    if (t->kind == ExprKind::Binary) {
      const Expr& l = *t->args[0];
      const Expr& r = *t->args[1];
      const std::string& op = t->text;
      if (IsRankOf(l, alias) && NumberOf(r)) {
        if (op == ">") bound = std::floor(*NumberOf(r)) + 1;
        if (op == ">=") bound = std::ceil(*NumberOf(r));
      } else if (IsRankOf(r, alias) && NumberOf(l)) {
        if (op == "<") bound = std::floor(*NumberOf(l)) + 1;
        if (op == "<=") bound = std::ceil(*NumberOf(l));
      }
    } else if (t->kind == ExprKind::Between && !t->negated && IsRankOf(*t->args[0], alias) &&
               NumberOf(*t->args[1])) {
      bound = std::ceil(*NumberOf(*t->args[1]));
    }
    if (bound && *bound > least) least = *bound;
  }
  return static_cast<int>(std::min(least, 1001.0));
}

void Emitter::WriteString(std::string_view text) {
  Put("'");
  for (char c : text) {
    if (c == '\'') Put("'");
    out_ += c;
  }
  Put("'");
}

void Emitter::WriteTableRef(const TableRef& ref) {
  if (ref.freetext) {
    WriteFreeText(*ref.freetext, FreeTextMinRank(ref.alias, joinOn_), freeTextDrives_);
    freeTextDrives_ = false;
  } else if (ref.query) {
    Put("(");
    WriteSelect(*ref.query);
    Put(")");
  } else {
    WriteName(ref.table);
  }
  if (!ref.alias.empty()) {
    Put(" AS ");
    WriteName(ref.alias);
  }
}

// --- expressions ------------------------------------------------------------

// [name] and "name" become "name"; bare names are written as they are.
void Emitter::WriteName(const Name& name) {
  if (!name.quoted) {
    Put(name.text);
    return;
  }
  Put("\"");
  for (char c : name.text) {
    if (c == '"') Put("\"");
    out_ += c;
  }
  Put("\"");
}

void Emitter::WriteList(const std::vector<ExprPtr>& list) {
  for (std::size_t i = 0; i < list.size(); ++i) {
    if (i) Put(", ");
    WriteExpr(*list[i]);
  }
}

void Emitter::WriteOperand(const Expr& e, int precedence) {
  bool parens = PrecedenceOf(e) < precedence;
  if (parens) Put("(");
  WriteExpr(e);
  if (parens) Put(")");
}

void Emitter::WriteExpr(const Expr& e) {
  switch (e.kind) {
    case ExprKind::Number:
      Put(e.text);
      return;
    case ExprKind::String:
      WriteString(e.text);
      return;
    case ExprKind::Null:
      Put("NULL");
      return;
    case ExprKind::Param:
      Put("?");
      if (auto use = numberParams_.find(&e); use != numberParams_.end()) paramUses_.push_back(use->second);
      else paramUses_.push_back(TranslatedSql::kAnything);
      return;
    case ExprKind::Column:
    case ExprKind::Star:
      if (!e.qualifier.empty()) {
        WriteName(e.qualifier);
        Put(".");
      } else if (e.kind == ExprKind::Column && onFreeText_ &&
                 (text::EqualsNoCase(e.name.text, "KEY") || text::EqualsNoCase(e.name.text, "RANK"))) {
        WriteName(*onFreeText_);
        Put(".");
      }
      if (e.kind == ExprKind::Star) Put("*");
      else WriteName(e.name);
      return;
    case ExprKind::Call:
      WriteCall(e);
      return;
    case ExprKind::Convert:
      WriteConvert(e);
      return;
    case ExprKind::Unary:
      if (e.text == "NOT") {
        Put("NOT ");
        WriteOperand(*e.args[0], 3);
      } else {
        // "- -1" must not become "--1", a comment.
        Put(e.text);
        WriteOperand(*e.args[0], e.args[0]->kind == ExprKind::Unary ? kPrimary + 1 : 9);
      }
      return;
    case ExprKind::Binary:
      WriteBinary(e);
      return;
    case ExprKind::IsNullTest:
      WriteOperand(*e.args[0], 5);
      Put(e.negated ? " IS NOT NULL" : " IS NULL");
      return;
    case ExprKind::In:
      WriteOperand(*e.args[0], 5);
      Put(e.negated ? " NOT IN (" : " IN (");
      if (e.query) {
        WriteSelect(*e.query);
      } else {
        for (std::size_t i = 1; i < e.args.size(); ++i) {
          if (i > 1) Put(", ");
          WriteExpr(*e.args[i]);
        }
      }
      Put(")");
      return;
    case ExprKind::Between:
      WriteOperand(*e.args[0], 5);
      Put(e.negated ? " NOT BETWEEN " : " BETWEEN ");
      WriteOperand(*e.args[1], 5);
      Put(" AND ");
      WriteOperand(*e.args[2], 5);
      return;
    case ExprKind::Like:
      WriteLike(e);
      return;
    case ExprKind::Exists:
      Put("EXISTS (");
      WriteSelect(*e.query);
      Put(")");
      return;
    case ExprKind::Case:
      Put("CASE");
      if (e.caseOperand) {
        Put(" ");
        WriteExpr(*e.caseOperand);
      }
      for (std::size_t i = 0; i + 1 < e.args.size(); i += 2) {
        Put(" WHEN ");
        WriteExpr(*e.args[i]);
        Put(" THEN ");
        WriteExpr(*e.args[i + 1]);
      }
      if (e.caseElse) {
        Put(" ELSE ");
        WriteExpr(*e.caseElse);
      }
      Put(" END");
      return;
    case ExprKind::Subquery:
      Put("(");
      WriteSelect(*e.query);
      Put(")");
      return;
    case ExprKind::Paren:
      Put("(");
      WriteExpr(*e.args[0]);
      Put(")");
      return;
  }
}

namespace {

TranslatedSql::ParamUse UseFor(const std::string& type) {
  switch (FamilyOf(type)) {
    case TypeFamily::Bit:
      return TranslatedSql::kSmallWhole;
    case TypeFamily::Integer: {
      const std::string name = NormalizeType(type);
      if (name.rfind("bigint", 0) == 0) return TranslatedSql::kBigWhole;
      if (name.rfind("smallint", 0) == 0 || name.rfind("tinyint", 0) == 0) return TranslatedSql::kSmallWhole;
      return TranslatedSql::kWholeNumber;
    }
    case TypeFamily::Exact:
    case TypeFamily::Float:
      return TranslatedSql::kNumber;
    default:
      return TranslatedSql::kAnything;
  }
}

bool IsComparison(const Expr& e) {
  return e.text == "=" || e.text == "<>" || e.text == "<" || e.text == ">" || e.text == "<=" || e.text == ">=";
}

// A column, or one in parentheses: SQLite compares it by its own collation.
bool CarriesColumn(const Expr& e) {
  if (e.kind == ExprKind::Paren) return CarriesColumn(*e.args[0]);
  return e.kind == ExprKind::Column;
}

// An operand that may hold text: a text expression, a string, a parameter.
bool MayBeText(const Expr& e) {
  if (e.kind == ExprKind::Paren) return MayBeText(*e.args[0]);
  return e.kind == ExprKind::String || e.kind == ExprKind::Param || IsTextType(e.type);
}

}  // namespace

// `x = NULL` and `x <> NULL` are written as IS [NOT] NULL: the module's texts
// ("Vettore = NULL or Vettore = 0") count on the comparison being true for a
// NULL column, as it is on the connections they were written for.
void Emitter::WriteBinary(const Expr& e) {
  const Expr& left = *e.args[0];
  const Expr& right = *e.args[1];
  if ((e.text == "=" || e.text == "<>") && (IsNullLiteral(left) || IsNullLiteral(right))) {
    WriteOperand(IsNullLiteral(left) ? right : left, 5);
    Put(e.text == "=" ? " IS NULL" : " IS NOT NULL");
    return;
  }
  // A parameter compared with a number column: a text that is no number
  // must compare false there (see TranslatedSql::paramUses).
  if (IsComparison(e)) {
    if (right.kind == ExprKind::Param && UseFor(left.type) != TranslatedSql::kAnything)
      numberParams_[&right] = UseFor(left.type);
    if (left.kind == ExprKind::Param && UseFor(right.type) != TranslatedSql::kAnything)
      numberParams_[&left] = UseFor(right.type);
  }
  int p = BinaryPrecedence(e);
  bool associative = e.text == "AND" || e.text == "OR";
  WriteOperand(left, p);
  Put(" ");
  Put(e.concat ? "||" : e.text);
  Put(" ");
  // A comparison with a column takes the column's collation; one between
  // two other operands ('a' = ?, upper(x) = 'B') is given the same rule
  // explicitly, so that no text comparison is case-sensitive.
  const std::string collation = IsComparison(e) && !CarriesColumn(left) && !CarriesColumn(right)
                                    ? ComparisonCollation(left, right)
                                    : std::string();
  if (collation.empty()) {
    WriteOperand(right, associative ? p : p + 1);
    return;
  }
  Put("(");
  WriteExpr(right);
  Put(")");
  Put(collation);
}

std::string Emitter::ComparisonCollation(const Expr& left, const Expr& right) const {
  return MayBeText(left) || MayBeText(right) ? TextCollationClause() : std::string();
}

void Emitter::WriteLike(const Expr& e) {
  WriteOperand(*e.args[0], 5);
  Put(e.negated ? " NOT LIKE " : " LIKE ");
  WriteOperand(*e.args[1], 5);
  if (e.args.size() > 2) {
    Put(" ESCAPE ");
    WriteOperand(*e.args[2], 5);
  }
}

void Emitter::WriteDeleteByRowId(const Statement& s, std::string_view rowId) {
  const TableRef& target = FindTarget(*s.from, s.table);
  Put("DELETE FROM ");
  WriteName(target.table);
  Put(" WHERE " + std::string(rowId) + " IN (SELECT ");
  WriteName(target.Qualifier());
  Put("." + std::string(rowId) + " FROM ");
  WriteFrom(*s.from);
  WriteWhere(s.where.get());
  Put(")");
}

// The parameters keep their order: the SET values, then the ON conditions,
// then the WHERE, as in the T-SQL text.
void Emitter::WriteUpdateAsFrom(const Statement& s) {
  const FromClause& from = *s.from;
  const TableRef& target = FindTarget(from, s.table);
  std::vector<const TableRef*> others;
  std::vector<const Expr*> conditions;
  if (&from.first != &target) others.push_back(&from.first);
  for (const Join& j : from.joins) {
    if (j.kind != "INNER JOIN" && j.kind != ",") ThrowUnsupported("UPDATE con " + j.kind);
    if (&j.ref != &target) others.push_back(&j.ref);
    if (j.on) conditions.push_back(j.on.get());
  }
  for (const TableRef* ref : others)
    if (ref->query) ThrowUnsupported("UPDATE con una tabella derivata nel FROM");
  if (s.where) conditions.push_back(s.where.get());

  Put("UPDATE ");
  WriteTableRef(target);
  WriteSets(s);
  for (std::size_t i = 0; i < others.size(); ++i) {
    Put(i ? ", " : " FROM ");
    WriteTableRef(*others[i]);
  }
  for (std::size_t i = 0; i < conditions.size(); ++i) {
    Put(i ? " AND " : " WHERE ");
    WriteOperand(*conditions[i], 3);
  }
}

}  // namespace corvina20::data::tsql
