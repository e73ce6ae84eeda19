// The contact card driven as a user drives it, through `corvina script` on a
// new demo database: a contact shown with its activities and duplicates, a
// host item that is not installed, a duplicate opened on its own card, the
// mail-client warnings, the conversion into a customer with its rows and
// account, a VAT number with a refused character, a new contact that
// duplicates a customer asked about before its save, and the converted party
// opened on the customer card. Every dialog, result and row written must come
// out exactly as recorded in contact.expected (read it beside contact.jsonl).
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

TEST(ContactScenario, ProducesTheRecordedDialogsAndRowsOnTheDemoDatabase) {
  const std::string scenario = std::string(SCENARIOS_DIR) + "/contact";
  TempDir dir;
  const std::string program = CORVINA_TEST_PROGRAM;
  std::string out;
  ASSERT_EQ(RunCommand(program + " init --demo " + dir.File("demo.db"), out), 0) << out;
  // The refused character makes one line fail: the exit status says so.
  EXPECT_EQ(RunCommand(program + " script --db " + dir.File("demo.db") + " " + scenario + ".jsonl", out), 1);
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
