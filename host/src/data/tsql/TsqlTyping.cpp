// Type inference; see TsqlTyping.h. Scopes follow SQL: a subquery sees its
// own FROM first, then the enclosing queries' (correlated names such as
// COR.codProfilazione). An unqualified column takes the type from the first
// source of the innermost scope whose table has that column.
#include "data/tsql/TsqlTyping.h"

#include <utility>

#include "core/Text.h"
#include "data/fulltext/FtsSqlite.h"
#include "data/tsql/TsqlError.h"
#include "data/tsql/TsqlTypes.h"

namespace corvina20::data::tsql {
namespace {

struct Source {
  std::string qualifier;  // alias, or the table name when there is none
  std::string table;      // "" for a derived table
  const std::vector<OutputColumn>* derived = nullptr;
};
using Scope = std::vector<Source>;

// What FREETEXTTABLE yields.
const std::vector<OutputColumn>& FreeTextOutputs() {
  static const std::vector<OutputColumn> outputs{{"KEY", "int", false}, {"RANK", "int", false}};
  return outputs;
}

class Typer {
 public:
  Typer(const ColumnTypeLookup& lookup, const ColumnNotNullLookup& notNull) : lookup_(lookup), notNull_(notNull) {}

  void TypeStatement(Statement& s) {
    switch (s.kind) {
      case StatementKind::Select:
        TypeSelect(*s.select);
        return;
      case StatementKind::Insert:
        if (s.select) TypeSelect(*s.select);
        for (auto& row : s.values)
          for (auto& e : row) TypeExpr(*e);
        return;
      case StatementKind::Update:
      case StatementKind::Delete: {
        Scope scope = s.from ? SourcesOf(*s.from) : Scope{Source{s.table.text, s.table.text}};
        scopes_.push_back(std::move(scope));
        if (s.from) TypeJoins(*s.from);
        for (auto& a : s.sets) TypeExpr(*a.value);
        if (s.where) TypeExpr(*s.where);
        scopes_.pop_back();
        return;
      }
    }
  }

 private:
  void TypeSelect(Select& select) {
    for (std::size_t i = 0; i < select.cores.size(); ++i) {
      SelectCore& core = select.cores[i];
      scopes_.push_back(core.from ? SourcesOf(*core.from) : Scope{});
      if (core.from) TypeJoins(*core.from);
      for (auto& item : core.items) TypeExpr(*item.expr);
      if (core.where) TypeExpr(*core.where);
      for (auto& g : core.groupBy) TypeExpr(*g);
      if (core.having) TypeExpr(*core.having);
      if (i == 0) select.outputs = OutputsOf(core);
      // ORDER BY of a single SELECT may name its tables' columns as well as
      // its output aliases; after UNION only the output names.
      if (i + 1 == select.cores.size()) {
        if (select.cores.size() > 1) {
          scopes_.back().clear();
          // Another SELECT of the union may give NULL in the same column.
          for (auto& o : select.outputs) o.notNull = false;
        }
        orderOutputs_ = &select.outputs;
        for (auto& o : select.orderBy) TypeExpr(*o.expr);
        orderOutputs_ = nullptr;
      }
      scopes_.pop_back();
    }
  }

  static std::vector<OutputColumn> OutputsOf(const SelectCore& core) {
    std::vector<OutputColumn> out;
    for (const auto& item : core.items) {
      OutputColumn col;
      col.star = item.expr->kind == ExprKind::Star;
      col.type = item.expr->type;
      col.notNull = item.expr->kind == ExprKind::Column && item.expr->notNull;
      if (!item.alias.empty()) col.name = item.alias.text;
      else if (item.expr->kind == ExprKind::Column) col.name = item.expr->name.text;
      out.push_back(std::move(col));
    }
    return out;
  }

  Scope SourcesOf(FromClause& from) {
    Scope scope;
    auto add = [&](TableRef& ref) {
      if (ref.freetext) {
        CheckFreeTextIndex(*ref.freetext);
        scope.push_back(Source{ref.alias.text, "", &FreeTextOutputs()});
      } else if (ref.query) {
        TypeSelect(*ref.query);
        scope.push_back(Source{ref.alias.text, "", &ref.query->outputs});
      } else {
        scope.push_back(Source{ref.Qualifier().text, ref.table.text});
      }
    };
    add(from.first);
    for (auto& j : from.joins) add(j.ref);
    return scope;
  }

