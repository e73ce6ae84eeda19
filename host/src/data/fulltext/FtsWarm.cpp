// The shared copies of the full-text indexes made ahead and followed; see
// FtsWarm.h.
#include "data/fulltext/FtsWarm.h"

#include <algorithm>

#include "core/Text.h"
#include "corvina20/Connection.h"
#include "corvina20/FullText.h"
#include "data/Backend.h"
#include "data/Database.h"

namespace corvina20::data::fulltext {

int WarmFullText(const std::string& database, const std::vector<std::string>& columns) {
  int made = 0;
  try {
    ConnectionPtr connection = OpenDatabase(database);
    const bool sqlite = connection->BackendName() == "sqlite";
    for (const FullTextColumn& index : FullTextCatalogue()) {
      if (!columns.empty() && std::none_of(columns.begin(), columns.end(), [&](const std::string& c) {
            return text::Upper(c) == text::Upper(index.column);
          }))
        continue;
      // Asking a mirror anything syncs it, and a connection's first sync
      // makes (or waits for) the shared copy. PostgreSQL: a search of no
      // word, which ranks nothing.
      if (sqlite)
        connection->Backend().Run("SELECT corvina_ft_frequency(?1, ?2, '')",
                                  {Variant(index.table), Variant(index.column)});
      else
        connection->Backend().FreeText(index.table, index.column, "", 1001);
      ++made;
    }
  } catch (const std::exception&) {
    // The searches make the copies they need when they need them.
  }
  return made;
}

}  // namespace corvina20::data::fulltext
