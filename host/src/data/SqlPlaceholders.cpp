// The "?" placeholders of an SQL text.
#include "data/SqlPlaceholders.h"

namespace corvina20::data {

std::vector<std::size_t> PlaceholderOffsets(std::string_view sql) {
  std::vector<std::size_t> offsets;
  char quote = 0;
  for (std::size_t i = 0; i < sql.size(); ++i) {
    const char c = sql[i];
    if (quote) {
      if (c == quote) quote = 0;
    } else if (c == '\'' || c == '"') {
      quote = c;
    } else if (c == '?') {
      offsets.push_back(i);
    }
  }
  return offsets;
}

}  // namespace corvina20::data