  // When the caller can see the database, a search on a column without a
  // full-text index is refused here, by name, rather than by the backend.
  void CheckFreeTextIndex(const FreeTextSource& f) const {
    if (!lookup_) return;
    if (!lookup_(fulltext::IndexTableName(f.table.text, f.column.text), f.column.text))
      ThrowUnsupported("FREETEXTTABLE su " + f.table.text + "." + f.column.text + " senza indice full-text");
  }

  void TypeJoins(FromClause& from) {
    for (auto& j : from.joins)
      if (j.on) TypeExpr(*j.on);
  }

  std::string Lookup(const Source& source, const std::string& column) const {
    if (source.derived) {
      for (const auto& c : *source.derived)
        if (text::EqualsNoCase(c.name, column)) return c.type;
      return "";
    }
    if (!lookup_) return "";
    std::optional<std::string> type = lookup_(source.table, column);
    return type ? NormalizeType(*type) : "";
  }

  std::string ColumnType(const Expr& e) const {
    const std::string& column = e.name.text;
    if (e.qualifier.empty() && orderOutputs_) {
      for (const auto& c : *orderOutputs_)
        if (text::EqualsNoCase(c.name, column)) return c.type;
    }
    for (auto scope = scopes_.rbegin(); scope != scopes_.rend(); ++scope) {
      for (const Source& source : *scope) {
        if (e.qualifier.empty()) {
          std::string type = Lookup(source, column);
          if (!type.empty()) return type;
        } else if (text::EqualsNoCase(source.qualifier, e.qualifier.text) ||
                   text::EqualsNoCase(source.table, e.qualifier.text)) {
          return Lookup(source, column);
        }
      }
    }
    return "";
  }

  void TypeExpr(Expr& e) {
    for (auto& a : e.args) TypeExpr(*a);
    if (e.caseOperand) TypeExpr(*e.caseOperand);
    if (e.caseElse) TypeExpr(*e.caseElse);
    if (e.query) TypeSelect(*e.query);
    e.type = TypeOf(e);
    if (e.kind == ExprKind::Column) e.notNull = ColumnNotNull(e);
  }

  // Whether a column can never be NULL where it is read: declared NOT NULL
  // in the one table of its SELECT (with a join, an outer one could bring
  // NULLs in), or an output column that is such a column.
  bool ColumnNotNull(const Expr& e) const {
    if (!notNull_ || scopes_.empty()) return false;
    if (e.qualifier.empty() && orderOutputs_)
      for (const auto& c : *orderOutputs_)
        if (text::EqualsNoCase(c.name, e.name.text)) return c.notNull;
    const Scope& scope = scopes_.back();
    if (scope.size() != 1 || scope[0].derived || scope[0].table.empty()) return false;
    const Source& s = scope[0];
    if (!e.qualifier.empty() && !text::EqualsNoCase(s.qualifier, e.qualifier.text) &&
        !text::EqualsNoCase(s.table, e.qualifier.text))
      return false;
    return notNull_(s.table, e.name.text);
  }

  std::string TypeOf(Expr& e) const {
    switch (e.kind) {
      case ExprKind::Number:
        if (e.text.find_first_of("eE") != std::string::npos) return "float";
        if (e.text.find('.') != std::string::npos || e.text.size() > 10 ||
            (e.text.size() == 10 && e.text > "2147483647"))
          return "numeric";
        return "int";
      case ExprKind::String:
        return e.national ? "nvarchar" : "varchar";
      case ExprKind::Column:
        return ColumnType(e);
      case ExprKind::Call:
        return CallType(e);
      case ExprKind::Convert:
        return e.target.Text();
      case ExprKind::Unary:
        return e.text == "NOT" ? "" : e.args[0]->type;
      case ExprKind::Binary:
        return BinaryType(e);
      case ExprKind::Case:
        return CaseType(e);
      case ExprKind::Subquery:
        return e.query->outputs.empty() ? "" : e.query->outputs[0].type;
      case ExprKind::Paren:
        return e.args[0]->type;
      default:
        return "";
    }
  }

