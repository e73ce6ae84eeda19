// Opening a database for a session, and creating one: the host's entry to the
// data layer. The backend is chosen from the location (a file path is SQLite).
#pragma once

#include <string>

#include "corvina20/Connection.h"

namespace corvina20 {

// Opens the database at `location`: a PostgreSQL URI (postgresql://…, the
// password from PGPASSFILE or the service file, never in the URI) or else an
// SQLite file, created when missing.
// Throws corvina20::Error kErrDatabase when it cannot be opened.
ConnectionPtr OpenDatabase(const std::string& location);

// A connection to `location` whose backend is borrowed from the process's
// pool for it (data/BackendPool.h) and given back by
// Connection::ReleaseBackend: for a server's sessions, idle most of the time.
// Throws as OpenDatabase.
ConnectionPtr OpenPooledDatabase(const std::string& location);

// Brings the schema up to date (data/schema), fills the reference tables
// that are empty (data/schema/ReferenceData.h) and, when `demo` is true and the
// database holds no party yet, loads the demo data (data/demo). Returns the
// number of schema files applied.
int InitDatabase(Connection& connection, bool demo);

}  // namespace corvina20
