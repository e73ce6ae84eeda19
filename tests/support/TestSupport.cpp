// Test fixtures shared by every suite; see TestSupport.h.
#include "support/TestSupport.h"

#include <cstdio>
#include <cstdlib>
#include <algorithm>
#include <filesystem>
#include <fstream>
#include <sstream>
#include <vector>

#include <gtest/gtest.h>

#include "data/Database.h"

namespace corvina20::test {
namespace {

// Suites run straight from the build tree find data/ without ctest's help.
const bool kDataDirSet = [] {
  setenv("CORVINA_DATA_DIR", CORVINA_TEST_DATA_DIR, 0);
  setenv("CORVINA_MODULE", CORVINA_TEST_MODULE, 0);
  return true;
}();

}  // namespace

TempDir::TempDir() {
  std::string pattern = (std::filesystem::temp_directory_path() / "corvina-test-XXXXXX").string();
  if (mkdtemp(pattern.data()) == nullptr) std::abort();
  path_ = pattern;
}

TempDir::~TempDir() {
  std::error_code ignored;
  std::filesystem::remove_all(path_, ignored);
}

TestDatabase::TestDatabase(bool demo) : path(dir.File("test.db")) {
  (void)kDataDirSet;
  connection = OpenDatabase(path);
  InitDatabase(*connection, demo);
}

ModuleHarness::ModuleHarness(bool demo)
    : db(demo),
      dialog(std::make_shared<ScriptedDialog>()),
      session(std::make_shared<HostSession>(db.connection, dialog)),
      loaded(CORVINA_TEST_MODULE),
      module(loaded.Module()) {
  SessionPtr app = session;
  module.Init(app);
}

std::unique_ptr<OpenedItem> OpenItem(ModuleHarness& harness, const std::string& name,
                                     const std::string& kind) {
  auto item = OpenModuleItem(harness.module, kind, name, harness.db.connection);
  if (item->GetForm() == nullptr) throw std::runtime_error("nessuna maschera per " + name);
  return item;
}

long QueryLong(const ConnectionPtr& connection, const std::string& sql) {
  auto rs = connection->OpenRecordset(sql);
  if (rs->IsEOF() || rs->Fields(std::size_t{0}).Value().IsNull()) return 0;
  return rs->Fields(std::size_t{0}).Value().ToLong();
}

int RunCommand(const std::string& command, std::string& output) {
  output.clear();
  FILE* pipe = popen(command.c_str(), "r");
  if (pipe == nullptr) return -1;
  char buffer[4096];
  std::size_t n;
  while ((n = fread(buffer, 1, sizeof buffer, pipe)) > 0) output.append(buffer, n);
  int status = pclose(pipe);
  return WIFEXITED(status) ? WEXITSTATUS(status) : -1;
}

namespace {

std::vector<std::string> Lines(const std::string& text) {
  std::vector<std::string> lines;
  std::istringstream in(text);
  for (std::string line; std::getline(in, line);) lines.push_back(line);
  return lines;
}

}  // namespace

int RunRecordedScenario(const std::string& db, const std::string& scenario) {
  std::string out;
  int status = RunCommand(std::string(CORVINA_TEST_PROGRAM) + " script --db " + db + " " + scenario + ".jsonl", out);
  std::ifstream expectedFile(scenario + ".expected");
  std::stringstream expected;
  expected << expectedFile.rdbuf();
  std::vector<std::string> want = Lines(expected.str()), got = Lines(out);
  for (std::size_t i = 0; i < std::max(want.size(), got.size()); ++i)
    EXPECT_EQ(i < got.size() ? got[i] : "<nothing>", i < want.size() ? want[i] : "<nothing>")
        << "output line " << i + 1;
  return status;
}

}  // namespace corvina20::test
