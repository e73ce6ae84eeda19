// The T-SQL functions the translator knows: one rule per function, with its
// argument count. A function not in this table is an unsupported construct;
// how each is spelled on a backend is the emitter's business.
#pragma once

#include <string_view>

namespace corvina20::data::tsql {

enum class Function {
  IsNull, Coalesce,
  Count, Sum, Min, Max, Avg,
  Abs, Round,
  Upper, Lower, Ltrim, Rtrim, Replace, Substring, Len, Char,
  Year, Month, Day, GetDate,
};

struct FunctionRule {
  std::string_view name;  // upper-case T-SQL name
  Function id;
  int minArgs;
  int maxArgs;
};

// The rule for a function name (case-insensitive); nullptr when there is none.
const FunctionRule* FindFunction(std::string_view name);

}  // namespace corvina20::data::tsql
