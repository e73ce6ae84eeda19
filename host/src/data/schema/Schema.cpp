// Creating and migrating a database from data/schema and loading data/demo.
// Each numbered schema file is converted to the backend's DDL, run in its own
// transaction together with the row that records it in CORSchemaVersioni, so
// a file is either applied and recorded or not applied at all. Not for module
// SQL: these scripts bypass the T-SQL translator on purpose.
#include "data/schema/Schema.h"

#include <algorithm>
#include <filesystem>
#include <fstream>
#include <map>
#include <regex>
#include <set>
#include <sstream>
#include <string>
#include <vector>

#include "core/Text.h"
#include "corvina20/Error.h"
#include "data/Backend.h"
#include "data/postgres/PgHostObjects.h"
#include "data/schema/DdlConverter.h"

namespace corvina20::data {
namespace {

constexpr const char* kSource = "Corvina20.Schema";

// The host's own bookkeeping table; not in the schema files, because it must
// exist before the first of them is looked at. Converted like them.
constexpr const char* kCreateVersions =
    "CREATE TABLE CORSchemaVersioni ("
    "NomeFile nvarchar(200) NOT NULL PRIMARY KEY, Applicato datetime NULL)";

// The files of `dir` whose name matches `pattern`, sorted by name.
std::vector<std::filesystem::path> ListFiles(const std::string& dir, const std::regex& pattern,
                                             const char* what) {
  std::error_code error;
  if (!std::filesystem::is_directory(dir, error)) {
    throw Error(kErrHost, kSource, std::string("Cartella ") + what + " non trovata: " + dir);
  }
  std::vector<std::filesystem::path> files;
  for (const auto& entry : std::filesystem::directory_iterator(dir)) {
    if (!entry.is_regular_file()) continue;
    if (std::regex_match(entry.path().filename().string(), pattern)) files.push_back(entry.path());
  }
  std::sort(files.begin(), files.end(), [](const auto& a, const auto& b) {
    return a.filename().string() < b.filename().string();
  });
  return files;
}

std::string ReadFile(const std::filesystem::path& path) {
  std::ifstream in(path, std::ios::binary);
  if (!in) throw Error(kErrHost, kSource, "Impossibile leggere il file " + path.string());
  std::ostringstream text;
  text << in.rdbuf();
  return text.str();
}

void RequireKnownBackend(Connection& connection) {
  if (connection.BackendName() != "sqlite" && connection.BackendName() != "postgres") {
    throw Error(kErrDatabase, kSource,
                "Schema: conversione non disponibile per il backend " + connection.BackendName());
  }
}

void RollbackQuietly(Connection& connection) {
  try {
    if (connection.InTransaction()) connection.RollbackTrans();
  } catch (...) {
    // The original failure is the one worth reporting; a failed rollback of
    // SQLite leaves the transaction closed anyway.
  }
}

// PostgreSQL: the schema's indexes made before they kept NULLs first
// (DdlConverter: as the queries sort them) are made again, so that an ORDER
// BY reads them in order instead of sorting the table.
void RenewIndexNullOrder(Connection& connection, const std::vector<std::filesystem::path>& files) {
  auto nameOf = [](std::string word) {
    std::erase(word, '"');
    return text::Lower(word);
  };
  std::map<std::string, std::string> creates;  // by index name, the last file's
  for (const auto& path : files)
    for (const std::string& statement : ConvertDdlStatements(ReadFile(path), SqlDialect::Postgres)) {
      std::istringstream words(statement);
      std::string verb, what, name;
      words >> verb >> what;
      if (what == "UNIQUE") words >> what;
      if (what != "INDEX") continue;
      words >> name;
      if (verb == "CREATE") creates[nameOf(name)] = statement;
      if (verb == "DROP") creates.erase(nameOf(name));
    }
  std::vector<std::string> renew;
  for (const auto& row : connection.Backend()
                             .Run("SELECT indexname, indexdef FROM pg_indexes WHERE schemaname = current_schema()", {})
                             .rows) {
    auto it = creates.find(row[0].ToString());
    if (it != creates.end() && row[1].ToString().find("NULLS") == std::string::npos) renew.push_back(it->first);
  }
  if (renew.empty()) return;
  connection.BeginTrans();
  try {
    for (const std::string& name : renew) {
      connection.ExecuteNative("DROP INDEX \"" + name + "\"");
      connection.ExecuteNative(creates[name]);
    }
    connection.CommitTrans();
  } catch (...) {
    const Error error = CurrentError();
    RollbackQuietly(connection);
    throw Error(error.Number(), kSource, "indici: " + error.Description());
  }
}

}  // namespace

int ApplySchema(Connection& connection, const std::string& schemaDir) {
  RequireKnownBackend(connection);
  const SqlDialect dialect = connection.Backend().Dialect();
  const auto files = ListFiles(schemaDir, std::regex(R"([0-9]{3}_.*\.sql)"), "dello schema");
  // PostgreSQL: the collation, the bit domain and the functions the
  // converted DDL and the translated SQL name.
  if (dialect == SqlDialect::Postgres) connection.ExecuteNative(pg::HostObjectsScript());
  if (!connection.TableExists("CORSchemaVersioni"))
    for (const std::string& statement : ConvertDdlStatements(kCreateVersions, dialect))
      connection.ExecuteNative(statement);
  std::set<std::string> applied;
  for (const auto& row :
       connection.Backend().Run("SELECT NomeFile FROM CORSchemaVersioni", {}).rows) {
    if (!row.empty() && !row.front().IsNull()) applied.insert(row.front().ToString());
  }

  int count = 0;
  for (const auto& path : files) {
    const std::string name = path.filename().string();
    if (applied.count(name) != 0) continue;
    // Converted before the transaction opens: a file outside the subset is
    // refused without touching the database.
    std::vector<std::string> statements;
    try {
      statements = ConvertDdlStatements(ReadFile(path), dialect);
    } catch (const Error& error) {
      throw Error(error.Number(), kSource, name + ": " + error.Description());
    }
    connection.BeginTrans();
    try {
      for (const std::string& statement : statements) connection.ExecuteNative(statement);
      connection.Backend().Run(dialect == SqlDialect::Postgres
                                   ? "INSERT INTO CORSchemaVersioni (NomeFile, Applicato) "
                                     "VALUES (?, LOCALTIMESTAMP(0))"
                                   : "INSERT INTO CORSchemaVersioni (NomeFile, Applicato) "
                                     "VALUES (?, strftime('%Y-%m-%d %H:%M:%S', 'now', 'localtime'))",
                               {Variant(name)});
      connection.CommitTrans();
    } catch (...) {
      const Error error = CurrentError();
      RollbackQuietly(connection);
      throw Error(error.Number(), kSource, name + ": " + error.Description());
    }
    ++count;
  }
  if (dialect == SqlDialect::Postgres) RenewIndexNullOrder(connection, files);
  return count;
}

std::vector<std::string> SchemaTables(const std::string& schemaDir) {
  std::vector<std::string> tables;
  for (const auto& path : ListFiles(schemaDir, std::regex(R"([0-9]{3}_.*\.sql)"), "dello schema")) {
    for (const std::string& statement : ConvertDdlStatementsForSqlite(ReadFile(path))) {
      std::istringstream words(statement);
      std::string verb, what, name;
      words >> verb >> what >> name;
      if (what != "TABLE") continue;
      if (verb == "CREATE") tables.push_back(name);
      if (verb == "DROP")
        std::erase_if(tables, [&](const std::string& t) { return text::EqualsNoCase(t, name); });
    }
  }
  return tables;
}

void LoadDemoData(Connection& connection, const std::string& demoDir) {
  RequireKnownBackend(connection);
  const bool postgres = connection.Backend().Dialect() == SqlDialect::Postgres;
  const auto files = ListFiles(demoDir, std::regex(R"(.*\.sql)"), "dei dati dimostrativi");
  connection.BeginTrans();
  std::string current;
  try {
    for (const auto& path : files) {
      current = path.filename().string();
      const std::vector<std::string> statements = SplitSqlStatements(ReadFile(path));
      for (std::size_t i = 0; i < statements.size(); ++i) {
        current = path.filename().string() + ", istruzione " + std::to_string(i + 1);
        // The demo files are written for SQL Server and SQLite ([names]):
        // on PostgreSQL they go through the translator like the module's SQL.
        if (postgres) connection.Execute(statements[i]);
        else connection.ExecuteNative(statements[i]);
      }
    }
    connection.CommitTrans();
  } catch (...) {
    const Error error = CurrentError();
    RollbackQuietly(connection);
    throw Error(error.Number(), kSource, current + ": " + error.Description());
  }
}

}  // namespace corvina20::data
