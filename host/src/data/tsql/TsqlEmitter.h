// Prints a typed statement tree in a backend's dialect. The base class walks
// what every target shares (SELECT with TOP turned into LIMIT, joins, the
// select-list aliases, `x = NULL` as `x IS NULL`, "+" on texts as "||",
// INSERT, plain UPDATE/DELETE, SELECT … INTO as CREATE TABLE + INSERT); a
// dialect's subclass supplies the pieces that differ: functions, conversions,
// the join forms of UPDATE/DELETE and declared column types.
// Not for: deciding types (TsqlTyping.h) or reading T-SQL (TsqlParser.h).
#pragma once

#include <memory>
#include <map>
#include <string>
#include <string_view>
#include <vector>

#include "data/tsql/TsqlAst.h"
#include "data/tsql/TsqlTranslator.h"

namespace corvina20::data::tsql {

class Emitter {
 public:
  virtual ~Emitter();

  // The backend statements for `statement`, in the order they must run.
  // REQUIRES: TypeStatement ran on `statement`.
  std::vector<std::string> Emit(const Statement& statement);
  // For each "?" of the last Emit, in order: what kind of number it is
  // compared with (=, <>, <, >…), TranslatedSql::paramUses.
  const std::vector<TranslatedSql::ParamUse>& ParamUses() const { return paramUses_; }
  // The FREETEXTTABLE calls the last Emit left to the host, in order.
  const std::vector<TranslatedSql::FreeTextCall>& FreeTextCalls() const { return freeTexts_; }

 protected:
  // Shared walk; everything appends to out_.
  void Put(std::string_view text) { out_ += text; }
  // [name] and "name" as "name", bare names as written (SQLite); a dialect
  // that folds names overrides it.
  virtual void WriteName(const Name& name);
  void WriteExpr(const Expr& e);
  // Writes `e`, parenthesised when it binds more loosely than `precedence`.
  void WriteOperand(const Expr& e, int precedence);
  void WriteList(const std::vector<ExprPtr>& list);
  void WriteSelect(const Select& select);
  void WriteCore(const SelectCore& core);
  void WriteCoreBody(const SelectCore& core);
  void WriteFrom(const FromClause& from);
  void WriteTableRef(const TableRef& ref);
  void WriteWhere(const Expr* where);
  // The FROM entry whose table or alias is `target`; throws when none.
  static const TableRef& FindTarget(const FromClause& from, const Name& target);

  // Dialect hooks.
  virtual void WriteCall(const Expr& call) = 0;
  virtual void WriteConvert(const Expr& convert) = 0;
  // DELETE T FROM T JOIN …, UPDATE T SET … FROM T JOIN …
  virtual void WriteDeleteWithJoin(const Statement& s) = 0;
  virtual void WriteUpdateWithFrom(const Statement& s) = 0;
  // A work table's column: name and declared SQL Server type ("" when unknown).
  virtual void WriteColumnDefinition(const OutputColumn& column) = 0;
  // FREETEXTTABLE as a source of KEY and RANK, without its alias. `minRank`
  // is the least rank the statement keeps (0 when it keeps any): the
  // backend need not produce rows below it. `drives` is true for the first
  // FREETEXTTABLE of its FROM, which should find the rows through its index;
  // the others are joined to rows already found.
  virtual void WriteFreeText(const FreeTextSource& source, int minRank, bool drives) = 0;
  // 'text' as a string literal.
  void WriteString(std::string_view text);
  // The clause that makes a comparison of two texts that are not columns
  // (literals, parameters, expressions) follow the text columns' rule,
  // e.g. " COLLATE x"; "" when the backend's default already does.
  virtual std::string TextCollationClause() const { return ""; }
  // The clause for a comparison of `left` and `right`, neither a column:
  // TextCollationClause() when either may be text.
  virtual std::string ComparisonCollation(const Expr& left, const Expr& right) const;
  // The start of the statement that creates a SELECT … INTO work table.
  virtual std::string CreateWorkTable() const { return "CREATE TABLE "; }
  // The alias a derived table needs where the text has none ("" when the
  // dialect needs none), e.g. a UNION member with TOP.
  virtual std::string DerivedTableAlias() const { return ""; }
  // Where NULLs sort in an ORDER BY term: first ascending, last descending,
  // as on SQL Server and SQLite; "" when the backend does so already.
  virtual std::string NullsOrder(bool /*descending*/) const { return ""; }
  // [NOT] LIKE, with its ESCAPE when written.
  virtual void WriteLike(const Expr& like);
  // UPDATE T SET … FROM T JOIN W ON c WHERE w as UPDATE T AS A SET … FROM W
  // WHERE c AND (w): the target leaves the FROM list, the ON conditions join
  // the WHERE in their order. Inner joins only. SQLite and PostgreSQL share it.
  void WriteUpdateAsFrom(const Statement& s);
  // DELETE T FROM T JOIN W … as DELETE FROM T WHERE <rowId> IN (SELECT
  // T.<rowId> FROM T JOIN W …): the rows of T that the join finds, by the
  // dialect's row identifier (SQLite's rowid, PostgreSQL's ctid). The
  // parameters keep their order. SQLite and PostgreSQL share it.
  void WriteDeleteByRowId(const Statement& s, std::string_view rowId);

  std::string out_;
  std::vector<TranslatedSql::FreeTextCall> freeTexts_;

 private:
  std::vector<std::string> EmitSelectInto(const Statement& s);
  void WriteInsert(const Statement& s);
  void WriteUpdate(const Statement& s);
  void WriteSets(const Statement& s);
  void WriteDelete(const Statement& s);
  void WriteBinary(const Expr& e);
  std::string Take();
  // The least rank of `alias` that the conditions of the SELECT being
  // written (its WHERE and the join's ON) keep: the largest lower bound set
  // on alias.Rank by a top-level AND term, 0 when none.
  int FreeTextMinRank(const Name& alias, const Expr* on) const;

  std::vector<TranslatedSql::ParamUse> paramUses_;
  std::map<const Expr*, TranslatedSql::ParamUse> numberParams_;
  const Expr* where_ = nullptr;      // WHERE of the SELECT being written
  const Expr* joinOn_ = nullptr;     // ON of the join whose source is being written
  const Name* onFreeText_ = nullptr; // while writing an ON: the FREETEXTTABLE that KEY/RANK name
  bool freeTextDrives_ = true;       // no FREETEXTTABLE yet in the FROM being written
};

// The SQLite emitter.
std::unique_ptr<Emitter> MakeSqliteEmitter();
// The PostgreSQL emitter.
std::unique_ptr<Emitter> MakePostgresEmitter();

// Binding strength of an expression as the emitters print it (higher binds
// tighter); exposed for the dialects' hooks.
int PrecedenceOf(const Expr& e);
inline constexpr int kPrimary = 10;

}  // namespace corvina20::data::tsql
