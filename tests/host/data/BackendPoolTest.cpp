// Pooled connections (a server's sessions) take turns on a few backends:
// between requests a session holds none, a transaction keeps its own until
// it ends, and a backend goes back clean whatever the session left.
#include <gtest/gtest.h>

#include "corvina20/Connection.h"
#include "data/BackendPool.h"
#include "data/Database.h"
#include "support/TestSupport.h"

namespace corvina20::test {
namespace {

void AddParty(Connection& c, int id, const std::string& name) {
  c.Execute("INSERT INTO STDAnagrafiche (IdAnagrafica, RagioneSociale) VALUES (?, ?)",
            {Variant(id), Variant(name)});
}

long Parties(Connection& c, const std::string& name) {
  return c.OpenRecordset("SELECT COUNT(*) AS N FROM STDAnagrafiche WHERE RagioneSociale = ?", {Variant(name)})
      ->Fields("N")
      .Value()
      .ToLong();
}

TEST(BackendPool, SessionsTakeTurnsAndTransactionsKeepTheirBackend) {
  TestDatabase db;
  auto pool = data::BackendPool::ForLocation(db.path);
  const std::size_t opened = pool->Opened();
  ConnectionPtr anna = OpenPooledDatabase(db.path), bruno = OpenPooledDatabase(db.path);
  EXPECT_EQ(data::BackendPool::ForLocation(db.path), pool);
  EXPECT_EQ(anna->BackendName(), db.connection->BackendName());

  // One after the other, both on one backend, each seeing the other's commits.
  AddParty(*anna, 90001, "Pool Uno");
  EXPECT_TRUE(anna->ReleaseBackend());
  EXPECT_EQ(Parties(*bruno, "Pool Uno"), 1);
  EXPECT_TRUE(bruno->ReleaseBackend());
  EXPECT_EQ(pool->Opened(), opened);

  // A transaction keeps its backend between requests, its rows its own;
  // meanwhile the other session works on a second backend.
  anna->BeginTrans();
  AddParty(*anna, 90002, "Pool Due");
  EXPECT_FALSE(anna->ReleaseBackend());
  EXPECT_EQ(Parties(*bruno, "Pool Due"), 0);
  EXPECT_TRUE(bruno->ReleaseBackend());
  EXPECT_EQ(pool->Opened(), opened + 1);
  EXPECT_EQ(Parties(*anna, "Pool Due"), 1);
  anna->CommitTrans();
  EXPECT_TRUE(anna->ReleaseBackend());
  EXPECT_EQ(Parties(*bruno, "Pool Due"), 1);
  EXPECT_TRUE(bruno->ReleaseBackend());

  // A session that ends inside a transaction: rolled back, and the backend it
  // gives back starts transactions again for whoever takes it.
  {
    ConnectionPtr carla = OpenPooledDatabase(db.path);
    carla->BeginTrans();
    AddParty(*carla, 90003, "Pool Tre");
  }
  EXPECT_EQ(Parties(*bruno, "Pool Tre"), 0);
  EXPECT_TRUE(bruno->ReleaseBackend());
  std::vector<ConnectionPtr> sessions;
  for (std::size_t i = pool->Idle(); i > 0; --i) {
    sessions.push_back(OpenPooledDatabase(db.path));
    sessions.back()->BeginTrans();
    sessions.back()->RollbackTrans();
    sessions.back()->Backend();  // keeps it, so the next takes another
  }
  EXPECT_EQ(pool->Idle(), 0u);
  sessions.clear();

  // Ten at once: ten backends; given back, a few stay open for the next.
  for (int i = 0; i < 10; ++i) {
    sessions.push_back(OpenPooledDatabase(db.path));
    sessions.back()->Backend();
  }
  EXPECT_EQ(pool->Idle(), 0u);
  for (auto& s : sessions) EXPECT_TRUE(s->ReleaseBackend());
  EXPECT_EQ(pool->Idle(), 8u);
  EXPECT_FALSE(sessions[0]->ReleaseBackend());  // holds none
  EXPECT_FALSE(db.connection->ReleaseBackend());  // its own backend
}

}  // namespace
}  // namespace corvina20::test
