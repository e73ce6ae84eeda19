// The minor cards' scenarios run as a user's actions through `corvina script`
// on a fresh database: every dialog, message number, result and row written
// must come out exactly as recorded in <scenario>.expected (read it side by
// side with <scenario>.jsonl). Each scenario also holds actions that fail on
// purpose (a wrong button, a malformed line, a grid row that does not exist):
// they are reported with their line and the run ends with a failure status.
#include <gtest/gtest.h>

#include "support/TestSupport.h"

namespace corvina20::test {
namespace {

class ScriptScenario : public ::testing::TestWithParam<std::string> {};

TEST_P(ScriptScenario, ProducesTheRecordedDialogsAndRows) {
  TempDir dir;
  EXPECT_EQ(RunRecordedScenario(dir.File("fresh.db"), std::string(SCENARIOS_DIR) + "/" + GetParam()), 1);
}

// carrier: warnings 386/404, blocking 402, foreign VAT, take-over, refused deletes.
// registries: activity-code grid edits; loader numbering and refused delete.
INSTANTIATE_TEST_SUITE_P(MinorCards, ScriptScenario, ::testing::Values("carrier", "registries"));

}  // namespace
}  // namespace corvina20::test
