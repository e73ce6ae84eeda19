// The agent card driven as a user drives it, through `corvina script` on a
// new demo database: the mandates and shares of a demo agent edited across
// two mandates, a share total refused with 780, a gap
// refused with 1449, a new agent with a mandate saved, a supplier taken over
// and a delete refused for an agent named on sales documents. Every dialog,
// result and row written must come out exactly as recorded in agent.expected
// (read it side by side with agent.jsonl).
#include <gtest/gtest.h>

#include "support/TestSupport.h"

namespace corvina20::test {
namespace {

TEST(AgentScenario, ProducesTheRecordedDialogsAndRowsOnTheDemoDatabase) {
  TempDir dir;
  std::string out;
  ASSERT_EQ(RunCommand(std::string(CORVINA_TEST_PROGRAM) + " init --demo " + dir.File("demo.db"), out), 0) << out;
  EXPECT_EQ(RunRecordedScenario(dir.File("demo.db"), std::string(SCENARIOS_DIR) + "/agent"), 0);
}

}  // namespace
}  // namespace corvina20::test
