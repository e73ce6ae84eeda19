// A script that meets a modal form: the save that shows the history-snapshot
// dialog stays suspended while the next lines act on the dialog, and prints
// its own result once the dialog has closed; actions for the card are refused
// meanwhile; a script that ends, or closes the dialog's window, leaves it
// unconfirmed and the save goes on without a snapshot.
#include <gtest/gtest.h>

#include <sstream>

#include <nlohmann/json.hpp>

#include "automation/ScriptRunner.h"
#include "support/TestSupport.h"

namespace corvina20::test {
namespace {

class ModalScript : public ::testing::Test {
 protected:
  // Runs `script` on a workspace of the demo database, customer 1 being
  // edited with history snapshots on; returns the printed lines.
  std::vector<std::string> Run(const std::string& script, const std::string& address = "Via Nuova 1") {
    Workspace workspace(db.connection, std::make_shared<QueuedDialog>(kAnswerYes));
    std::istringstream in(
        "{\"param\":\"AbilitaStoricoAnagrafiche\",\"value\":1}\n"
        "{\"open\":\"AnagraficaClienti\"}\n{\"load\":1}\n{\"press\":\"edit\"}\n"
        "{\"set\":\"txtIndirizzo\",\"value\":\"" + address + "\"}\n" +
        script);
    std::vector<std::string> lines;
    ScriptRunner runner(workspace, in, [&](const nlohmann::ordered_json& line) {
      // The opening lines and the duplicate warning are not this test's.
      if (line.contains("dialog") || line.contains("param") || line.contains("loaded")) return;
      if (line.contains("opened") && !line.contains("modal")) return;
      if (line.contains("pressed") && line["pressed"] == "edit") return;
      if (line.contains("set") && line["set"] == "txtIndirizzo") return;
      lines.push_back(line.dump());
    });
    ok = runner.Run();
    return lines;
  }
  long Snapshots() { return QueryLong(db.connection, "SELECT COUNT(*) FROM STDAnagraficheStorico WHERE IdAnagrafica = 1"); }

  TestDatabase db{true};
  bool ok = false;
};

TEST_F(ModalScript, TheSuspendedSaveResumesWhenTheDialogCloses) {
  long before = Snapshots();
  auto lines = Run(
      "{\"press\":\"save\"}\n"
      "{\"set\":\"dteDataStoricizzazione\",\"value\":\"15/03/2026\",\"formId\":2}\n"
      "{\"press\":\"cancel\",\"formId\":1}\n"
      "{\"state\":true,\"formId\":1}\n"
      "{\"click\":\"cmdConferma\"}\n"
      "{\"query\":\"SELECT IdRiga, DataAnagrafica FROM STDAnagraficheStorico WHERE IdAnagrafica = 1 AND DataAnagrafica = '2026-03-15'\"}\n");
  ASSERT_EQ(lines.size(), 8u) << ::testing::PrintToString(lines);
  EXPECT_EQ(lines[0], R"({"opened":"SalvaStoricoAnagrafiche","form":"SalvaStoricoAnagrafiche","formId":2,"modal":true})");
  EXPECT_EQ(lines[1], R"({"set":"dteDataStoricizzazione","value":"2026-03-15"})");
  // The card is held by the dialog: its actions are refused, reading is not.
  EXPECT_NE(lines[2].find("maschera modale SalvaStoricoAnagrafiche (formId 2)"), std::string::npos) << lines[2];
  EXPECT_NE(lines[2].find("\"line\":8"), std::string::npos) << lines[2];
  EXPECT_NE(lines[3].find(R"("state":{"formId":1,)"), std::string::npos);
  EXPECT_EQ(lines[4], R"({"clicked":"cmdConferma","done":true})");
  EXPECT_EQ(lines[5], R"({"closed":2,"modal":true,"opener":1})");
  EXPECT_EQ(lines[6], R"({"pressed":"save","done":true,"mode":0,"key":1})");
  EXPECT_EQ(lines[7], R"({"rows":[{"IdRiga":)" + std::to_string(before + 1) + R"(,"DataAnagrafica":"2026-03-15"}]})")
      << "numbered after the demo's snapshots of the party";
  EXPECT_FALSE(ok);  // the refused line counts as a failure
}

TEST_F(ModalScript, ADialogLeftOpenOrClosedByItsWindowIsUnconfirmed) {
  long before = Snapshots();
  // Closed by its window: the save goes on without a snapshot.
  auto closed = Run("{\"press\":\"save\"}\n{\"close\":true}\n{\"state\":true}\n");
  ASSERT_EQ(closed.size(), 5u) << ::testing::PrintToString(closed);
  EXPECT_EQ(closed[1], R"({"closed":2})");
  EXPECT_EQ(closed[2], R"({"closed":2,"modal":true,"opener":1})");
  EXPECT_EQ(closed[3], R"({"pressed":"save","done":true,"mode":0,"key":1})");
  EXPECT_NE(closed[4].find(R"("state":{"formId":1,)"), std::string::npos) << "actions go to the card again";
  EXPECT_TRUE(ok);

  // The script ends with the dialog open: the same.
  auto ended = Run("{\"press\":\"save\"}\n", "Via Seconda 2");
  ASSERT_EQ(ended.size(), 3u) << ::testing::PrintToString(ended);
  EXPECT_EQ(ended[1], R"({"closed":2,"modal":true,"opener":1})");
  EXPECT_EQ(ended[2], R"({"pressed":"save","done":true,"mode":0,"key":1})");
  EXPECT_EQ(Snapshots(), before);
}

}  // namespace
}  // namespace corvina20::test
