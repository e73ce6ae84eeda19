// Small text helpers shared by the host's sources: trimming and ASCII case
// folding, the comparisons SQL names and keys need. Not for user-visible
// formatting (Variant does that under the regional settings).
#pragma once

#include <string>
#include <string_view>

namespace corvina20::text {

std::string_view Trim(std::string_view s);
// Upper/lower-cases ASCII letters; other bytes (UTF-8 included) stay as they are.
std::string Upper(std::string_view s);
std::string Lower(std::string_view s);
bool EqualsNoCase(std::string_view a, std::string_view b);
bool StartsWithNoCase(std::string_view s, std::string_view prefix);

}  // namespace corvina20::text
