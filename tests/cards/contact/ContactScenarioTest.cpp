// The contact card driven as a user drives it, through `corvina script` on a
// new demo database: a contact shown with its activities and duplicates, a
// host item that is not installed, a duplicate opened on its own card, the
// mail-client warnings, the conversion into a customer with its rows and
// account, a VAT number with a refused character, a new contact that
// duplicates a customer asked about before its save, and the converted party
// opened on the customer card. Every dialog, result and row written must come
// out exactly as recorded in contact.expected (read it beside contact.jsonl).
#include <gtest/gtest.h>

#include "support/TestSupport.h"

namespace corvina20::test {
namespace {

TEST(ContactScenario, ProducesTheRecordedDialogsAndRowsOnTheDemoDatabase) {
  TempDir dir;
  std::string out;
  ASSERT_EQ(RunCommand(std::string(CORVINA_TEST_PROGRAM) + " init --demo " + dir.File("demo.db"), out), 0) << out;
  // The refused character makes one line fail: the exit status says so.
  EXPECT_EQ(RunRecordedScenario(dir.File("demo.db"), std::string(SCENARIOS_DIR) + "/contact"), 1);
}

}  // namespace
}  // namespace corvina20::test
