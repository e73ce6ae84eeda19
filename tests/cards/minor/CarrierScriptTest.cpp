// The carrier scenarios run as a user's actions through `corvina script` on a
// fresh database: every dialog, message number, result and row written must
// come out exactly as recorded in carrier.expected (read it side by side with
// carrier.jsonl). The last two lines are a wrong button and a malformed line:
// both are reported and the run ends with a failure status.
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

TEST(CarrierScript, ScenariosProduceTheRecordedDialogsAndRows) {
  TempDir dir;
  std::string out;
  int status = RunCommand(std::string(CORVINA_TEST_PROGRAM) + " script --db " + dir.File("fresh.db") +
                              " " + CARRIER_SCRIPTS_DIR "/carrier.jsonl",
                          out);
  EXPECT_EQ(status, 1);
  std::ifstream expectedFile(CARRIER_SCRIPTS_DIR "/carrier.expected");
  std::stringstream expected;
  expected << expectedFile.rdbuf();
  std::vector<std::string> want = Lines(expected.str()), got = Lines(out);
  for (std::size_t i = 0; i < std::max(want.size(), got.size()); ++i)
    EXPECT_EQ(i < got.size() ? got[i] : "<nothing>", i < want.size() ? want[i] : "<nothing>")
        << "output line " << i + 1;
}

}  // namespace
}  // namespace corvina20::test
