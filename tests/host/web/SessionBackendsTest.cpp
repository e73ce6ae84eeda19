// The sessions of a server hold a backend only while an action of theirs
// runs or waits on the user: idle between requests, fifty sessions need no
// more backends than the requests running at once.
#include <gtest/gtest.h>

#include <memory>
#include <vector>

#include "data/BackendPool.h"
#include "support/TestSupport.h"
#include "web/UiSession.h"

namespace corvina20::test {
namespace {

TEST(SessionBackends, IdleSessionsHoldNoneAndAParkedSaveKeepsItsOwn) {
  TestDatabase db(true);
  auto pool = data::BackendPool::ForLocation(db.path);
  std::vector<std::unique_ptr<web::UiSession>> sessions;
  for (int i = 0; i < 5; ++i) {
    sessions.push_back(std::make_unique<web::UiSession>("utente" + std::to_string(i), db.path));
    EXPECT_FALSE(sessions.back()->Submit({{"open", "AnagraficaClienti"}, {"kind", "card"}}).error);
    EXPECT_FALSE(sessions.back()->Submit({{"open", "AnagraficaVettori"}, {"kind", "card"}}).error);
  }
  EXPECT_EQ(pool->Opened(), 1u);
  EXPECT_EQ(pool->Idle(), 1u);

  // A save parked on the duplicate question keeps the backend it searched
  // on; another session's action meanwhile takes a second one.
  web::UiSession& anna = *sessions[0];
  EXPECT_FALSE(anna.Submit({{"open", "AnagraficaContatti"}, {"kind", "card"}}).error);
  EXPECT_FALSE(anna.Submit({{"press", "new"}}).error);
  EXPECT_FALSE(anna.Submit({{"set", "txtRagioneSociale1"}, {"value", "Colombo Trasporti Srl"}}).error);
  ASSERT_TRUE(anna.Submit({{"press", "save"}}).dialog);
  EXPECT_FALSE(sessions[1]->Submit({{"open", "AnagraficaContatti"}, {"kind", "card"}}).error);
  EXPECT_EQ(pool->Opened(), 2u);
  EXPECT_EQ(pool->Idle(), 1u);
  web::Outcome saved = anna.Answer(kAnswerYes);
  EXPECT_FALSE(saved.error);
  EXPECT_EQ(pool->Idle(), 2u);
  // Saved on the pool's backend (the demo's party is "Colombo Trasporti
  // S.r.l."), seen through the test's own connection.
  EXPECT_EQ(db.connection
                ->OpenRecordset("SELECT COUNT(*) AS N FROM STDAnagrafiche WHERE RagioneSociale = ?",
                                {Variant("Colombo Trasporti Srl")})
                ->Fields("N")
                .Value()
                .ToLong(),
            1);
}

}  // namespace
}  // namespace corvina20::test
