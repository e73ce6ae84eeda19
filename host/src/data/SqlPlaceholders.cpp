// The placeholders and bare names of an SQL text.
#include "data/SqlPlaceholders.h"

#include <cctype>

namespace corvina20::data {
namespace {

// Calls `each` with the offset of every character outside quotes; `each`
// returns how many characters to pass over after it (0 for none).
template <typename F>
void ForEachUnquoted(std::string_view sql, F&& each) {
  char quote = 0;
  for (std::size_t i = 0; i < sql.size(); ++i) {
    const char c = sql[i];
    if (quote) {
      if (c == quote) quote = 0;
    } else if (c == '\'' || c == '"') {
      quote = c;
    } else {
      i += each(i);
    }
  }
}

bool PartOfName(char c) { return std::isalnum(static_cast<unsigned char>(c)) || c == '_'; }

}  // namespace

std::vector<std::size_t> PlaceholderOffsets(std::string_view sql) {
  std::vector<std::size_t> offsets;
  ForEachUnquoted(sql, [&](std::size_t i) -> std::size_t {
    if (sql[i] == '?') offsets.push_back(i);
    return 0;
  });
  return offsets;
}

std::string ReplaceBareName(std::string_view sql, std::string_view name, std::string_view by) {
  std::string out;
  std::size_t copied = 0;
  ForEachUnquoted(sql, [&](std::size_t i) -> std::size_t {
    if (sql.compare(i, name.size(), name) != 0 || (i > 0 && PartOfName(sql[i - 1])) ||
        (i + name.size() < sql.size() && PartOfName(sql[i + name.size()])))
      return 0;
    out.append(sql.substr(copied, i - copied));
    out.append(by);
    copied = i + name.size();
    return name.size() - 1;
  });
  out.append(sql.substr(copied));
  return out;
}

}  // namespace corvina20::data
