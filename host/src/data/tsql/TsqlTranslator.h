// Translation of the T-SQL subset the module speaks into a backend's dialect.
// A tokenizer plus one rewrite rule per construct the module uses; a construct
// without a rule is an error that names it, never a silent pass-through.
#pragma once

#include <functional>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "data/Backend.h"

namespace corvina20::data {

// Answers the declared SQL Server type of table.column (case-insensitive),
// nullopt when unknown. Used to type computed output columns.
using ColumnTypeLookup =
    std::function<std::optional<std::string>(std::string_view table, std::string_view column)>;
// Answers whether table.column is declared NOT NULL. Lets an ORDER BY on
// such a column leave out the NULLs' place, which a server could otherwise
// only honour by sorting every row instead of reading an index in order.
using ColumnNotNullLookup = std::function<bool(std::string_view table, std::string_view column)>;

struct TranslatedSql {
  // Native statements to run in order; the rows of the last one (if it
  // returns rows) are the result. "?" placeholders are kept in order, so the
  // caller binds the parameters across the statements in sequence.
  std::vector<std::string> statements;
  // For a query: the SQL Server type of each output column of the result as
  // far as the translator can tell ("bit" for CONVERT(BIT, 0), the column's
  // type for Max(col)…), "" where it cannot. The list stops before the first
  // * or T.* (whose columns it cannot list), so it may be shorter than the
  // result. Empty for other statements, SELECT … INTO included.
  std::vector<std::string> columnTypes;
  // For a query: the output columns' names as the text writes them (alias or
  // column name, "" for an unnamed computed column), over the same columns as
  // columnTypes. A backend that folds names (PostgreSQL) reports them in
  // lower case; the Connection gives the fields these names back.
  std::vector<std::string> columnNames;
  // For each "?" across the statements, in order: what it is compared with
  // (IdAnagrafica = ?): kWholeNumber for an int, kSmallWhole for a
  // smallint, tinyint or bit, kBigWhole for a bigint, kNumber for another
  // number, kAnything otherwise. A text that is no such number, or a whole
  // number beyond the type's range (an 11-digit VAT number against an int
  // key), compares false there on SQLite; PostgreSQL refuses it, so the
  // Connection binds NULL instead (the comparison is then false as well).
  enum ParamUse : char { kAnything = 0, kWholeNumber = 'i', kSmallWhole = 's', kBigWhole = 'b', kNumber = 'n' };
  std::vector<ParamUse> paramUses;
  // FREETEXTTABLE calls the host evaluates before the statements run
  // (PostgreSQL): the statements name each by `workTable`, a source of
  // ("key" integer, "rank" integer), and the host puts its rows in the name's
  // place before running them.
  struct FreeTextCall {
    std::string table, column, text;
    int minRank = 0;
    std::string workTable;
  };
  std::vector<FreeTextCall> freeTexts;
};

// Translates `tsql` (one or more statements) for `dialect`; docs/translator.md
// lists the rules. An empty text (blanks, comments, ";") gives no statement.
// Throws corvina20::Error kErrDatabase, source "Corvina20.Sql", description
// "Costrutto T-SQL non supportato: <construct>" for text outside the subset.
// `lookup` may be empty: then no table column is typed; `notNull` too: then
// every column may hold NULL.
TranslatedSql TranslateTsql(std::string_view tsql, SqlDialect dialect,
                            const ColumnTypeLookup& lookup, const ColumnNotNullLookup& notNull = {});

}  // namespace corvina20::data
