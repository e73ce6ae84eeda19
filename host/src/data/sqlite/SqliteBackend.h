// The SQLite backend: one database file, opened in WAL mode with foreign keys
// on and a busy timeout, so several sessions of the web host can share it.
#pragma once

#include <memory>
#include <string>

#include "data/Backend.h"

namespace corvina20::data {

// Opens (creating when missing) the SQLite database at `path`.
// Throws corvina20::Error kErrDatabase when the file cannot be opened.
std::unique_ptr<Backend> OpenSqliteBackend(const std::string& path);

}  // namespace corvina20::data
