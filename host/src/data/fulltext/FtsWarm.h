// Making the shared copies of a database's full-text indexes (FtsShared.h)
// before the first search needs them: a server calls it in the background
// when it starts, so that no user's first duplicate search pays for it.
#pragma once

#include <string>

namespace corvina20::data::fulltext {

// Opens `database` (as OpenDatabase) and makes the shared copy of each index
// of the catalogue, in turn. Returns how many it made or found made. Never
// throws: a database that cannot be opened, or a backend without the copies
// (PostgreSQL), gives 0 and the searches make what they need themselves.
int WarmFullText(const std::string& database);

}  // namespace corvina20::data::fulltext
