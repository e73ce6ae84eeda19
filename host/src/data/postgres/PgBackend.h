// The PostgreSQL backend: one libpq connection per session. Tables and
// columns live under folded lower-case names; the SQL Server type of each
// schema column is kept in its comment, so values and field types read as on
// SQLite. See docs/backends.md.
#pragma once

#include <memory>
#include <string>

#include "data/Backend.h"

namespace corvina20::data {

// True for a location that names a PostgreSQL database: a libpq URI
// (postgresql://…, postgres://…).
bool IsPostgresLocation(const std::string& location);

// Connects to the PostgreSQL database `uri` (libpq URI; the password comes
// from the password file or the service file, never from the URI).
// Throws corvina20::Error kErrDatabase when the URI carries a password or the
// server cannot be reached.
std::unique_ptr<Backend> OpenPgBackend(const std::string& uri);

}  // namespace corvina20::data
