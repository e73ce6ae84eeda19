// The customer card driven as a user drives it, through `corvina script` on
// a new demo database: a customer with a bank and an address saved after the
// account question and the warnings, duplicates refused, a supplier taken
// over with its bank, a history snapshot dated in its dialog, a blocking
// fiscal code, the mail-client item and a refused delete. Every dialog,
// result and row written must come out exactly as recorded in
// customer.expected (read it side by side with customer.jsonl).
#include <gtest/gtest.h>

#include "support/TestSupport.h"

namespace corvina20::test {
namespace {

TEST(CustomerScenario, ProducesTheRecordedDialogsAndRowsOnTheDemoDatabase) {
  TempDir dir;
  std::string out;
  ASSERT_EQ(RunCommand(std::string(CORVINA_TEST_PROGRAM) + " init --demo " + dir.File("demo.db"), out), 0) << out;
  EXPECT_EQ(RunRecordedScenario(dir.File("demo.db"), std::string(SCENARIOS_DIR) + "/customer"), 0);
}

}  // namespace
}  // namespace corvina20::test
