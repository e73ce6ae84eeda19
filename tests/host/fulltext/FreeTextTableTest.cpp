// FREETEXTTABLE through the connection, in the shapes the duplicate search
// writes: the name search joined to the party, the city search as t2, the
// rank conditions, TOP 10, any letter case.
#include <gtest/gtest.h>

#include <algorithm>
#include <string>
#include <vector>

#include "FullTextFixture.h"
#include "corvina20/Error.h"
#include "corvina20/Recordset.h"
#include "data/tsql/TsqlTranslator.h"

namespace corvina20::test {
namespace {

class FreeTextTable : public ::testing::Test {
 protected:
  static void SetUpTestSuite() {
    db_ = new FullTextDb(1500);
    db_->AddParty(900005, "Rossi Trasporti S.r.l.", "Milano");  // the party being edited
    db_->AddParty(900010, "Rossi Trasporti Srl", "Milano");
    db_->AddParty(900011, "TRASPORTI ROSSI", "MILANO");
    db_->AddParty(900012, "Rossi Trasporti Srl", "Roma");
    db_->AddParty(900013, "Quasimodo Rossi Trasporti Srl", "Milano");
    db_->AddParty(900014, "Quasimodo Arredamenti Snc", "Milano");
    db_->AddParty(900015, "Quasimodo Ceramiche Spa", "Milano");
    db_->Conn()->Execute("UPDATE STDAnagrafiche SET Fornitore = 1 WHERE IdAnagrafica = 900015");
  }
  static void TearDownTestSuite() {
    delete db_;
    db_ = nullptr;
  }

