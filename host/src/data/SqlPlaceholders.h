// Where the "?" parameters of an SQL text stand: outside string literals
// ('…') and quoted identifiers ("…"), as both backends and the translator
// write them. One scan for whoever counts them (binding parameters across
// statements) or renumbers them (PostgreSQL's $1, $2…).
#pragma once

#include <cstddef>
#include <string_view>
#include <vector>

namespace corvina20::data {

// The offsets of the placeholders of `sql`, in order.
std::vector<std::size_t> PlaceholderOffsets(std::string_view sql);

}  // namespace corvina20::data
