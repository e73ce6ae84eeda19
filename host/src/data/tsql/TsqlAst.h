// The tree the parser builds from the T-SQL subset: statements, SELECTs,
// FROM clauses and expressions, holding the text as written (names keep their
// case, function names are resolved to their rule). It is dialect-neutral: the
// typing pass annotates it (TsqlTyping.h) and an emitter prints it in a
// backend's dialect (TsqlEmitter.h).
#pragma once

#include <memory>
#include <optional>
#include <string>
#include <vector>

#include "data/tsql/TsqlFunctions.h"

namespace corvina20::data::tsql {

// A name as written; `quoted` when it came [bracketed] or "quoted".
struct Name {
  std::string text;
  bool quoted = false;
  bool empty() const { return text.empty(); }
};

// A SQL Server type as written in CONVERT/CAST: base lower-cased ("varchar",
// "int" for "integer"), size as written ("40", "max", "10,2") or "".
struct TypeSpec {
  std::string base;
  std::string size;
  // "varchar(40)", "bit": the declared type a work table column gets.
  std::string Text() const { return size.empty() ? base : base + "(" + size + ")"; }
};

enum class ExprKind {
  Number,      // text: as written
  String,      // text: the value (quotes and '' escapes resolved); national for N'…'
  Null,
  Param,       // ?
  Column,      // qualifier.name
  Star,        // * or qualifier.*
  Call,        // function(args); function = its rule; distinct for count(DISTINCT x)
  Convert,     // CONVERT(target, args[0]) and CAST(args[0] AS target)
  Unary,       // text: "-", "+", "NOT"; args[0]
  Binary,      // text: "=", "<>", "<", ">", "<=", ">=", "+", "-", "*", "/", "%", "AND", "OR"
  IsNullTest,  // args[0] IS [NOT] NULL
  In,          // args[0] [NOT] IN (args[1..]) or (query)
  Between,     // args[0] [NOT] BETWEEN args[1] AND args[2]
  Like,        // args[0] [NOT] LIKE args[1] [ESCAPE args[2]]
  Exists,      // [NOT] EXISTS (query)
  Case,        // CASE [caseOperand] WHEN args[2i] THEN args[2i+1] … [ELSE caseElse] END
  Subquery,    // (query) as a value
  Paren,       // (args[0])
};

struct Select;
struct Expr;
using ExprPtr = std::unique_ptr<Expr>;

struct Expr {
  ExprKind kind = ExprKind::Null;
  std::string text;
  bool national = false;
  Name name;       // Column
  Name qualifier;  // Column, Star: table or alias, empty when none
  bool negated = false;
  bool distinct = false;
  const FunctionRule* function = nullptr;
  TypeSpec target;
  std::vector<ExprPtr> args;
  std::unique_ptr<Select> query;
  ExprPtr caseOperand;
  ExprPtr caseElse;

  // Set by the typing pass.
  std::string type;     // SQL Server type of the value, "" when unknown
  bool concat = false;  // Binary "+" joining texts
  // A column declared NOT NULL of the one table its SELECT reads (never
  // NULL there: no outer join can bring one). Only when the caller told.
  bool notNull = false;
};

struct SelectItem {
  ExprPtr expr;
  Name alias;  // empty when none
};

// FREETEXTTABLE(table, column, 'text'): the rows of `table` whose `column`
// is alike `text`, as columns KEY (the row's IdAnagrafica) and RANK (0..1000).
struct FreeTextSource {
  Name table;
  Name column;
  std::string text;
};

// A table (optionally dbo.-qualified in the source; the schema is dropped), a
// derived table (query set) or a full-text search, with its alias.
struct TableRef {
  Name table;
  Name alias;
  std::unique_ptr<Select> query;
  std::optional<FreeTextSource> freetext;  // then the alias is required
  // The name the columns of this source are qualified with.
  const Name& Qualifier() const { return alias.empty() ? table : alias; }
};

struct Join {
  std::string kind;  // "INNER JOIN", "LEFT JOIN", "RIGHT JOIN", "FULL JOIN", "CROSS JOIN", ","
  TableRef ref;
  ExprPtr on;  // null for CROSS JOIN and ","
};

struct FromClause {
  TableRef first;
  std::vector<Join> joins;
};

struct OrderItem {
  ExprPtr expr;
  bool descending = false;
};

struct SelectCore {
  bool distinct = false;
  ExprPtr top;  // TOP n, null when none
  std::vector<SelectItem> items;
  Name into;  // SELECT … INTO work table, empty when none
  std::optional<FromClause> from;
  ExprPtr where;
  std::vector<ExprPtr> groupBy;
  ExprPtr having;
};

// One output column of a query, as the typing pass sees it.
struct OutputColumn {
  std::string name;  // alias or column name, "" for an unnamed computed column
  std::string type;  // SQL Server type, "" when unknown
  bool star = false; // * or T.*: stands for columns the translator cannot list
  bool notNull = false;  // a column never NULL in the result (Expr::notNull)
};

// cores[0] setOps[0] cores[1] …; orderBy belongs to the whole query.
struct Select {
  std::vector<SelectCore> cores;
  std::vector<std::string> setOps;  // "UNION", "UNION ALL", "EXCEPT", "INTERSECT"
  std::vector<OrderItem> orderBy;
  std::vector<OutputColumn> outputs;  // set by the typing pass, from cores[0]
};

struct Assignment {
  Name column;  // a qualifier written in the source is dropped
  ExprPtr value;
};

enum class StatementKind { Select, Insert, Update, Delete };

struct Statement {
  StatementKind kind = StatementKind::Select;
  std::unique_ptr<Select> select;  // Select; the query of INSERT … SELECT
  Name table;                      // target of Insert/Update/Delete (table or alias)
  std::vector<Name> columns;       // Insert column list, may be empty
  std::vector<std::vector<ExprPtr>> values;  // Insert VALUES rows
  std::vector<Assignment> sets;               // Update
  std::optional<FromClause> from;             // Update/Delete … FROM
  ExprPtr where;                              // Update/Delete
};

}  // namespace corvina20::data::tsql
