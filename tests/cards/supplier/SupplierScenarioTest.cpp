// The supplier card driven as a user drives it, through `corvina script` on
// a new demo database: a supplier whose bank row comes from the bank search,
// saved after the account question (No, then Yes) and the warnings of a
// missing currency and a wrong CIN; a foreign supplier whose VAT number is
// not Italian; a customer taken over with its banks, whose references need
// supplier documents to send; a blocking fiscal code and a refused delete.
// Every dialog, result and row written must come out exactly as recorded in
// supplier.expected (read it side by side with supplier.jsonl).
#include <gtest/gtest.h>

#include "support/TestSupport.h"

namespace corvina20::test {
namespace {

TEST(SupplierScenario, ProducesTheRecordedDialogsAndRowsOnTheDemoDatabase) {
  TempDir dir;
  std::string out;
  ASSERT_EQ(RunCommand(std::string(CORVINA_TEST_PROGRAM) + " init --demo " + dir.File("demo.db"), out), 0) << out;
  EXPECT_EQ(RunRecordedScenario(dir.File("demo.db"), std::string(SCENARIOS_DIR) + "/supplier"), 0);
}

}  // namespace
}  // namespace corvina20::test
