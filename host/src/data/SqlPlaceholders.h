// Reading an SQL text as both backends and the translator write it: the "?"
// parameters and the bare names stand outside string literals ('…') and
// quoted identifiers ("…"). One scan for whoever counts the parameters
// (binding them across statements), renumbers them (PostgreSQL's $1, $2…)
// or puts something in a name's place (a full-text search's rows).
#pragma once

#include <cstddef>
#include <string>
#include <string_view>
#include <vector>

namespace corvina20::data {

// The offsets of the placeholders of `sql`, in order.
std::vector<std::size_t> PlaceholderOffsets(std::string_view sql);

// `sql` with each bare occurrence of the name `name` (not quoted, not part
// of a longer name) replaced by `by`.
std::string ReplaceBareName(std::string_view sql, std::string_view name, std::string_view by);

}  // namespace corvina20::data
