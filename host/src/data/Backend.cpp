// What a Backend does unless it says otherwise; see Backend.h.
#include "data/Backend.h"

#include "corvina20/Error.h"

namespace corvina20::data {

void Backend::FollowNewestCopies() {}

std::vector<std::pair<std::int64_t, int>> Backend::FreeText(const std::string& table, const std::string& column,
                                                            const std::string&, int) {
  throw Error(kErrDatabase, "Corvina20.FullText",
              "FREETEXTTABLE su " + table + "." + column + " non valutabile dal backend " + Name());
}

}  // namespace corvina20::data
