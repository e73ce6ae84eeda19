// Type inference over a parsed statement: gives each expression its SQL
// Server type as far as it can be told (CONVERT targets, literals, table
// columns through the caller's lookup with aliases resolved from FROM, JOIN
// and the UPDATE/DELETE target, function results), marks the "+" that join
// texts, and lists each query's output columns. The emitters read these
// annotations; nothing here depends on the backend.
#pragma once

#include <string>
#include <vector>

#include "data/tsql/TsqlAst.h"
#include "data/tsql/TsqlTranslator.h"

namespace corvina20::data::tsql {

// Annotates `statement` in place. `lookup` may be empty (no column is typed).
// Throws the translator's error for a "+" whose operands' types are both
// unknown (it cannot tell a sum from a concatenation) and for arithmetic on
// dates.
void TypeStatement(Statement& statement, const ColumnTypeLookup& lookup, const ColumnNotNullLookup& notNull = {});

// For a SELECT statement, the types of its output columns up to the first *
// or T.* (whose columns the translator cannot list); empty for other
// statements. REQUIRES: TypeStatement ran on `statement`.
std::vector<std::string> ResultColumnTypes(const Statement& statement);

// The names of the same output columns, as written ("" when unnamed).
std::vector<std::string> ResultColumnNames(const Statement& statement);

}  // namespace corvina20::data::tsql
