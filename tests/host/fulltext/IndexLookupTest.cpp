// The indexes follow their tables (triggers), are created once per database
// and rebuilt when they must, and the lookup names the table of each field.
#include <gtest/gtest.h>

#include <string>
#include <vector>

#include "FullTextFixture.h"
#include "corvina20/FullText.h"
#include "data/Backend.h"
#include "data/fulltext/FtsIndexes.h"
#include "data/fulltext/FtsSqlite.h"
#include "data/fulltext/FtsTokenizer.h"

namespace corvina20::test {
namespace {

using data::fulltext::EnsureFullTextIndexes;

std::vector<std::string> Lines(Connection& c, const std::string& sql) {
  std::vector<std::string> out;
  for (const auto& row : c.Backend().Run(sql, {}).rows) {
    std::string line;
    for (const Variant& v : row) line += (line.empty() ? "" : "|") + v.ToString();
    out.push_back(line);
  }
  return out;
}

// The frequencies the connection's mirror of the index holds against those
// counted afresh ('' counts the rows with any word), and FTS5's own check of
// the index against the table.
void ExpectInStep(Connection& c, const std::string& table, const std::string& column) {
  std::string index = data::fulltext::IndexTableName(table, column);
  std::string terms = "SELECT j.value AS term FROM " + table + " AS r, json_each(corvina_ft_terms(r." + column + ")) AS j";
  EXPECT_EQ(Lines(c, "SELECT term, corvina_ft_frequency('" + table + "', '" + column + "', term) FROM (" + terms +
                         ") GROUP BY term ORDER BY term"),
            Lines(c, "SELECT term, count(*) FROM (" + terms + ") GROUP BY term ORDER BY term"))
      << index;
  EXPECT_NO_THROW(c.Backend().Run("INSERT INTO " + index + " (" + index + ") VALUES ('integrity-check')", {}));
}

// How many rows hold the index term of `word` ('' : the rows with any word).
long Frequency(Connection& c, const std::string& word, const std::string& column = "RagioneSociale") {
  std::string term = word.empty() ? "" : data::fulltext::DistinctTerms(word).at(0);
  return c.Backend()
      .Run("SELECT corvina_ft_frequency('STDAnagrafiche', ?, ?)", {Variant(column), Variant(term)})
      .rows.at(0)
      .at(0)
      .ToLong();
}

std::vector<std::int32_t> Keys(const std::vector<Hit>& hits) {
  std::vector<std::int32_t> keys;
  for (const Hit& h : hits) keys.push_back(h.key);
  return keys;
}

TEST(FullTextIndexes, TriggersKeepIndexAndFrequenciesInStepWithInsertUpdateAndDelete) {
  FullTextDb db(300);
  Connection& c = *db.Conn();
  db.AddParty(1001, "Zefiro Trasporti Srl", "Forlì");
  EXPECT_EQ(Keys(db.Search("zefiro", 1)), (std::vector<std::int32_t>{1001}));
  EXPECT_EQ(Keys(db.Search("FORLI", 51, "Citta")).size(), Keys(db.RankAll("FORLI", 51, "Citta")).size());

  c.Execute("UPDATE STDAnagrafiche SET RagioneSociale = 'Borea Logistica Srl' WHERE IdAnagrafica = 1001");
  EXPECT_TRUE(db.Search("zefiro", 1).empty());
  EXPECT_EQ(Keys(db.Search("Borea", 1)), (std::vector<std::int32_t>{1001}));
  // Rewriting the same value, or another column, leaves the index alone.
  c.Execute("UPDATE STDAnagrafiche SET RagioneSociale = 'Borea Logistica Srl', Cap = '47121' WHERE IdAnagrafica = 1001");
  c.Execute("UPDATE STDAnagrafiche SET RagioneSociale = NULL WHERE IdAnagrafica = 5");
  c.Execute("UPDATE STDAnagrafiche SET RagioneSociale = 'Borea Due' WHERE IdAnagrafica = 5");
  c.Execute("DELETE FROM STDAnagrafiche WHERE IdAnagrafica IN (1001, 7, 8)");
  EXPECT_EQ(Keys(db.Search("Borea", 1)), (std::vector<std::int32_t>{5}));
  c.Execute("UPDATE STDAnagrafiche SET IdAnagrafica = 2001 WHERE IdAnagrafica = 5");
  EXPECT_EQ(Keys(db.Search("Borea", 1)), (std::vector<std::int32_t>{2001}));
  ExpectInStep(c, "STDAnagrafiche", "RagioneSociale");
  ExpectInStep(c, "STDAnagrafiche", "Citta");
  // "" counts the rows with at least one word; words no row holds any more count 0.
  EXPECT_EQ(std::to_string(Frequency(c, "")),
            Lines(c, "SELECT count(*) FROM STDAnagrafiche WHERE corvina_ft_terms(RagioneSociale) <> '[]'").at(0));
  EXPECT_EQ(Frequency(c, "zefiro"), 0);
  EXPECT_EQ(Frequency(c, "borea"), 1);

  // A satellite table is indexed by its IdAnagrafica as well.
  c.Execute("INSERT INTO STDAnagraficaClienti (IdAnagrafica, VecchioCodice) VALUES (2001, 'C-0042'), (12, 'C-0043')");
  EXPECT_EQ(Keys(db.Search("c 0042", 31, "VecchioCodice", "STDAnagraficaClienti")), (std::vector<std::int32_t>{2001}));
  c.Execute("DELETE FROM STDAnagraficaClienti WHERE IdAnagrafica = 2001");
  EXPECT_TRUE(db.Search("C-0042", 31, "VecchioCodice", "STDAnagraficaClienti").empty());
  ExpectInStep(c, "STDAnagraficaClienti", "VecchioCodice");
}

TEST(FullTextIndexes, AreCreatedOnceAndRebuiltFromExistingRowsWhenMissingOrOfAnotherVersion) {
  FullTextDb db(200);
  Connection& c = *db.Conn();
  for (const FullTextColumn& col : FullTextCatalogue())
    EXPECT_TRUE(c.TableExists(data::fulltext::IndexTableName(col.table, col.column))) << col.table << "." << col.column;
  EXPECT_EQ(EnsureFullTextIndexes(c), 0);
  std::vector<Hit> before = db.Search(db.Parties()[10].ragioneSociale, 1);

  // An older database: the rows are there, the index is not.
  c.ExecuteNative("DROP TABLE CORft_STDAnagrafiche_RagioneSociale; DROP TABLE CORftlog_STDAnagrafiche_RagioneSociale");
  // An index of an older version, and one the catalogue no longer lists.
  c.ExecuteNative("UPDATE CORFullText SET Versione = 0 WHERE NomeIndice = 'CORft_STDAnagrafiche_Citta';"
                  "CREATE TABLE CORft_STDAnagrafiche_Cap (x); "
                  "INSERT INTO CORFullText VALUES ('CORft_STDAnagrafiche_Cap', 'STDAnagrafiche', 'Cap', 1)");
  EXPECT_EQ(EnsureFullTextIndexes(c), 2);
  EXPECT_EQ(db.Search(db.Parties()[10].ragioneSociale, 1), before);
  EXPECT_FALSE(c.TableExists("CORft_STDAnagrafiche_Cap"));
  EXPECT_EQ(Lines(c, "SELECT count(*) FROM CORFullText"),
            (std::vector<std::string>{std::to_string(FullTextCatalogue().size())}));
  ExpectInStep(c, "STDAnagrafiche", "RagioneSociale");
  ExpectInStep(c, "STDAnagrafiche", "Citta");
  EXPECT_EQ(EnsureFullTextIndexes(c), 0);
}

TEST(FullTextLookup, NamesTheIndexedTableOfAFieldByPartyKindAndMode) {
  EXPECT_EQ(FullTextTable("RagioneSociale", false, false), "STDAnagrafiche");
  EXPECT_EQ(FullTextTable("ragionesociale", false, true), "STDAnagrafiche");
  EXPECT_EQ(FullTextTable("CodiceFiscale", false, false), "STDAnagrafiche");
  EXPECT_EQ(FullTextTable("E_mail", false, true), "STDAnagrafiche");
  EXPECT_EQ(FullTextTable("VecchioCodice", false, false), "STDAnagraficaClienti");
  EXPECT_EQ(FullTextTable("VecchioCodice", false, true), "STDAnagraficaContatti");
  EXPECT_EQ(FullTextTable("Contatto", false, true), "STDAnagraficaContatti");
  EXPECT_EQ(FullTextTable("Cognome", false, false), "STDAnagraficaClienti");
  EXPECT_EQ(FullTextTable("Cognome", false, true), "");
  EXPECT_EQ(FullTextTable("RagioneSociale", true, false), "CRMAnagrafiche");
  EXPECT_EQ(FullTextTable("Citta", true, true), "CRMAnagrafiche");
  EXPECT_EQ(FullTextTable("ReferenteCognome", true, false), "CRMAnagraficheAltriDati");
  EXPECT_EQ(FullTextTable("VecchioCodice", true, false), "");
  EXPECT_EQ(FullTextTable("Cap", false, false), "");
  EXPECT_EQ(FullTextTable(" ", false, false), "");
  // Every line names its key's table: each index is keyed by IdAnagrafica.
  TestDatabase db;
  for (const FullTextColumn& col : FullTextCatalogue())
    EXPECT_TRUE(db.connection->ColumnType(col.table, "IdAnagrafica")) << col.table;
}

}  // namespace
}  // namespace corvina20::test
