// Every connection of the process to one database ranks from one shared copy
// of each full-text index: a second session's first search does not build
// another, a writer's uncommitted rows are seen by its own searches only, a
// connection whose snapshot is older than the copy still sees its own
// snapshot, and many commits advance the copy for everyone, which the
// connections between their searches follow. Each search is checked against
// every row ranked from its text.
#include <gtest/gtest.h>

#include <string>
#include <thread>
#include <vector>

#include "FullTextFixture.h"
#include "data/Backend.h"
#include "data/Database.h"
#include "data/fulltext/FtsShared.h"
#include "data/fulltext/FtsWarm.h"

namespace corvina20::test {
namespace {

// The duplicates search of the fixture, on any connection.
std::vector<Hit> SearchOn(Connection& c, const std::string& text) {
  std::vector<Hit> hits;
  for (auto rs = c.OpenRecordset("SELECT t.[KEY], t.Rank FROM FREETEXTTABLE(STDAnagrafiche, RagioneSociale, '" + text +
                                 "') t WHERE t.Rank >= 1 ORDER BY t.Rank DESC, t.[KEY]");
       !rs->IsEOF(); rs->MoveNext())
    hits.push_back({rs->Fields("KEY").Value().ToLong(), rs->Fields("Rank").Value().ToLong()});
  return hits;
}

std::vector<std::int32_t> Keys(const std::vector<Hit>& hits) {
  std::vector<std::int32_t> keys;
  for (const Hit& h : hits) keys.push_back(h.key);
  return keys;
}

TEST(SharedMirror, SessionsShareOneCopyAndAWritersUncommittedRowsStayItsOwn) {
  FullTextDb db(400);
  auto shared = data::fulltext::SharedMirror::Of(db.Path(), "STDAnagrafiche", "RagioneSociale");
  ConnectionPtr other = OpenDatabase(db.Path());
  ConnectionPtr reader = OpenDatabase(db.Path());
  const std::string name = db.Parties()[20].ragioneSociale;
  std::vector<Hit> expected = db.Search(name, 1);
  ASSERT_FALSE(expected.empty());
  EXPECT_EQ(expected, db.RankAll(name, 1));
  EXPECT_EQ(shared->Loads(), 1);
  // The second session's first search ranks from the same copy.
  EXPECT_EQ(SearchOn(*other, name), expected);
  EXPECT_EQ(shared->Loads(), 1);

  // A row written and not committed: its writer finds it, nobody else does.
  other->BeginTrans();
  other->ExecuteNative("INSERT INTO STDAnagrafiche (IdAnagrafica, RagioneSociale) VALUES (8001, 'Zefiro Vettori Srl')");
  EXPECT_EQ(Keys(SearchOn(*other, "Zefiro Vettori")), (std::vector<std::int32_t>{8001}));
  EXPECT_TRUE(db.Search("Zefiro Vettori", 1).empty());
  EXPECT_EQ(SearchOn(*other, name), expected);
  other->CommitTrans();
  EXPECT_EQ(Keys(db.Search("Zefiro Vettori", 1)), (std::vector<std::int32_t>{8001}));
  EXPECT_EQ(shared->Loads(), 1);

  // A reader keeps an older snapshot open while many rows are committed and
  // another connection advances the shared copy past it.
  reader->ExecuteNative("BEGIN");
  EXPECT_TRUE(SearchOn(*reader, "Borea7").empty());
  other->ExecuteNative(
      "WITH RECURSIVE n(i) AS (SELECT 1 UNION ALL SELECT i + 1 FROM n WHERE i < 1100) "
      "INSERT INTO STDAnagrafiche (IdAnagrafica, RagioneSociale) SELECT 20000 + i, 'Borea' || i || ' Trasporti Srl' FROM n");
  std::vector<Hit> borea = db.Search("Borea7 Trasporti Srl", 1);
  ASSERT_FALSE(borea.empty());
  EXPECT_EQ(borea.front(), (Hit{20007, 1000}));
  EXPECT_EQ(borea, db.RankAll("Borea7 Trasporti Srl", 1));
  EXPECT_EQ(shared->Advances(), 1);
  EXPECT_TRUE(SearchOn(*reader, "Borea7").empty());  // still its own snapshot
  EXPECT_EQ(SearchOn(*reader, name), expected);
  reader->ExecuteNative("COMMIT");
  EXPECT_EQ(SearchOn(*reader, "Borea7 Trasporti Srl"), borea);
  EXPECT_EQ(SearchOn(*other, "Borea7 Trasporti Srl"), borea);
  EXPECT_EQ(shared->Loads(), 1);
  // A connection between its searches lets go of the copy it used once a
  // newer one is shared.
  std::weak_ptr<const data::fulltext::MirrorData> older = shared->Current();
  other->ExecuteNative(
      "WITH RECURSIVE n(i) AS (SELECT 1 UNION ALL SELECT i + 1 FROM n WHERE i < 1100) "
      "INSERT INTO STDAnagrafiche (IdAnagrafica, RagioneSociale) SELECT 50000 + i, 'Noto' || i || ' Srl' FROM n");
  EXPECT_EQ(Keys(SearchOn(*other, "Noto9")), (std::vector<std::int32_t>{50009}));
  EXPECT_EQ(shared->Advances(), 2);
  EXPECT_FALSE(older.expired());  // the other connections still hold it
  for (ConnectionPtr c : {db.Conn(), reader}) c->Backend().FollowNewestCopies();
  EXPECT_TRUE(older.expired());
  EXPECT_EQ(Keys(db.Search("Noto9", 1)), (std::vector<std::int32_t>{50009}));

  // Sessions searching at once, each on its own connection and thread.
  std::vector<std::vector<Hit>> found(4);
  std::vector<std::thread> sessions;
  for (std::size_t i = 0; i < found.size(); ++i)
    sessions.emplace_back([&, i] {
      ConnectionPtr c = OpenDatabase(db.Path());
      for (int round = 0; round < 5; ++round) found[i] = SearchOn(*c, round % 2 ? name : "Borea7 Trasporti Srl");
    });
  for (auto& t : sessions) t.join();
  for (const auto& hits : found) EXPECT_EQ(hits, borea);  // the last round's
  EXPECT_EQ(shared->Loads(), 1);
}

TEST(SharedMirror, ATransactionWritingMoreThanTheLogKeepsMakesOneCopyOfItsOwnAndSharesNone) {
  FullTextDb db(50);
  auto shared = data::fulltext::SharedMirror::Of(db.Path(), "STDAnagrafiche", "RagioneSociale");
  ConnectionPtr other = OpenDatabase(db.Path());
  const std::string name = db.Parties()[3].ragioneSociale;
  const std::vector<Hit> before = db.Search(name, 1);
  EXPECT_EQ(shared->Loads(), 1);
  // An import in one transaction: the log keeps its last 10,000 entries, so
  // the shared copy's entry is gone from what the writer sees.
  other->BeginTrans();
  other->ExecuteNative(
      "WITH RECURSIVE n(i) AS (SELECT 1 UNION ALL SELECT i + 1 FROM n WHERE i < 10050) "
      "INSERT INTO STDAnagrafiche (IdAnagrafica, RagioneSociale) SELECT 30000 + i, 'Austro' || i || ' Srl' FROM n");
  EXPECT_EQ(Keys(SearchOn(*other, "Austro77")), (std::vector<std::int32_t>{30077}));
  EXPECT_EQ(Keys(SearchOn(*other, "Austro10050")), (std::vector<std::int32_t>{40050}));  // the same copy
  EXPECT_EQ(shared->Loads(), 2);
  EXPECT_EQ(db.Search(name, 1), before);  // the others still rank from the shared copy
  EXPECT_TRUE(db.Search("Austro77", 1).empty());
  other->CommitTrans();
  // The first connection to see the commit cannot relate the shared copy to
  // it either: it makes the next one, which every connection then uses.
  EXPECT_EQ(Keys(db.Search("Austro77", 1)), (std::vector<std::int32_t>{30077}));
  EXPECT_EQ(Keys(SearchOn(*other, "Austro78")), (std::vector<std::int32_t>{30078}));
  EXPECT_EQ(shared->Loads(), 3);
}

TEST(SharedMirror, AServerMakesTheNamesAndTownsCopiesAheadAndTheFirstSearchFindsThemMade) {
  FullTextDb db(50);
  auto names = data::fulltext::SharedMirror::Of(db.Path(), "STDAnagrafiche", "RagioneSociale");
  auto phones = data::fulltext::SharedMirror::Of(db.Path(), "STDAnagrafiche", "Telefono");
  // The names and towns of the parties and of the leads.
  EXPECT_EQ(data::fulltext::WarmFullText(db.Path()), 4);
  EXPECT_EQ(names->Loads(), 1);
  EXPECT_EQ(phones->Loads(), 0);  // made on its first search
  const std::string name = db.Parties()[7].ragioneSociale;
  EXPECT_EQ(db.Search(name, 1), db.RankAll(name, 1));
  EXPECT_EQ(names->Loads(), 1);
  EXPECT_EQ(data::fulltext::WarmFullText("/proc/no-such-folder/none.db"), 0);
}

}  // namespace
}  // namespace corvina20::test