  // "Rank IdAnagrafica TipoAnag" per row.
  static std::vector<std::string> Rows(const std::string& sql) {
    std::vector<std::string> out;
    for (auto rs = db_->Conn()->OpenRecordset(sql); !rs->IsEOF(); rs->MoveNext())
      out.push_back(rs->Fields("Rank").Value().ToString() + " " + rs->Fields("IdAnagrafica").Value().ToString() +
                    " " + rs->Fields("TipoAnag").Value().ToString());
    return out;
  }
  static FullTextDb* db_;
};
FullTextDb* FreeTextTable::db_ = nullptr;

TEST_F(FreeTextTable, TheDuplicateQueryWithTheCityMatchKeepsTheSameNameInTheSameTown) {
  const std::string sql =
      "SELECT Rank = t1.Rank, T.IdAnagrafica,RagioneSociale,RagioneSociale2,Indirizzo,Citta,"
      "TipoAnag = isnull(Cliente,0) from STDAnagrafiche T inner join "
      "FREETEXTtable(STDAnagrafiche,RagioneSociale,'Rossi Trasporti S.r.l.') t1 On T.IdAnagrafica = [KEY]  "
      "inner join FREETEXTtable(STDAnagrafiche, Citta,'Milano') t2 On T.IdAnagrafica = t2.[KEY] "
      "Where t1.Rank > 30 and t2.Rank > 50 and T.IdAnagrafica <> 900005 order by t1.Rank desc";
  std::vector<std::string> rows = Rows(sql);
  ASSERT_GE(rows.size(), 2u);
  EXPECT_EQ(rows[0], "1000 900010 Vero");  // TipoAnag is the Cliente bit
  // Without the legal form, in capitals and in another order: still a duplicate, ranked lower.
  EXPECT_GT(std::stoi(rows[1]), 30);
  EXPECT_LT(std::stoi(rows[1]), 1000);
  EXPECT_EQ(rows[1].substr(rows[1].find(' ')), " 900011 Vero");
  for (const std::string& r : rows) {
    EXPECT_EQ(r.find(" 900012 "), std::string::npos) << "another town";
    EXPECT_EQ(r.find(" 900005 "), std::string::npos) << "the edited party";
    // One rare word more (Quasimodo) makes a similar party, not a duplicate.
    EXPECT_EQ(r.find(" 900013 "), std::string::npos) << "a rare word more";
  }
  // Here it shares only words common in this register (Rossi is its head
  // surname, a trade, a legal form): below the similar band.
  EXPECT_LT(db_->Rank("Rossi Trasporti S.r.l.", "Quasimodo Rossi Trasporti Srl"), 15);
  // The rare word shared among different ones: similar.
  int similar = db_->Rank("Quasimodo Arredamenti Snc", "Quasimodo Ceramiche Spa");
  EXPECT_GE(similar, 15);
  EXPECT_LE(similar, 30);

  // Rank and the key are integers (ADO 3), as on SQL Server.
  auto rs = db_->Conn()->OpenRecordset(sql);
  EXPECT_EQ(rs->Fields("Rank").Type(), ado::kInteger);
  EXPECT_EQ(rs->Fields("Rank").SqlType(), "int");
  auto keys = db_->Conn()->OpenRecordset(
      "select t2.[KEY], t2.rank from freetexttable(STDAnagrafiche, Citta, 'Milano') t2 where t2.[KEY] = 900011");
  ASSERT_FALSE(keys->IsEOF());
  EXPECT_EQ(keys->Fields("KEY").Type(), ado::kInteger);
  EXPECT_EQ(keys->Fields("rank").Value().ToLong(), 1000);
}

TEST_F(FreeTextTable, TheSimilarQueryTakesTheBandBelowTheThresholdWithoutSuppliers) {
  std::vector<std::string> rows = Rows(
      "SELECT TOP 10 Rank = t1.rank,T.IdAnagrafica,T.RagioneSociale,T.RagioneSociale2,T.Indirizzo,T.Citta,"
      "TipoAnag = isnull(T.Contatto,0) from STDAnagrafiche T inner join "
      "FREETEXTtable(STDAnagrafiche,RagioneSociale,'Quasimodo Ferramenta') t1 On T.IdAnagrafica = t1.[KEY] "
      "Where t1.Rank >= 15 and t1.Rank <= 30 And T.IdAnagrafica <> 900005 And isNull(T.Fornitore,0) <> 1 "
      "order by t1.Rank desc");
  ASSERT_FALSE(rows.empty());
  EXPECT_LE(rows.size(), 10u);
  bool found14 = false;
  for (const std::string& r : rows) {
    int rank = std::stoi(r);
    EXPECT_GE(rank, 15);
    EXPECT_LE(rank, 30);
    EXPECT_EQ(r.find(" 900015 "), std::string::npos) << "a supplier";
    if (r.find(" 900014 ") != std::string::npos) found14 = true;
  }
  EXPECT_TRUE(found14) << "one distinctive word in common";
}

TEST_F(FreeTextTable, TheTranslationMatchesOnlyRowsAboveTheFloorAndQualifiesKey) {
  data::TranslatedSql sql = data::TranslateTsql(
      "SELECT Rank = t1.Rank FROM STDAnagrafiche T inner join FREETEXTtable(STDAnagrafiche,RagioneSociale,'D Amico') t1 "
      "On T.IdAnagrafica = [KEY] inner join FREETEXTTABLE(dbo.STDAnagrafiche, Citta, N'Forlì') t2 "
      "On T.IdAnagrafica = t2.[KEY] and 50 < t2.Rank Where t1.Rank > 30 and (t1.RANK >= 20)",
      data::SqlDialect::Sqlite, {});
  ASSERT_EQ(sql.statements.size(), 1u);
  const std::string& s = sql.statements[0];
  // The first search drives, from 31 up (the WHERE's t1.Rank > 30; the
  // second condition asks less).
  EXPECT_NE(s.find("corvina_ft_search('STDAnagrafiche', 'RagioneSociale', 'D Amico', 31, 1) AS t1"), std::string::npos) << s;
  // The second checks the rows the first one found, from 51 up (the ON's 50 < t2.Rank).
  EXPECT_NE(s.find("corvina_ft_search('STDAnagrafiche', 'Citta', 'Forlì', 51, 0) AS t2"), std::string::npos) << s;
  EXPECT_EQ(s.find("MATCH"), std::string::npos) << s;
  EXPECT_NE(s.find("ON T.IdAnagrafica = t1.\"KEY\""), std::string::npos) << s;
  EXPECT_EQ(sql.columnTypes, (std::vector<std::string>{"int"}));

  auto refused = [](const std::string& tsql) {
    try {
      db_->Conn()->OpenRecordset(tsql);
    } catch (const Error& e) {
      return e.Description();
    }
    return std::string("accepted");
  };
  EXPECT_EQ(refused("SELECT t.Rank FROM FREETEXTTABLE(STDAnagrafiche, Cap, 'x') t"),
            "Costrutto T-SQL non supportato: FREETEXTTABLE su STDAnagrafiche.Cap senza indice full-text");
  EXPECT_EQ(refused("SELECT t.Rank FROM FREETEXTTABLE(STDAnagrafiche, Citta, 'x', 10) t"),
            "Costrutto T-SQL non supportato: FREETEXTTABLE con top_n_by_rank");
  EXPECT_EQ(refused("SELECT Rank FROM FREETEXTTABLE(STDAnagrafiche, Citta, 'x')"),
            "Costrutto T-SQL non supportato: FREETEXTTABLE senza alias");
  // Nothing to search, or words no row has: no row, no error.
  EXPECT_TRUE(db_->Search(" ' - ", 0).empty());
  EXPECT_TRUE(db_->Search("Xyzzyq", 1).empty());
}

}  // namespace
}  // namespace corvina20::test
