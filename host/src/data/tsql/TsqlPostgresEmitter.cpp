// The PostgreSQL spelling of the constructs that differ between backends.
// Names are folded to lower case and quoted ("stdanagrafiche"), as the
// schema's DDL creates them (data/schema/DdlConverter.h): the module writes
// the same name in several cases, and a quoted exact case would tell them
// apart. Text compares by the host's collation; LIKE, which PostgreSQL 15
// refuses on such a collation, calls the host's corvina_like. Work tables
// made by SELECT … INTO are temporary tables of the connection.
#include <string>
#include <vector>

#include "core/Text.h"
#include "data/postgres/PgHostObjects.h"
#include "data/tsql/TsqlEmitter.h"
#include "data/tsql/TsqlError.h"
#include "data/tsql/TsqlTypes.h"

namespace corvina20::data::tsql {
namespace {

bool IsText(const Expr& e) {
  if (e.kind == ExprKind::Paren) return IsText(*e.args[0]);
  return e.kind == ExprKind::String || IsTextType(e.type);
}

// Known to be something other than text: a number, a date…
bool IsNotText(const Expr& e) {
  if (e.kind == ExprKind::Paren) return IsNotText(*e.args[0]);
  return e.kind == ExprKind::Number || (!e.type.empty() && !IsTextType(e.type));
}

class PostgresEmitter final : public Emitter {
 protected:
  void WriteName(const Name& name) override {
    Put("\"");
    for (char c : text::Lower(name.text)) {
      if (c == '"') Put("\"");
      out_ += c;
    }
    Put("\"");
  }

  void WriteCall(const Expr& call) override {
    const Expr* arg = call.args.empty() ? nullptr : call.args[0].get();
    switch (call.function->id) {
      case Function::IsNull:
        return Plain("coalesce", call);
      case Function::Substring:
        return Plain("substr", call);
      case Function::Avg:
        // T-SQL averages integers as an integer, truncated.
        if (FamilyOf(arg->type) == TypeFamily::Integer) {
          Put("CAST(trunc(");
          Plain("avg", call);
          Put(") AS integer)");
          return;
        }
        return Plain("avg", call);
      case Function::Round:
        // round(x, n) exists for numeric only.
        Put("round(CAST(");
        WriteExpr(*arg);
        Put(" AS numeric)");
        for (std::size_t i = 1; i < call.args.size(); ++i) {
          Put(", ");
          WriteExpr(*call.args[i]);
        }
        Put(")");
        return;
      case Function::Len:
        Put("length(rtrim(");
        WriteExpr(*arg);
        Put("))");
        return;
      case Function::Replace:
        // A substring search is refused on a nondeterministic collation;
        // replace is case-sensitive, as on SQLite.
        Put("replace(CAST(");
        WriteExpr(*arg);
        Put(" AS text) COLLATE \"default\", ");
        WriteExpr(*call.args[1]);
        Put(", ");
        WriteExpr(*call.args[2]);
        Put(")");
        return;
      case Function::Char:
        return Plain("chr", call);
      case Function::Year:
        return DatePart("YEAR", *arg);
      case Function::Month:
        return DatePart("MONTH", *arg);
      case Function::Day:
        return DatePart("DAY", *arg);
      case Function::GetDate:
        Put("LOCALTIMESTAMP(0)");
        return;
      default:
        // Same name and meaning: coalesce, aggregates, abs, upper, lower,
        // ltrim, rtrim.
        return Plain(text::Lower(call.function->name), call);
    }
  }

