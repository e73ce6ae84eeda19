// `corvina copy`'s engine: the demo database moved from SQLite to PostgreSQL
// and back keeps every row, key and value; the copy's identities go on
// numbering after the copied keys; a target that holds rows is refused.
#include <gtest/gtest.h>

#include "corvina20/Error.h"
#include "corvina20/Recordset.h"
#include "data/Database.h"
#include "data/DatabaseCopy.h"
#include "support/TestSupport.h"

namespace corvina20::test {
namespace {

std::string Party(Connection& db, int id) {
  auto rs = db.OpenRecordset(
      "SELECT RagioneSociale, PartitaIva, DataInserimento, Cliente, Fornitore FROM STDAnagrafiche WHERE IdAnagrafica = ?",
      {Variant(id)});
  if (rs->IsEOF()) return "<none>";
  std::string out;
  for (std::size_t i = 0; i < 5; ++i) out += rs->Fields(i).Value().ToString() + "|";
  return out;
}

TEST(DatabaseCopy, SqliteToPostgresAndBackKeepsEveryRow) {
  TempDir dir;
  ConnectionPtr sqlite = OpenDatabase(dir.File("demo.db"));
  InitDatabase(*sqlite, true);
  TestDatabase postgres;  // the schema only: no rows yet
  for (const TableCopy& t : CopyDatabase(*sqlite, *postgres.connection, {}))
    EXPECT_EQ(t.sourceRows, t.targetRows) << t.table;
  EXPECT_EQ(QueryLong(postgres.connection, "SELECT COUNT(*) FROM STDAnagrafiche"),
            QueryLong(sqlite, "SELECT COUNT(*) FROM STDAnagrafiche"));
  EXPECT_EQ(Party(*postgres.connection, 1), Party(*sqlite, 1));
  EXPECT_EQ(Party(*postgres.connection, 14), Party(*sqlite, 14));

  // An IDENTITY table's next key follows the keys copied.
  long top = QueryLong(postgres.connection, "SELECT Max(IdIndirizzo) FROM STDAnagIndirizzi");
  ASSERT_GT(top, 0);
  postgres.connection->Execute("INSERT INTO STDAnagIndirizzi (IdAnagrafica, Citta) VALUES (1, 'Nuova')");
  EXPECT_EQ(QueryLong(postgres.connection, "SELECT Max(IdIndirizzo) FROM STDAnagIndirizzi"), top + 1);

  ConnectionPtr back = OpenDatabase(dir.File("back.db"));
  for (const TableCopy& t : CopyDatabase(*postgres.connection, *back, {}))
    EXPECT_EQ(t.sourceRows, t.targetRows) << t.table;
  EXPECT_EQ(Party(*back, 14), Party(*sqlite, 14));
  EXPECT_EQ(QueryLong(back, "SELECT COUNT(*) FROM STDAnagIndirizzi"),
            QueryLong(sqlite, "SELECT COUNT(*) FROM STDAnagIndirizzi") + 1);

  // Copying again would merge: refused.
  EXPECT_THROW(CopyDatabase(*sqlite, *back, {}), Error);
}

}  // namespace
}  // namespace corvina20::test
