// The SQLite spelling of the constructs that differ between backends:
// functions, CONVERT/CAST, DELETE/UPDATE with joins, work-table columns.
#include <string>
#include <vector>

#include "core/Text.h"
#include "data/sqlite/SqliteText.h"
#include "data/tsql/TsqlEmitter.h"
#include "data/tsql/TsqlError.h"
#include "data/tsql/TsqlTypes.h"

namespace corvina20::data::tsql {
namespace {

class SqliteEmitter final : public Emitter {
 protected:
  void WriteCall(const Expr& call) override {
    const Expr* arg = call.args.empty() ? nullptr : call.args[0].get();
    switch (call.function->id) {
      case Function::IsNull:
        return Plain("ifnull", call);
      case Function::Substring:
        return Plain("substr", call);
      case Function::Avg:
        // T-SQL averages integers as an integer, truncated.
        if (FamilyOf(arg->type) == TypeFamily::Integer) {
          Put("CAST(");
          Plain("avg", call);
          Put(" AS INTEGER)");
          return;
        }
        return Plain("avg", call);
      case Function::Len:
        // LEN does not count trailing blanks; SQLite's length does.
        Put("length(rtrim(");
        WriteExpr(*arg);
        Put("))");
        return;
      case Function::Year:
        return DatePart("%Y", *arg);
      case Function::Month:
        return DatePart("%m", *arg);
      case Function::Day:
        return DatePart("%d", *arg);
      case Function::GetDate:
        Put("datetime('now', 'localtime')");
        return;
      default:
        // Same name and meaning in SQLite: isnull's kin, aggregates, abs,
        // round, upper, lower, ltrim, rtrim, replace, char, coalesce.
        return Plain(text::Lower(call.function->name), call);
    }
  }

  // CONVERT(type, x) / CAST(x AS type) by the type's family: integers and
  // bit to INTEGER (bit as 0/1, like SQL Server's "any non-zero is 1"),
  // float/real to REAL, exact numerics to NUMERIC, character types to TEXT
  // cut to their length (30 when none is written, as in SQL Server), dates
  // kept as they are: SQLite holds them as text already.
  void WriteConvert(const Expr& e) override {
    const Expr& value = *e.args[0];
    switch (FamilyOf(e.target.base)) {
      case TypeFamily::Bit:
        if (value.kind == ExprKind::Number && (value.text == "0" || value.text == "1")) {
          Cast(value, "INTEGER");
        } else {
          Put("(");
          Cast(value, "INTEGER");
          Put(" <> 0)");
        }
        return;
      case TypeFamily::Integer:
        return Cast(value, "INTEGER");
      case TypeFamily::Float:
        return Cast(value, "REAL");
      case TypeFamily::Exact:
        return Cast(value, "NUMERIC");
      case TypeFamily::Text: {
        std::string length = e.target.size;
        bool unbounded = length == "max" || e.target.base == "text" || e.target.base == "ntext";
        if (unbounded) return Cast(value, "TEXT");
        Put("substr(");
        Cast(value, "TEXT");
        Put(", 1, " + (length.empty() ? std::string("30") : length) + ")");
        return;
      }
      case TypeFamily::Date:
        WriteOperand(value, kPrimary);
        return;
      case TypeFamily::Unknown:
        break;
    }
    ThrowUnsupported("tipo " + e.target.Text());
  }

  // DELETE T FROM T JOIN W ON … WHERE … deletes the rows of T that the join
  // finds, by rowid.
  void WriteDeleteWithJoin(const Statement& s) override { WriteDeleteByRowId(s, "rowid"); }

  // SQLite's UPDATE … FROM must not list the target again: see
  // WriteUpdateAsFrom.
  void WriteUpdateWithFrom(const Statement& s) override { WriteUpdateAsFrom(s); }

  // SQLite takes the declared type as written, except a size that is not a
  // number ("max"): such a type is quoted, and SQLite keeps it unquoted. The
  // name is quoted because an alias may have been a [bracketed] keyword.
  void WriteColumnDefinition(const OutputColumn& column) override {
    WriteName(Name{column.name, true});
    if (column.type.empty()) return;
    Put(" ");
    if (column.type.find("max") != std::string::npos) Put("\"" + column.type + "\"");
    else Put(column.type);
    // Work tables compare text as the schema's tables do.
    if (IsTextType(column.type)) Put(TextCollationClause());
  }

  std::string TextCollationClause() const override { return std::string(" COLLATE ") + kTextCollation; }

  // FREETEXTTABLE(T, C, 'text'), see docs/fulltext.md: the search table
  // corvina_ft_search with the least rank the statement keeps (read from its
  // WHERE and the join's ON) and whether it drives the query. The first one
  // of a FROM drives: it finds its rows through its index. The others (the
  // city match t2) rank the rows already found, by key: SQLite cannot tell
  // which of two searches is the more selective, and walking the index of a
  // town's name would rank every party of a big town.
  void WriteFreeText(const FreeTextSource& source, int minRank, bool drives) override {
    Put("corvina_ft_search(");
    WriteString(source.table.text);
    Put(", ");
    WriteString(source.column.text);
    Put(", ");
    WriteString(source.text);
    Put(", " + std::to_string(minRank) + (drives ? ", 1)" : ", 0)"));
  }

 private:
  void Plain(std::string_view name, const Expr& call) {
    Put(name);
    Put(call.distinct ? "(DISTINCT " : "(");
    WriteList(call.args);
    Put(")");
  }

  void Cast(const Expr& value, std::string_view affinity) {
    Put("CAST(");
    WriteExpr(value);
    Put(" AS ");
    Put(affinity);
    Put(")");
  }

  void DatePart(std::string_view format, const Expr& date) {
    Put("CAST(strftime('");
    Put(format);
    Put("', ");
    WriteExpr(date);
    Put(") AS INTEGER)");
  }
};

}  // namespace

std::unique_ptr<Emitter> MakeSqliteEmitter() { return std::make_unique<SqliteEmitter>(); }

}  // namespace corvina20::data::tsql
