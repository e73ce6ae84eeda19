// Text compared as the module's SQL expects on every path it can take: the
// product schema's columns, LIKE, literals and parameters, work tables, and
// an older database converted by init. Runs the module's T-SQL through the
// connection on a real SQLite file.
#include <gtest/gtest.h>

#include <string>
#include <vector>

#include "corvina20/Error.h"
#include "data/Backend.h"
#include "data/Database.h"
#include "data/schema/TextCollation.h"
#include "support/TestSupport.h"

namespace corvina20::test {
namespace {

// The values of the first column, in the order read.
std::vector<std::string> Column(const ConnectionPtr& db, const std::string& tsql,
                                const std::vector<Variant>& params = {}) {
  std::vector<std::string> values;
  for (RecordsetPtr rs = db->OpenRecordset(tsql, params); !rs->IsEOF(); rs->MoveNext())
    values.push_back(rs->Fields(std::size_t{0}).Value().ToString());
  return values;
}

using S = std::vector<std::string>;

class TextCompare : public ::testing::Test {
 protected:
  void SetUp() override {
    db = database.connection;
    db->Execute(
        "INSERT INTO STDAnagrafiche (IdAnagrafica, RagioneSociale, Citta, CodiceFiscale) VALUES "
        "(1, 'acme', 'Milano', 'RSSMRA80A01H501U'), (2, 'Zeta', 'MILANO', NULL), (3, 'Beta', 'Forlì', NULL), "
        "(4, 'ÉLITE', 'FORLÌ', NULL), (5, 'élite', 'Forli', NULL), (6, 'Sconto 10%', 'Roma', NULL)");
  }
  TestDatabase database;
  ConnectionPtr db;
};

TEST_F(TextCompare, ColumnsCompareWithoutCaseAndWithAccents) {
  EXPECT_EQ(Column(db, "SELECT IdAnagrafica FROM STDAnagrafiche WHERE CodiceFiscale = 'rssmra80a01h501u'"), S{"1"});
  EXPECT_EQ(Column(db, "SELECT IdAnagrafica FROM STDAnagrafiche WHERE CodiceFiscale = ?",
                   {Variant("Rssmra80a01h501u")}),
            S{"1"});
  // "è" = "È" but "e" <> "è"; the same for ì and i.
  EXPECT_EQ(Column(db, "SELECT IdAnagrafica FROM STDAnagrafiche WHERE RagioneSociale = 'élite' ORDER BY 1"),
            (S{"4", "5"}));
  EXPECT_EQ(Column(db, "SELECT IdAnagrafica FROM STDAnagrafiche WHERE RagioneSociale = 'elite'"), S{});
  EXPECT_EQ(Column(db, "SELECT IdAnagrafica FROM STDAnagrafiche WHERE Citta IN ('forlì', 'x') ORDER BY 1"),
            (S{"3", "4"}));
  EXPECT_EQ(Column(db, "SELECT IdAnagrafica FROM STDAnagrafiche WHERE Citta <> 'milano' AND Citta < 'roma' ORDER BY 1"),
            (S{"3", "4", "5"}));
  // Sorting, grouping and DISTINCT fold case too.
  EXPECT_EQ(Column(db, "SELECT RagioneSociale FROM STDAnagrafiche WHERE IdAnagrafica <= 3 ORDER BY RagioneSociale"),
            (S{"acme", "Beta", "Zeta"}));
  EXPECT_EQ(Column(db, "SELECT count(*) FROM STDAnagrafiche GROUP BY Citta ORDER BY Citta"),
            (S{"1", "2", "2", "1"}));
  EXPECT_EQ(Column(db, "SELECT count(DISTINCT Citta) FROM STDAnagrafiche"), S{"4"});
  // A unique key holds one spelling of a text whatever its case.
  db->Execute("INSERT INTO CORParametri (Chiave, Valore) VALUES ('Prova', '1')");
  EXPECT_THROW(db->Execute("INSERT INTO CORParametri (Chiave, Valore) VALUES ('PROVA', '2')"), Error);
}

TEST_F(TextCompare, LikeLiteralsParametersAndWorkTablesFollowTheSameRule) {
  EXPECT_EQ(Column(db, "SELECT IdAnagrafica FROM STDAnagrafiche WHERE RagioneSociale LIKE 'ÉL%' ORDER BY 1"),
            (S{"4", "5"}));
  EXPECT_EQ(Column(db, "SELECT IdAnagrafica FROM STDAnagrafiche WHERE Citta LIKE 'forl_' ORDER BY 1"),
            (S{"3", "4", "5"}));
  EXPECT_EQ(Column(db, "SELECT IdAnagrafica FROM STDAnagrafiche WHERE RagioneSociale LIKE '[a-c]%' ORDER BY 1"),
            (S{"1", "3"}));
  EXPECT_EQ(Column(db, "SELECT IdAnagrafica FROM STDAnagrafiche WHERE RagioneSociale NOT LIKE '[^z]%'"), S{"2"});
  // % and _ literally: in brackets (the query builder's way) or escaped.
  EXPECT_EQ(Column(db, "SELECT IdAnagrafica FROM STDAnagrafiche WHERE RagioneSociale LIKE '%10[%]'"), S{"6"});
  EXPECT_EQ(Column(db, "SELECT IdAnagrafica FROM STDAnagrafiche WHERE RagioneSociale LIKE '%0!%' ESCAPE '!'"), S{"6"});
  EXPECT_EQ(Column(db, "SELECT IdAnagrafica FROM STDAnagrafiche WHERE RagioneSociale LIKE '%1[_]%'"), S{});
  // Two operands that are not columns.
  EXPECT_EQ(Column(db, "SELECT CASE WHEN 'Città' = ? THEN 1 ELSE 0 END", {Variant("CITTÀ")}), S{"1"});
  EXPECT_EQ(Column(db, "SELECT CASE WHEN upper(?) = 'citta' THEN 1 ELSE 0 END", {Variant("città")}), S{"0"});
  // A work table made by SELECT … INTO compares as the table it came from.
  db->Execute("SELECT Nome = convert(varchar(40), RagioneSociale) INTO _RPTTMPProva FROM STDAnagrafiche");
  EXPECT_EQ(Column(db, "SELECT count(*) FROM _RPTTMPProva WHERE Nome = 'ACME'"), S{"1"});
}

// Makes the database look like one made before text columns named the
// collation: the declared collations are taken out and the indexes rebuilt.
void StripCollations(Connection& c) {
  data::Backend& b = c.Backend();
  const std::int64_t version = b.Run("PRAGMA schema_version", {}).rows[0][0].ToBigInt();
  b.RunScript("BEGIN; PRAGMA writable_schema = ON; UPDATE sqlite_schema SET sql = replace(sql, ' COLLATE NOCASE', '') "
              "WHERE type = 'table'; PRAGMA schema_version = " + std::to_string(version + 1) +
              "; PRAGMA writable_schema = OFF; REINDEX; COMMIT;");
}

TEST(TextCollationMigration, InitConvertsAnOlderDatabaseOnceAndTheFullTextFollows) {
  TestDatabase database;
  Connection& c = *database.connection;
  c.Execute("INSERT INTO STDAnagrafiche (IdAnagrafica, RagioneSociale, CodiceFiscale) VALUES (1, 'Rossi Srl', 'ABC')");
  StripCollations(c);
  EXPECT_EQ(Column(database.connection, "SELECT IdAnagrafica FROM STDAnagrafiche WHERE CodiceFiscale = 'abc'"), S{});

  InitDatabase(c, false);
  EXPECT_EQ(Column(database.connection, "SELECT IdAnagrafica FROM STDAnagrafiche WHERE CodiceFiscale = 'abc'"), S{"1"});
  EXPECT_EQ(data::MigrateTextCollation(c), 0);  // nothing left to do
  EXPECT_EQ(c.Backend().Run("PRAGMA integrity_check", {}).rows[0][0].ToString(), "ok");
  // The full-text triggers still keep the index in step.
  c.Execute("INSERT INTO STDAnagrafiche (IdAnagrafica, RagioneSociale) VALUES (2, 'Quasimodo Trasporti')");
  c.Execute("UPDATE STDAnagrafiche SET RagioneSociale = 'ROSSI SRL' WHERE IdAnagrafica = 1");
  EXPECT_EQ(Column(database.connection,
                   "SELECT T.IdAnagrafica FROM STDAnagrafiche T inner join FREETEXTtable(STDAnagrafiche, "
                   "RagioneSociale, 'quasimodo trasporti') t1 On T.IdAnagrafica = t1.[KEY] Where t1.Rank > 30"),
            S{"2"});
}

TEST(TextCollationMigration, AUniqueKeyHoldingTwoCasesOfOneTextStopsItAndChangesNothing) {
  TestDatabase database;
  Connection& c = *database.connection;
  StripCollations(c);
  c.Execute("INSERT INTO CORParametri (Chiave, Valore) VALUES ('Prova', '1'), ('PROVA', '2')");
  try {
    data::MigrateTextCollation(c);
    ADD_FAILURE() << "converted";
  } catch (const Error& e) {
    EXPECT_NE(e.Description().find("UNIQUE"), std::string::npos) << e.Description();
  }
  EXPECT_FALSE(c.InTransaction());
  EXPECT_EQ(Column(database.connection, "SELECT Valore FROM CORParametri WHERE Chiave = 'prova'"), S{});
  c.Execute("DELETE FROM CORParametri WHERE Valore = '2'");
  EXPECT_GT(data::MigrateTextCollation(c), 0);
  EXPECT_EQ(Column(database.connection, "SELECT Valore FROM CORParametri WHERE Chiave = 'prova'"), S{"1"});
}

TEST(TextCollationMigration, TheCollationGoesAfterEachTextTypeThatHasNone) {
  EXPECT_EQ(data::AddTextCollation("CREATE TABLE T (\n  Id int PRIMARY KEY,\n  A nvarchar(80) NOT NULL DEFAULT 'x, y',\n"
                                   "  B text, \"C\" char(2) COLLATE NOCASE, D decimal(18,4),\n"
                                   "  CONSTRAINT pk UNIQUE (A, B), E varchar(3))"),
            "CREATE TABLE T (\n  Id int PRIMARY KEY,\n  A nvarchar(80) COLLATE NOCASE NOT NULL DEFAULT 'x, y',\n"
            "  B text COLLATE NOCASE, \"C\" char(2) COLLATE NOCASE, D decimal(18,4),\n"
            "  CONSTRAINT pk UNIQUE (A, B), E varchar(3) COLLATE NOCASE)");
}

}  // namespace
}  // namespace corvina20::test
