// Copying a whole database to another, of the same backend or not (an SQLite
// file to PostgreSQL, the way a site moves to the server): `corvina copy`.
#pragma once

#include <functional>
#include <string>
#include <vector>

#include "corvina20/Connection.h"

namespace corvina20 {

struct TableCopy {
  std::string table;
  long sourceRows = 0;
  long targetRows = 0;  // counted after the copy
};

// Brings `target` to the schema (data/schema) and copies into it every table
// of the schema files (not the host's indexes, which the target makes from
// the rows) that `source` holds, rows and keys as they are (IDENTITY keys
// included; the target's numbering continues after them), in the order the
// schema creates the tables, so that a row's references land before it. Each
// table is copied in one transaction. The target's tables must be empty (a
// copy never merges), except the reference tables init fills, whose rows the
// source's replace; then the target's own indexes are made and its tables
// analysed. `progress` (may be empty) hears each table when done.
// Returns one entry per table with both counts; the caller compares them.
// Throws corvina20::Error kErrDatabase when a target table holds rows or a
// statement fails.
std::vector<TableCopy> CopyDatabase(Connection& source, Connection& target,
                                    const std::function<void(const TableCopy&)>& progress);

}  // namespace corvina20
