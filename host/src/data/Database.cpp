// Opening and initialising databases.
#include "data/Database.h"

#include "corvina20/MervoStatus.h"
#include "data/Backend.h"
#include "data/BackendPool.h"
#include "data/fulltext/FtsIndexes.h"
#include "data/postgres/PgBackend.h"
#include "data/postgres/PgFullText.h"
#include "data/listsearch/ListSearchIndex.h"
#include "data/schema/ReferenceData.h"
#include "data/schema/Schema.h"
#include "data/schema/TextCollation.h"
#include "data/sqlite/SqliteBackend.h"

namespace corvina20 {
namespace {

void LoadDemoDataWhenEmpty(Connection& connection) {
  auto rs = connection.OpenRecordset("SELECT COUNT(*) AS N FROM STDAnagrafiche");
  if (rs->Fields("N").Value().ToLong() == 0) data::LoadDemoData(connection, DataDirectory() + "/demo");
}

}  // namespace

ConnectionPtr OpenDatabase(const std::string& location) {
  if (data::IsPostgresLocation(location)) return std::make_shared<Connection>(data::OpenPgBackend(location));
  return std::make_shared<Connection>(data::OpenSqliteBackend(location));
}

ConnectionPtr OpenPooledDatabase(const std::string& location) {
  return std::make_shared<Connection>(data::BackendPool::ForLocation(location));
}

int InitDatabase(Connection& connection, bool demo) {
  int applied = data::ApplySchema(connection, DataDirectory() + "/schema");
  if (connection.Backend().Dialect() == data::SqlDialect::Postgres) {
    // Made with the collation from the start.
    data::pg::EnsureFullTextIndexes(connection);
    data::listsearch::EnsureListSearchIndexes(connection);
    data::FillReferenceTables(connection);
    if (demo) LoadDemoDataWhenEmpty(connection);
    return applied;
  }
  // A database made before text compared without regard to case.
  data::MigrateTextCollation(connection);
  data::fulltext::EnsureFullTextIndexes(connection);
  data::listsearch::EnsureListSearchIndexes(connection);
  data::FillReferenceTables(connection);
  if (demo) LoadDemoDataWhenEmpty(connection);
  return applied;
}

}  // namespace corvina20
