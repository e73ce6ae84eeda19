// Sessions of the web host rank their duplicate searches from the one
// full-text copy the process keeps per index: the second session's first
// search, on a connection of its own, does not make another. (Uncommitted
// rows staying their writer's own: tests/host/fulltext/SharedMirrorTest.cpp.)
#include <gtest/gtest.h>

#include <string>

#include "data/Database.h"
#include "data/fulltext/FtsShared.h"
#include "support/TestSupport.h"
#include "web/UiSession.h"

namespace corvina20::test {
namespace {

// A new contact named `name` saved on the contact card: the save's duplicate
// search asks (question 386) and the dialog's text is returned, the save
// left waiting on it.
std::string SaveContactAsking(web::UiSession& ui, const std::string& name) {
  EXPECT_FALSE(ui.Submit({{"open", "AnagraficaContatti"}, {"kind", "card"}}).error);
  EXPECT_FALSE(ui.Submit({{"press", "new"}}).error);
  EXPECT_FALSE(ui.Submit({{"set", "txtRagioneSociale1"}, {"value", name}}).error);
  web::Outcome out = ui.Submit({{"press", "save"}});
  return out.dialog ? (*out.dialog)["text"].get<std::string>() : std::string();
}

TEST(SharedMirrorSessions, TwoSessionsDuplicateSearchesShareOneCopy) {
  TempDir dir;
  const std::string file = dir.File("shared.db");
  auto db = OpenDatabase(file);
  InitDatabase(*db, true);  // the demo's parties and duplicate search settings
  auto names = data::fulltext::SharedMirror::Of(file, "STDAnagrafiche", "RagioneSociale");
  web::UiSession anna("anna", file), bruno("bruno", file);
  EXPECT_NE(SaveContactAsking(anna, "Colombo Trasporti Srl").find("Colombo Trasporti"), std::string::npos);
  EXPECT_EQ(names->Loads(), 1);
  EXPECT_NE(SaveContactAsking(bruno, "Colombo Trasporti Srl").find("Colombo Trasporti"), std::string::npos);
  EXPECT_EQ(names->Loads(), 1);
}

}  // namespace
}  // namespace corvina20::test
