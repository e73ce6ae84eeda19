// The table of known T-SQL functions; see TsqlFunctions.h.
#include "data/tsql/TsqlFunctions.h"

#include "core/Text.h"

namespace corvina20::data::tsql {
namespace {

// Min and Max take one argument: in T-SQL they are aggregates only, while a
// two-argument max() would be SQLite's scalar function.
constexpr FunctionRule kFunctions[] = {
    {"ISNULL", Function::IsNull, 2, 2},
    {"COALESCE", Function::Coalesce, 2, 100},
    {"COUNT", Function::Count, 1, 1},
    {"SUM", Function::Sum, 1, 1},
    {"MIN", Function::Min, 1, 1},
    {"MAX", Function::Max, 1, 1},
    {"AVG", Function::Avg, 1, 1},
    {"ABS", Function::Abs, 1, 1},
    {"ROUND", Function::Round, 2, 2},
    {"UPPER", Function::Upper, 1, 1},
    {"LOWER", Function::Lower, 1, 1},
    {"LTRIM", Function::Ltrim, 1, 1},
    {"RTRIM", Function::Rtrim, 1, 1},
    {"REPLACE", Function::Replace, 3, 3},
    {"SUBSTRING", Function::Substring, 3, 3},
    {"LEN", Function::Len, 1, 1},
    {"CHAR", Function::Char, 1, 1},
    {"YEAR", Function::Year, 1, 1},
    {"MONTH", Function::Month, 1, 1},
    {"DAY", Function::Day, 1, 1},
    {"GETDATE", Function::GetDate, 0, 0},
};

}  // namespace

const FunctionRule* FindFunction(std::string_view name) {
  for (const FunctionRule& rule : kFunctions)
    if (text::EqualsNoCase(rule.name, name)) return &rule;
  return nullptr;
}

}  // namespace corvina20::data::tsql
