// FREETEXTTABLE ranks from each connection's in-memory copy of the index:
// the copy must follow every change the connection can see (its own, other
// connections', rolled back ones, rebuilt indexes), and the search table must
// honour the rank bounds and the order SQLite leaves to it. Each case
// compares the search with every row ranked from its text.
#include <gtest/gtest.h>

#include <algorithm>
#include <string>
#include <vector>

#include "FullTextFixture.h"
#include "data/Backend.h"
#include "data/Database.h"
#include "data/fulltext/FtsIndexes.h"

namespace corvina20::test {
namespace {

std::vector<std::int32_t> Keys(const std::vector<Hit>& hits) {
  std::vector<std::int32_t> keys;
  for (const Hit& h : hits) keys.push_back(h.key);
  return keys;
}

class SearchMirror : public ::testing::Test {
 protected:
  SearchMirror() : db(400), other(OpenDatabase(db.Path())) {}

  // The search through the index, checked against ranking every row.
  std::vector<Hit> Found(const std::string& text, int floor = 1) {
    std::vector<Hit> hits = db.Search(text, floor);
    EXPECT_EQ(hits, db.RankAll(text, floor)) << text;
    return hits;
  }
  void OtherRuns(const std::string& sql) { other->Execute(sql); }

  FullTextDb db;
  ConnectionPtr other;  // a second connection to the same file
};

TEST_F(SearchMirror, FollowsTheChangesOfOtherConnections) {
  EXPECT_TRUE(Found("Zefiro").empty());
  OtherRuns("INSERT INTO STDAnagrafiche (IdAnagrafica, RagioneSociale) VALUES (5001, 'Zefiro Logistica Srl')");
  EXPECT_EQ(Keys(Found("Zefiro")), (std::vector<std::int32_t>{5001}));
  EXPECT_EQ(Found("Zefiro Logistica Srl", 31), (std::vector<Hit>{{5001, 1000}}));
  OtherRuns("UPDATE STDAnagrafiche SET RagioneSociale = 'Borea Logistica Srl' WHERE IdAnagrafica = 5001");
  EXPECT_TRUE(Found("Zefiro").empty());
  EXPECT_EQ(Keys(Found("Borea")), (std::vector<std::int32_t>{5001}));
  OtherRuns("UPDATE STDAnagrafiche SET IdAnagrafica = 5002 WHERE IdAnagrafica = 5001");
  EXPECT_EQ(Keys(Found("Borea")), (std::vector<std::int32_t>{5002}));
  OtherRuns("DELETE FROM STDAnagrafiche WHERE IdAnagrafica = 5002");
  EXPECT_TRUE(Found("Borea").empty());
  // Rows that change how common a word is move the ranks of the others.
  const std::string name = db.Parties()[20].ragioneSociale;
  std::vector<Hit> before = Found(name);
  OtherRuns("INSERT INTO STDAnagrafiche (IdAnagrafica, RagioneSociale) SELECT IdAnagrafica + 10000, RagioneSociale "
            "FROM STDAnagrafiche WHERE IdAnagrafica <= 100");
  EXPECT_NE(Found(name), before);
}

TEST_F(SearchMirror, ForgetsWhatARollbackUndoesEvenWhenAnotherConnectionWritesNext) {
  Connection& c = *db.Conn();
  EXPECT_TRUE(Found("Zefiro").empty());
  c.BeginTrans();
  db.AddParty(6001, "Zefiro Trasporti");
  EXPECT_EQ(Keys(Found("Zefiro")), (std::vector<std::int32_t>{6001}));  // its own change, uncommitted
  c.RollbackTrans();
  EXPECT_TRUE(Found("Zefiro").empty());
  // Again, and this time another connection's change takes the place in the
  // log that the rolled back one had.
  c.BeginTrans();
  db.AddParty(6001, "Zefiro Trasporti");
  EXPECT_EQ(Keys(Found("Zefiro")), (std::vector<std::int32_t>{6001}));
  c.RollbackTrans();
  OtherRuns("INSERT INTO STDAnagrafiche (IdAnagrafica, RagioneSociale) VALUES (6002, 'Zefiro Impianti')");
  EXPECT_EQ(Keys(Found("Zefiro")), (std::vector<std::int32_t>{6002}));
}

TEST_F(SearchMirror, ReloadsWhenTheLogNoLongerHoldsItsPlaceOrTheIndexIsBuiltAgain) {
  EXPECT_TRUE(Found("Zefiro").empty());
  // More changes than the log keeps: the entries it had reached are gone.
  OtherRuns("INSERT INTO STDAnagrafiche (IdAnagrafica, RagioneSociale) VALUES (7001, 'Zefiro Uno')");
  other->ExecuteNative("DELETE FROM CORftlog_STDAnagrafiche_RagioneSociale");
  OtherRuns("INSERT INTO STDAnagrafiche (IdAnagrafica, RagioneSociale) VALUES (7002, 'Zefiro Due')");
  EXPECT_EQ(Keys(Found("Zefiro")), (std::vector<std::int32_t>{7001, 7002}));
  // Another connection builds the index again after a change made without it.
  other->ExecuteNative("DROP TABLE CORft_STDAnagrafiche_RagioneSociale");
  other->ExecuteNative("DROP TRIGGER CORft_STDAnagrafiche_RagioneSociale_ai");
  OtherRuns("INSERT INTO STDAnagrafiche (IdAnagrafica, RagioneSociale) VALUES (7003, 'Zefiro Tre')");
  EXPECT_EQ(data::fulltext::EnsureFullTextIndexes(*other), 1);
  EXPECT_EQ(Keys(Found("Zefiro")), (std::vector<std::int32_t>{7001, 7002, 7003}));
}

// KEY and Rank of a FREETEXTTABLE query, in the order the query gives them.
std::vector<Hit> Rows(Connection& c, const std::string& tsql) {
  std::vector<Hit> hits;
  for (auto rs = c.OpenRecordset(tsql); !rs->IsEOF(); rs->MoveNext())
    hits.push_back({rs->Fields("KEY").Value().ToLong(), rs->Fields("Rank").Value().ToLong()});
  return hits;
}

std::vector<Hit> Within(std::vector<Hit> hits, int least, int most) {
  std::erase_if(hits, [&](const Hit& h) { return h.rank < least || h.rank > most; });
  return hits;
}

TEST_F(SearchMirror, RankConditionsTheTranslationCannotSeeStillBoundTheSearch) {
  Connection& c = *db.Conn();
  for (const std::string& text : {db.Parties()[7].ragioneSociale, std::string("Rossi Trasporti Srl")}) {
    const std::vector<Hit> all = db.RankAll(text, 0);
    const std::string ft = "FREETEXTTABLE(STDAnagrafiche, RagioneSociale, '" + text + "') t";
    const std::string inner = "(SELECT t.[KEY], t.Rank FROM " + ft + ") x";
    EXPECT_EQ(Rows(c, "SELECT x.[KEY], x.Rank FROM " + inner + " WHERE x.Rank > 30 ORDER BY x.Rank DESC, x.[KEY]"),
              Within(all, 31, 1000)) << text;
    EXPECT_EQ(Rows(c, "SELECT t.[KEY], t.Rank FROM " + ft + " WHERE t.Rank BETWEEN 15 AND 30 ORDER BY t.Rank DESC, t.[KEY]"),
              Within(all, 15, 30)) << text;
    // Bounds right at ranks some rows have, whole and halfway.
    std::vector<int> ranks;
    for (const Hit& h : all)
      if (ranks.empty() || ranks.back() != h.rank) ranks.push_back(h.rank);
    for (std::size_t k = 0; k < ranks.size(); k += std::max<std::size_t>(1, ranks.size() / 6)) {
      const int r = ranks[k];
      const std::string n = std::to_string(r);
      const std::string where = "SELECT x.[KEY], x.Rank FROM " + inner + " WHERE ";
      const std::string order = " ORDER BY x.Rank DESC, x.[KEY]";
      EXPECT_EQ(Rows(c, where + "x.Rank > " + n + " - 0.5" + order), Within(all, r, 1000)) << text << " > " << r << " - 0.5";
      EXPECT_EQ(Rows(c, where + "x.Rank > " + n + order), Within(all, r + 1, 1000)) << text << " > " << r;
      EXPECT_EQ(Rows(c, where + "x.Rank >= " + n + order), Within(all, r, 1000)) << text << " >= " << r;
      EXPECT_EQ(Rows(c, where + "x.Rank < " + n + " + 0.5" + order), Within(all, 0, r)) << text << " < " << r << " + 0.5";
      EXPECT_EQ(Rows(c, where + "x.Rank < " + n + order), Within(all, 0, r - 1)) << text << " < " << r;
      EXPECT_EQ(Rows(c, where + "x.Rank <= " + n + order), Within(all, 0, r)) << text << " <= " << r;
      EXPECT_EQ(Rows(c, where + "x.Rank = " + n + order), Within(all, r, r)) << text << " = " << r;
    }
    // The other orders SQLite may leave to the search.
    std::vector<Hit> ascending = all;
    std::stable_sort(ascending.begin(), ascending.end(), [](const Hit& a, const Hit& b) { return a.rank < b.rank; });
    EXPECT_EQ(Rows(c, "SELECT t.[KEY], t.Rank FROM " + ft + " ORDER BY t.Rank, t.[KEY]"), ascending) << text;
    std::vector<Hit> keyDown = all;
    std::sort(keyDown.begin(), keyDown.end(),
              [](const Hit& a, const Hit& b) { return a.rank != b.rank ? a.rank > b.rank : a.key > b.key; });
    EXPECT_EQ(Rows(c, "SELECT t.[KEY], t.Rank FROM " + ft + " ORDER BY t.Rank DESC, t.[KEY] DESC"), keyDown) << text;
  }
}

TEST_F(SearchMirror, BestFirstReadsALighterWordsRowsWhileTheyCanStillTie) {
  Connection& c = *db.Conn();
  // Two words as rare as each other: "quintor" is read first (ties go by the
  // word), yet the row of "zorbax" alone ranks the same and has the lower key.
  db.AddParty(9002, "Quintor");
  db.AddParty(9001, "Zorbax");
  std::vector<Hit> rows = Rows(c, "SELECT t.[KEY], t.Rank FROM FREETEXTTABLE(STDAnagrafiche, RagioneSociale, "
                                  "'Quintor Zorbax') t ORDER BY t.Rank DESC, t.[KEY]");
  ASSERT_EQ(rows.size(), 2u);
  EXPECT_EQ(rows[0].key, 9001);
  EXPECT_EQ(rows[1].key, 9002);
  EXPECT_EQ(rows[0].rank, rows[1].rank);
  EXPECT_EQ(rows, db.RankAll("Quintor Zorbax", 0));
}

TEST_F(SearchMirror, TopTenOfTheBandAreTheTenBestThatPassTheOtherConditions) {
  Connection& c = *db.Conn();
  // Suppliers are left out of the similar band: the search must go on past them.
  c.Execute("UPDATE STDAnagrafiche SET Fornitore = 1 WHERE IdAnagrafica % 3 = 0");
  std::vector<std::int32_t> suppliers;
  for (const auto& row : c.Backend().Run("SELECT IdAnagrafica FROM STDAnagrafiche WHERE Fornitore = 1", {}).rows)
    suppliers.push_back(row[0].ToLong());
  int checked = 0;
  for (std::size_t i = 0; i < db.Parties().size(); i += 37) {
    const std::string text = db.Parties()[i].ragioneSociale;
    std::vector<Hit> band = Within(db.RankAll(text, 15), 15, 30);
    std::erase_if(band, [&](const Hit& h) {
      return std::find(suppliers.begin(), suppliers.end(), h.key) != suppliers.end() || h.key == db.Parties()[i].id;
    });
    if (band.size() > 10) band.resize(10);
    std::string quoted;
    for (char ch : text) quoted += ch == '\'' ? std::string("''") : std::string(1, ch);
    std::vector<Hit> top = Rows(
        c, "SELECT TOP 10 Rank = t1.rank, t1.[KEY] from STDAnagrafiche T inner join FREETEXTtable(STDAnagrafiche,"
           "RagioneSociale,'" + quoted + "') t1 On T.IdAnagrafica = t1.[KEY] Where t1.Rank >= 15 and t1.Rank <= 30 "
           "And T.IdAnagrafica <> " + std::to_string(db.Parties()[i].id) +
           " And isNull(T.Fornitore,0) <> 1 order by t1.Rank desc");
    // Ties may come in any order: the ranks place by place, and the keys of
    // every rank above the last one.
    ASSERT_EQ(top.size(), band.size()) << text;
    for (std::size_t k = 0; k < top.size(); ++k) EXPECT_EQ(top[k].rank, band[k].rank) << text;
    auto above = [&](std::vector<Hit> hits) {
      std::erase_if(hits, [&](const Hit& h) { return h.rank <= band.back().rank; });
      std::vector<std::int32_t> keys = Keys(hits);
      std::sort(keys.begin(), keys.end());
      return keys;
    };
    if (band.empty()) continue;
    EXPECT_EQ(above(top), above(band)) << text;
    if (band.back().rank != band.front().rank) ++checked;
  }
  EXPECT_GT(checked, 0);
}

}  // namespace
}  // namespace corvina20::test