  // The type of the results (THEN and ELSE) as SQL Server decides it: the
  // numeric type of highest precedence, or the first result's type when they
  // are not numbers; unknown when any result is (a NULL result aside).
  static std::string CaseType(const Expr& e) {
    std::vector<const Expr*> results;
    for (std::size_t i = 1; i < e.args.size(); i += 2) results.push_back(e.args[i].get());
    if (e.caseElse) results.push_back(e.caseElse.get());
    std::string type;
    for (const Expr* r : results) {
      if (r->kind == ExprKind::Null) continue;
      if (r->type.empty()) return "";
      if (type.empty()) type = r->type;
      else if (std::string wider = ArithmeticType(type, r->type); !wider.empty()) type = wider;
    }
    return type;
  }

  static std::string CallType(const Expr& e) {
    const std::string first = e.args.empty() ? "" : e.args[0]->type;
    switch (e.function->id) {
      case Function::IsNull:
      case Function::Coalesce:
        for (const auto& a : e.args)
          if (!a->type.empty()) return a->type;
        return "";
      case Function::Count:
      case Function::Len:
      case Function::Year:
      case Function::Month:
      case Function::Day:
        return "int";
      case Function::Sum:
      case Function::Avg:
        return SumType(first);
      case Function::Min:
      case Function::Max:
      case Function::Abs:
      case Function::Round:
        return first;
      case Function::Upper:
      case Function::Lower:
      case Function::Ltrim:
      case Function::Rtrim:
      case Function::Replace:
      case Function::Substring:
        return IsTextType(first) ? first : "varchar";
      case Function::Char:
        return "char(1)";
      case Function::GetDate:
        return "datetime";
    }
    return "";
  }

  // "+" joins texts when either side is text (a literal, Char(), a CONVERT to
  // a character type, a char/varchar/text column…), as in SQL Server where
  // the character operand decides; otherwise it adds numbers.
  static std::string BinaryType(Expr& e) {
    const std::string& op = e.text;
    if (op != "+" && op != "-" && op != "*" && op != "/" && op != "%") return "";
    const std::string& l = e.args[0]->type;
    const std::string& r = e.args[1]->type;
    if (op == "+" && (IsTextType(l) || IsTextType(r))) {
      e.concat = true;
      auto isNational = [](const std::string& t) { return IsTextType(t) && t[0] == 'n'; };
      bool national = isNational(l) || isNational(r);
      return national ? "nvarchar" : "varchar";
    }
    if (FamilyOf(l) == TypeFamily::Date || FamilyOf(r) == TypeFamily::Date)
      ThrowUnsupported("operatore '" + op + "' su una data");
    if (op == "+" && l.empty() && r.empty()) ThrowUnsupported("'+' tra operandi di tipo sconosciuto");
    if (l.empty()) return r;
    if (r.empty()) return l;
    return ArithmeticType(l, r);
  }

  const ColumnTypeLookup& lookup_;
  const ColumnNotNullLookup& notNull_;
  std::vector<Scope> scopes_;
  const std::vector<OutputColumn>* orderOutputs_ = nullptr;
};

}  // namespace

void TypeStatement(Statement& statement, const ColumnTypeLookup& lookup, const ColumnNotNullLookup& notNull) {
  Typer(lookup, notNull).TypeStatement(statement);
}

std::vector<std::string> ResultColumnTypes(const Statement& statement) {
  std::vector<std::string> out;
  if (statement.kind != StatementKind::Select || !statement.select->cores[0].into.empty()) return out;
  for (const OutputColumn& c : statement.select->outputs) {
    if (c.star) break;
    out.push_back(c.type);
  }
  return out;
}

std::vector<std::string> ResultColumnNames(const Statement& statement) {
  std::vector<std::string> out;
  if (statement.kind != StatementKind::Select || !statement.select->cores[0].into.empty()) return out;
  for (const OutputColumn& c : statement.select->outputs) {
    if (c.star) break;
    out.push_back(c.name);
  }
  return out;
}

}  // namespace corvina20::data::tsql
