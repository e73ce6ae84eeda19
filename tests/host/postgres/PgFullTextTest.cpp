// FREETEXTTABLE on PostgreSQL gives the rows and the ranks SQLite gives, on
// the same data: the demo register, then parties added (committed, and
// inside an open transaction, seen by that connection only).
#include <gtest/gtest.h>

#include <string>
#include <vector>

#include "PartyGenerator.h"
#include "corvina20/FullText.h"
#include "corvina20/Recordset.h"
#include "data/Database.h"
#include "data/Backend.h"
#include "data/fulltext/FtsShared.h"
#include "data/fulltext/FtsWarm.h"
#include "support/TestSupport.h"

namespace corvina20::test {
namespace {

std::vector<std::string> Rows(Connection& db, const std::string& sql) {
  std::vector<std::string> out;
  auto rs = db.OpenRecordset(sql);
  for (; !rs->IsEOF(); rs->MoveNext()) {
    std::string row;
    for (std::size_t i = 0; i < static_cast<std::size_t>(rs->FieldCount()); ++i)
      row += rs->Fields(i).Value().ToString() + "|";
    out.push_back(row);
  }
  return out;
}

const char* kQueries[] = {
    "SELECT t1.[KEY], t1.Rank FROM FREETEXTtable(STDAnagrafiche, RagioneSociale, 'Rossi Impianti') t1 "
    "ORDER BY t1.Rank DESC, t1.[KEY]",
    "SELECT TOP 5 A.IdAnagrafica, t1.Rank FROM STDAnagrafiche A INNER JOIN "
    "FREETEXTtable(STDAnagrafiche, RagioneSociale, 'bianchi mario srl') t1 On A.IdAnagrafica = [KEY] "
    "Where t1.Rank > 30 ORDER BY t1.Rank DESC, A.IdAnagrafica",
    "SELECT A.IdAnagrafica, t1.Rank, t2.Rank FROM STDAnagrafiche A "
    "INNER JOIN FREETEXTtable(STDAnagrafiche, RagioneSociale, 'Rosi') t1 On A.IdAnagrafica = [KEY] "
    "INNER JOIN FREETEXTtable(STDAnagrafiche, Citta, 'Milano') t2 On A.IdAnagrafica = t2.[KEY] "
    "ORDER BY A.IdAnagrafica",
    "SELECT t1.[KEY], t1.Rank FROM FREETEXTtable(STDAnagrafiche, Indirizzo, 'via roma') t1 ORDER BY t1.[KEY]",
};

void ExpectSame(Connection& sqlite, Connection& postgres, const std::string& when) {
  for (const char* q : kQueries) {
    std::vector<std::string> expected = Rows(sqlite, q);
    EXPECT_EQ(Rows(postgres, q), expected) << when << ": " << q;
  }
}

void AddParty(Connection& db, int id, const std::string& name, const std::string& town) {
  db.Execute("INSERT INTO STDAnagrafiche (IdAnagrafica, RagioneSociale, Citta, Indirizzo) VALUES (?, ?, ?, 'Via Roma 1')",
             {Variant(id), Variant(name), Variant(town)});
}

TEST(PgFullText, SameRowsAndRanksAsSqlite) {
  TempDir dir;
  ConnectionPtr sqlite = OpenDatabase(dir.File("demo.db"));
  InitDatabase(*sqlite, true);
  TestDatabase postgres(true);
  ASSERT_FALSE(Rows(*sqlite, kQueries[0]).empty());
  ASSERT_FALSE(Rows(*sqlite, kQueries[2]).empty());
  ExpectSame(*sqlite, *postgres.connection, "demo");

  for (Connection* db : {sqlite.get(), postgres.connection.get()}) {
    AddParty(*db, 900, "Rossi Impianti Elettrici", "Milano");
    AddParty(*db, 901, "Rosi Mario", "Milano");
  }
  ExpectSame(*sqlite, *postgres.connection, "added");

  for (Connection* db : {sqlite.get(), postgres.connection.get()}) {
    db->BeginTrans();
    AddParty(*db, 902, "Impianti Rossi & Figli", "Milano");
    db->Execute("UPDATE STDAnagrafiche SET RagioneSociale = 'Verdi Mario' WHERE IdAnagrafica = 901");
  }
  ExpectSame(*sqlite, *postgres.connection, "in a transaction");
  // Another connection does not see what is not committed.
  ConnectionPtr other = OpenDatabase(postgres.path);
  EXPECT_EQ(Rows(*other, kQueries[0]).size() + 1, Rows(*postgres.connection, kQueries[0]).size());
  for (Connection* db : {sqlite.get(), postgres.connection.get()}) db->RollbackTrans();
  ExpectSame(*sqlite, *postgres.connection, "rolled back");
}

// PostgreSQL ranks only the rows holding a term that can reach the least
// rank asked for (the copy's term index), SQLite those its index gives: on
// two thousand generated parties, names typed with variants and typos, at
// several floors, the same rows and ranks; again once rows are added that
// the copy does not hold yet.
TEST(PgFullText, NarrowedSearchesGiveWhatSqliteGives) {
  bench::GeneratorOptions options;
  options.seed = 11;
  options.duplicateShare = 0.1;
  std::vector<bench::Party> parties = bench::GenerateParties(2000, options);
  TempDir dir;
  ConnectionPtr sqlite = OpenDatabase(dir.File("generated.db"));
  InitDatabase(*sqlite, false);
  TestDatabase postgres(false);
  for (Connection* db : {sqlite.get(), postgres.connection.get()}) bench::InsertParties(*db, parties);

  auto compare = [&](const std::string& when) {
    int found = 0;
    for (std::size_t i = 0; i < parties.size(); i += 97) {
      std::string name = parties[i].ragioneSociale;
      std::string typo = name;
      if (typo.size() > 4) std::swap(typo[1], typo[2]);
      for (const std::string& text : {name, typo, name.substr(0, name.find(' '))})
        for (int floor : {0, 20, 30, 60}) {
          std::string quoted;
          for (char c : text) quoted += c == '\'' ? std::string("''") : std::string(1, c);
          std::string q = "SELECT t.[KEY], t.Rank FROM FREETEXTtable(STDAnagrafiche, RagioneSociale, '" + quoted +
                          "') t WHERE t.Rank >= " + std::to_string(floor) + " ORDER BY t.Rank DESC, t.[KEY]";
          std::vector<std::string> expected = Rows(*sqlite, q);
          found += static_cast<int>(expected.size());
          EXPECT_EQ(Rows(*postgres.connection, q), expected) << when << ": " << text << " >= " << floor;
        }
    }
    EXPECT_GT(found, 100) << when;  // the searches find something to compare
  };
  compare("generated");
  for (Connection* db : {sqlite.get(), postgres.connection.get()}) {
    AddParty(*db, 90001, parties[0].ragioneSociale + " Due", "Milano");
    AddParty(*db, 90002, parties[97].ragioneSociale, "Roma");
  }
  compare("added");
}

// A server makes the names' copy ahead on PostgreSQL too: the first search
// of a session then finds it made.
TEST(PgFullText, WarmedCopyServesTheFirstSearch) {
  TestDatabase postgres(true);
  long names = 0;
  for (const FullTextColumn& c : FullTextCatalogue()) names += c.column == "RagioneSociale" ? 1 : 0;
  EXPECT_EQ(data::fulltext::WarmFullText(postgres.path, {"RagioneSociale"}), names);
  auto shared = data::fulltext::SharedMirror::Of(postgres.path, "STDAnagrafiche", "RagioneSociale");
  ASSERT_NE(shared->Current(), nullptr);
  EXPECT_EQ(shared->Loads(), 1);
  ConnectionPtr session = OpenDatabase(postgres.path);
  EXPECT_FALSE(Rows(*session, kQueries[0]).empty());
  EXPECT_EQ(shared->Loads(), 1);
}

// A backend between requests lets go of the copy it searched once a newer
// one is shared, on PostgreSQL as on SQLite.
TEST(PgFullText, AnIdleBackendLetsGoOfAnOlderCopy) {
  TestDatabase postgres(true);
  ConnectionPtr idle = OpenDatabase(postgres.path), busy = OpenDatabase(postgres.path);
  EXPECT_FALSE(Rows(*idle, kQueries[0]).empty());
  auto shared = data::fulltext::SharedMirror::Of(postgres.path, "STDAnagrafiche", "RagioneSociale");
  std::weak_ptr<const data::fulltext::MirrorData> older = shared->Current();
  busy->ExecuteNative(
      "INSERT INTO stdanagrafiche (idanagrafica, ragionesociale) "
      "SELECT 50000 + i, 'Noto' || i || ' Srl' FROM generate_series(1, 1100) AS i");
  EXPECT_EQ(Rows(*busy, "SELECT t.[KEY] FROM FREETEXTtable(STDAnagrafiche, RagioneSociale, 'Noto9') t"),
            (std::vector<std::string>{"50009|"}));
  EXPECT_NE(shared->Current(), older.lock());
  idle->Backend().FollowNewestCopies();
  busy->Backend().FollowNewestCopies();
  EXPECT_TRUE(older.expired());
  EXPECT_EQ(Rows(*idle, "SELECT t.[KEY] FROM FREETEXTtable(STDAnagrafiche, RagioneSociale, 'Noto9') t"),
            (std::vector<std::string>{"50009|"}));
}

}  // namespace
}  // namespace corvina20::test
