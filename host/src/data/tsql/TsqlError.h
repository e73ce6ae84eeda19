// The one error the translator raises: a T-SQL construct it has no rule for
// (or text it cannot read), named in the description so that whoever meets it
// knows which rule to add. Never used for failures of the database itself.
#pragma once

#include <string_view>

namespace corvina20::data::tsql {

// Throws corvina20::Error(kErrDatabase, "Corvina20.Sql",
// "Costrutto T-SQL non supportato: <construct>").
[[noreturn]] void ThrowUnsupported(std::string_view construct);

}  // namespace corvina20::data::tsql
