// The minor cards' scenarios run as a user's actions through `corvina script`
// on a fresh database: every dialog, message number, result and row written
// must come out exactly as recorded in <scenario>.expected (read it side by
// side with <scenario>.jsonl). Each scenario also holds actions that fail on
// purpose (a wrong button, a malformed line, a grid row that does not exist):
// they are reported with their line and the run ends with a failure status.
#include <gtest/gtest.h>

#include <fstream>
#include <sstream>

#include "support/TestSupport.h"

namespace corvina20::test {
namespace {

std::vector<std::string> Lines(const std::string& text) {
  std::vector<std::string> lines;
  std::istringstream in(text);
  for (std::string line; std::getline(in, line);) lines.push_back(line);
  return lines;
}

class ScriptScenario : public ::testing::TestWithParam<std::string> {};

TEST_P(ScriptScenario, ProducesTheRecordedDialogsAndRows) {
  const std::string scenario = std::string(SCENARIOS_DIR) + "/" + GetParam();
  TempDir dir;
  std::string out;
  int status = RunCommand(std::string(CORVINA_TEST_PROGRAM) + " script --db " + dir.File("fresh.db") +
                              " " + scenario + ".jsonl",
                          out);
  EXPECT_EQ(status, 1);
  std::ifstream expectedFile(scenario + ".expected");
  std::stringstream expected;
  expected << expectedFile.rdbuf();
  std::vector<std::string> want = Lines(expected.str()), got = Lines(out);
  for (std::size_t i = 0; i < std::max(want.size(), got.size()); ++i)
    EXPECT_EQ(i < got.size() ? got[i] : "<nothing>", i < want.size() ? want[i] : "<nothing>")
        << "output line " << i + 1;
}

// carrier: warnings 386/404, blocking 402, foreign VAT, take-over, refused deletes.
// registries: activity-code grid edits; loader numbering and refused delete.
INSTANTIATE_TEST_SUITE_P(MinorCards, ScriptScenario, ::testing::Values("carrier", "registries"));

}  // namespace
}  // namespace corvina20::test
