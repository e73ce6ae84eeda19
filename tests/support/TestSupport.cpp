// Test fixtures shared by every suite; see TestSupport.h.
#include "support/TestSupport.h"

#include <cstdio>
#include <cstdlib>
#include <unistd.h>
#include <algorithm>
#include <filesystem>
#include <fstream>
#include <sstream>
#include <vector>

#include <gtest/gtest.h>

#include "corvina20/Error.h"
#include "data/Backend.h"
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

namespace {

constexpr std::string_view kPostgres = "postgres:";

std::string BackendSetting() {
  const char* backend = std::getenv("CORVINA_TEST_BACKEND");
  return backend == nullptr ? "" : backend;
}

}  // namespace

bool OnPostgres() { return BackendSetting().rfind(kPostgres, 0) == 0; }

namespace {

// The test cluster's address without a database name, from the port file
// that scripts/pg-test-cluster leaves in its folder.
std::string ClusterUri() {
  const std::string dir = BackendSetting().substr(kPostgres.size());
  std::ifstream in(dir + "/port");
  std::string port;
  if (!(in >> port)) throw std::runtime_error("cluster di prova non avviato in " + dir);
  return "postgresql://corvina@127.0.0.1:" + port + "/";
}

// The template with the schema (and the demo data) applied, made once per
// cluster: the first test process to need it makes it under an advisory
// lock, the others wait for it and copy it.
std::string TemplateDatabase(Connection& admin, bool demo) {
  const std::string name = demo ? "corvina_template_demo" : "corvina_template";
  admin.ExecuteNative("SELECT pg_advisory_lock(7201)");
  try {
    auto rs = admin.Backend().Run("SELECT count(*) FROM pg_database WHERE datname = ?", {Variant(name)});
    if (rs.rows[0][0].ToLong() == 0) {
      admin.ExecuteNative("CREATE DATABASE " + name + "_new");
      {
        ConnectionPtr fresh = OpenDatabase(ClusterUri() + name + "_new");
        InitDatabase(*fresh, demo);
      }
      admin.ExecuteNative("ALTER DATABASE " + name + "_new RENAME TO " + name);
    }
  } catch (...) {
    admin.ExecuteNative("SELECT pg_advisory_unlock(7201)");
    throw;
  }
  admin.ExecuteNative("SELECT pg_advisory_unlock(7201)");
  return name;
}

std::string NewPostgresDatabase(bool demo) {
  static int counter = 0;
  ConnectionPtr admin = OpenDatabase(ClusterUri() + "postgres");
  const std::string name = "corvina_test_" + std::to_string(getpid()) + "_" + std::to_string(++counter);
  admin->ExecuteNative("CREATE DATABASE " + name + " TEMPLATE " + TemplateDatabase(*admin, demo));
  return ClusterUri() + name;
}

}  // namespace

TestDatabase::TestDatabase(bool demo) : path(OnPostgres() ? NewPostgresDatabase(demo) : dir.File("test.db")) {
  (void)kDataDirSet;
  connection = OpenDatabase(path);
  // The template holds the schema already; this also runs what is new.
  InitDatabase(*connection, demo);
}

TestDatabase::~TestDatabase() {
  if (!OnPostgres()) return;
  connection.reset();
  try {
    ConnectionPtr admin = OpenDatabase(ClusterUri() + "postgres");
    admin->ExecuteNative("DROP DATABASE IF EXISTS " + path.substr(path.rfind('/') + 1) + " WITH (FORCE)");
  } catch (const std::exception&) {
    // The cluster is thrown away with all its databases at the end.
  }
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
