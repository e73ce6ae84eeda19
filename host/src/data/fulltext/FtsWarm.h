// What a server does for the shared copies of a database's full-text indexes
// (FtsShared.h): makes them before the first search needs them (in the
// background when it starts, so that no user's first duplicate search pays
// for it). A server's backends move to the newest as they come back to its
// pool after a request (Backend::FollowNewestCopies).
#pragma once

#include <string>
#include <vector>

namespace corvina20::data::fulltext {

// The columns whose indexes a server makes ahead: the names, which every
// duplicate search ranks, and the towns, which it ranks when it checks the
// city. A copy of every index of the catalogue would cost several hundred MB
// at a million parties (the codes and telephones are a word per row) for
// indexes few searches use; those are made on their first search.
inline const std::vector<std::string> kWarmColumns = {"RagioneSociale", "Citta"};

// Opens `database` (as OpenDatabase) and makes the shared copy of each index
// of the catalogue on one of `columns` (any case; empty: every index), in
// turn, on SQLite and PostgreSQL alike. Returns how many it made or found
// made. Never throws: a database that cannot be opened gives 0, and the
// searches make what they need themselves.
int WarmFullText(const std::string& database, const std::vector<std::string>& columns = kWarmColumns);

}  // namespace corvina20::data::fulltext
