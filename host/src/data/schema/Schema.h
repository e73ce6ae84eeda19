// Creating and migrating a database from the numbered schema files under
// data/schema (SQL Server DDL, converted for the backend), and loading the
// demo data under data/demo.
#pragma once

#include <string>
#include <vector>

#include "corvina20/Connection.h"

namespace corvina20::data {

// Applies, in file-name order, every data/schema/NNN_*.sql file not yet
// recorded in the table CORSchemaVersioni, each in its own transaction, and
// records it. Returns how many files were applied (0 when up to date).
// Throws corvina20::Error on a failing file; the files before it stay applied.
int ApplySchema(Connection& connection, const std::string& schemaDir);

// The tables the schema files of `schemaDir` leave, in the order they create
// them (a table dropped by a later file is left out), names as written.
// Throws as ApplySchema when a file cannot be read or converted.
std::vector<std::string> SchemaTables(const std::string& schemaDir);

// Loads data/demo/*.sql in order (plain INSERTs) in one transaction.
void LoadDemoData(Connection& connection, const std::string& demoDir);

}  // namespace corvina20::data
