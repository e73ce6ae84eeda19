// The `corvina` program as a person uses it: creating a database, listing the
// module's items, reading and writing host parameters, copying a database.
#include <gtest/gtest.h>

#include <filesystem>

#include "data/Database.h"
#include "support/TestSupport.h"

namespace corvina20::test {
namespace {

class CommandLine : public ::testing::Test {
 protected:
  int Run(const std::string& args, std::string& out) {
    return RunCommand(std::string(CORVINA_TEST_PROGRAM) + " " + args + " 2>&1", out);
  }
  TempDir dir;
};

TEST_F(CommandLine, InitCreatesAndThenOnlyMigrates) {
  std::string out;
  std::string db = dir.File("sub/nuovo.db");
  ASSERT_EQ(Run("init --demo " + db, out), 0) << out;
  EXPECT_NE(out.find("dati dimostrativi"), std::string::npos);
  ASSERT_EQ(Run("init " + db, out), 0) << out;
  EXPECT_NE(out.find(": 0 file di schema applicati"), std::string::npos) << out;
  auto connection = OpenDatabase(db);
  auto parties = connection->OpenRecordset("SELECT COUNT(*) AS N FROM STDAnagrafiche");
  EXPECT_GT(parties->Fields("N").Value().ToLong(), 0);
}

TEST_F(CommandLine, ItemsListsWhatTheFactoryServes) {
  std::string out, db = dir.File("i.db");
  ASSERT_EQ(Run("init " + db, out), 0) << out;
  ASSERT_EQ(Run("items --db " + db, out), 0) << out;
  EXPECT_NE(out.find("AnagraficaVettori"), std::string::npos);
  EXPECT_NE(out.find("RptRubriche TipoRubrica=6"), std::string::npos) << out;
  EXPECT_NE(out.find("RptEtichetteAnagrafiche TipoEtichetta=4"), std::string::npos);
  EXPECT_NE(out.find("RptDichiarazioneIntento"), std::string::npos);
  EXPECT_EQ(out.find("(nessuna maschera)"), std::string::npos) << out;
}

TEST_F(CommandLine, ParamsAreWrittenAndReadBack) {
  std::string out, db = dir.File("p.db");
  ASSERT_EQ(Run("init " + db, out), 0) << out;
  EXPECT_EQ(Run("params get --db " + db + " ControlloCFBloccante", out), 3);
  EXPECT_NE(out.find("non impostato"), std::string::npos);
  ASSERT_EQ(Run("params set --db " + db + " ControlloCFBloccante 1", out), 0) << out;
  ASSERT_EQ(Run("params get --db " + db + " controllocfbloccante", out), 0) << out;
  EXPECT_EQ(out, "1\n");
  EXPECT_NE(Run("params get --db " + dir.File("nessuna/cartella/x.db") + " K", out), 0);
}

// `copy` moves a whole database (here to an SQLite file, from the backend
// the suite runs on) and compares the counts; a second copy onto the same
// target is refused. `init` on an existing database only migrates, and an
// address is never taken for folders to make.
TEST_F(CommandLine, CopyMovesEveryTableAndComparesTheCounts) {
  TestDatabase source(true);
  std::string out, target = dir.File("copia.db");
  ASSERT_EQ(Run("copy " + source.path + " " + target, out), 0) << out;
  EXPECT_NE(out.find("STDAnagrafiche: "), std::string::npos) << out;
  EXPECT_NE(out.find("i conteggi coincidono"), std::string::npos) << out;
  const std::string count = "SELECT COUNT(*) FROM STDAnagIndirizzi";
  EXPECT_EQ(QueryLong(OpenDatabase(target), count), QueryLong(source.connection, count));
  EXPECT_GT(QueryLong(source.connection, count), 0);
  EXPECT_NE(Run("copy " + source.path + " " + target, out), 0);
  EXPECT_NE(out.find("non è vuota"), std::string::npos) << out;

  ASSERT_EQ(Run("init " + source.path, out), 0) << out;
  EXPECT_NE(out.find(": 0 file di schema applicati"), std::string::npos) << out;
  EXPECT_FALSE(std::filesystem::exists("postgresql:"));
}

}  // namespace
}  // namespace corvina20::test
