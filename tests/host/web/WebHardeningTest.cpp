// Faults of the web host under hostile or clumsy use: a session closed by
// several requests at once (a double click on the logout), bodies the API
// must refuse before they do harm. Each case runs against a real database
// and, where the HTTP path matters, a real server on the loopback address.
#include <gtest/gtest.h>
#include <httplib.h>

#include <nlohmann/json.hpp>
#include <thread>
#include <vector>

#include "data/Database.h"
#include "support/TestSupport.h"
#include "web/UiSession.h"
#include "web/Users.h"
#include "web/WebHost.h"

namespace corvina20::test {
namespace {

using json = nlohmann::ordered_json;

TEST(UiSessionClose, SeveralCallersAtOnceAllReturnAndTheParkedSaveWritesNothing) {
  TempDir dir;
  auto db = OpenDatabase(dir.File("close.db"));
  InitDatabase(*db, false);
  for (int round = 0; round < 3; ++round) {
    web::UiSession ui("anna", dir.File("close.db"));
    ASSERT_FALSE(ui.Submit({{"open", "AnagraficaVettori"}, {"kind", "card"}}).error);
    ui.Submit({{"press", "new"}});
    ui.Submit({{"set", "txtRagioneSociale1"}, {"value", "Mai Salvato"}});
    ASSERT_TRUE(ui.Submit({{"press", "save"}}).dialog.has_value());  // parked on the warning
    // Eight logouts of the same session at the same moment: each returns,
    // none throws, and the destructor closes once more without harm.
    std::vector<std::thread> closers;
    for (int i = 0; i < 8; ++i) closers.emplace_back([&ui] { ui.Close(); });
    for (auto& t : closers) t.join();
    EXPECT_TRUE(ui.Submit({{"state", true}}).error.has_value());  // closed
  }
  EXPECT_EQ(QueryLong(db, "SELECT COUNT(*) FROM STDAnagrafiche WHERE RagioneSociale = 'Mai Salvato'"), 0);
}

}  // namespace
}  // namespace corvina20::test
