// The customer card driven as a user drives it, through `corvina script` on
// a new demo database: a customer with a bank and an address saved after the
// account question and the warnings, duplicates refused, a supplier taken
// over with its bank, a history snapshot dated in its dialog, a blocking
// fiscal code, the mail-client item and a refused delete. Every dialog,
// result and row written must come out exactly as recorded in
// customer.expected (read it side by side with customer.jsonl).
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

TEST(CustomerScenario, ProducesTheRecordedDialogsAndRowsOnTheDemoDatabase) {
  const std::string scenario = std::string(SCENARIOS_DIR) + "/customer";
  TempDir dir;
  const std::string program = CORVINA_TEST_PROGRAM;
  std::string out;
  ASSERT_EQ(RunCommand(program + " init --demo " + dir.File("demo.db"), out), 0) << out;
  EXPECT_EQ(RunCommand(program + " script --db " + dir.File("demo.db") + " " + scenario + ".jsonl", out), 0);
  std::ifstream expectedFile(scenario + ".expected");
  std::stringstream expected;
  expected << expectedFile.rdbuf();
  std::vector<std::string> want = Lines(expected.str()), got = Lines(out);
  for (std::size_t i = 0; i < std::max(want.size(), got.size()); ++i)
    EXPECT_EQ(i < got.size() ? got[i] : "<nothing>", i < want.size() ? want[i] : "<nothing>")
        << "output line " << i + 1;
}

}  // namespace
}  // namespace corvina20::test