  // bit as the host's domain (0/1; any non-zero is 1), integers truncated as
  // T-SQL does (PostgreSQL rounds), character types cut to their length (30
  // when none is written), dates as timestamps.
  void WriteConvert(const Expr& e) override {
    const Expr& value = *e.args[0];
    const std::string target = text::Lower(e.target.base);
    switch (FamilyOf(e.target.base)) {
      case TypeFamily::Bit:
        if (value.kind == ExprKind::Number && (value.text == "0" || value.text == "1")) {
          Put("CAST(" + value.text + " AS " + pg::kBitDomain + ")");
        } else {
          Put("CAST(CAST((");
          Cast(value, "integer");
          Put(" <> 0) AS integer) AS ");
          Put(pg::kBitDomain);
          Put(")");
        }
        return;
      case TypeFamily::Integer: {
        const std::string type = target == "bigint" ? "bigint" : target == "int" || target == "integer" ? "integer" : "smallint";
        TypeFamily from = FamilyOf(value.type);
        if (from == TypeFamily::Float || from == TypeFamily::Exact) {
          Put("CAST(trunc(");
          WriteExpr(value);
          Put(") AS " + type + ")");
          return;
        }
        return Cast(value, type);
      }
      case TypeFamily::Float:
        return Cast(value, target == "real" ? "real" : "double precision");
      case TypeFamily::Exact:
        return Cast(value, "numeric");
      case TypeFamily::Text: {
        std::string length = e.target.size;
        bool unbounded = length == "max" || target == "text" || target == "ntext";
        if (unbounded) return Cast(value, "text");
        Put("substr(");
        Cast(value, "text");
        Put(", 1, " + (length.empty() ? std::string("30") : length) + ")");
        return;
      }
      case TypeFamily::Date:
        return Cast(value, "timestamp(0)");
      case TypeFamily::Unknown:
        break;
    }
    ThrowUnsupported("tipo " + e.target.Text());
  }

  // DELETE T FROM T JOIN W …: the rows of T that the join finds, by ctid.
  void WriteDeleteWithJoin(const Statement& s) override { WriteDeleteByRowId(s, "ctid"); }

  void WriteUpdateWithFrom(const Statement& s) override { WriteUpdateAsFrom(s); }

  // A work table's column in PostgreSQL's type, text with the host's
  // collation; the backend maps the type back to the SQL Server name.
  void WriteColumnDefinition(const OutputColumn& column) override {
    WriteName(Name{column.name, true});
    if (column.type.empty()) return;
    std::string type = pg::PostgresTypeOf(column.type);
    if (type.empty()) ThrowUnsupported("tipo " + column.type);
    Put(" " + type);
    if (IsTextType(column.type)) Put(TextCollationClause());
  }

  // The host evaluates the search before the statement (PgFullText.h) and
  // puts its KEY and RANK rows in place of the name written here.
  void WriteFreeText(const FreeTextSource& source, int minRank, bool) override {
    TranslatedSql::FreeTextCall call{source.table.text, source.column.text, source.text, minRank, ""};
    // Numbered across the statements of one text: all are evaluated first.
    call.workTable = "corvina_ft_" + std::to_string(++freeTextCount_);
    Put(call.workTable);
    freeTexts_.push_back(std::move(call));
  }

  std::string TextCollationClause() const override {
    return std::string(" COLLATE ") + pg::kTextCollation;
  }

  // Only where the comparison is of texts: a collation on a number (or on a
  // parameter compared with a number) is an error on PostgreSQL.
  std::string ComparisonCollation(const Expr& left, const Expr& right) const override {
    if (IsNotText(left) || IsNotText(right)) return "";
    return IsText(left) || IsText(right) ? TextCollationClause() : "";
  }

  std::string CreateWorkTable() const override { return "CREATE TEMPORARY TABLE "; }
  std::string DerivedTableAlias() const override { return " AS corvina_top"; }
  std::string NullsOrder(bool descending) const override { return descending ? " NULLS LAST" : " NULLS FIRST"; }

  void WriteLike(const Expr& e) override {
    if (e.negated) Put("NOT ");
    Put(pg::kLikeFunction);
    Put("(");
    WriteList(e.args);
    Put(")");
  }

 private:
  int freeTextCount_ = 0;

  void Plain(std::string_view name, const Expr& call) {
    Put(name);
    Put(call.distinct ? "(DISTINCT " : "(");
    WriteList(call.args);
    Put(")");
  }

  void Cast(const Expr& value, std::string_view type) {
    Put("CAST(");
    WriteExpr(value);
    Put(" AS ");
    Put(type);
    Put(")");
  }

  void DatePart(std::string_view field, const Expr& date) {
    Put("CAST(EXTRACT(");
    Put(field);
    Put(" FROM CAST(");
    WriteExpr(date);
    Put(" AS timestamp)) AS integer)");
  }
};

}  // namespace

std::unique_ptr<Emitter> MakePostgresEmitter() { return std::make_unique<PostgresEmitter>(); }

}  // namespace corvina20::data::tsql
