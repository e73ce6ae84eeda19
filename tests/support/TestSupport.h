// What every suite needs: a temporary folder, a fresh database with the real
// schema, and the real module loaded through IAppModule on a session whose
// dialog is scripted. The database is an SQLite file, or a database of the
// test cluster when CORVINA_TEST_BACKEND=postgres:<folder>, the folder of the
// cluster that scripts/pg-test-cluster started: the same suites then run on
// PostgreSQL.
#pragma once

#include <memory>
#include <stdexcept>
#include <string>

#include "corvina20/Connection.h"
#include "items/ModuleLoader.h"
#include "items/OpenedItem.h"
#include "session/Dialog.h"
#include "session/HostSession.h"

namespace corvina20::test {

// A folder under the system temp dir, removed with everything in it.
class TempDir {
 public:
  TempDir();
  ~TempDir();
  TempDir(const TempDir&) = delete;
  TempDir& operator=(const TempDir&) = delete;
  const std::string& Path() const { return path_; }
  std::string File(const std::string& name) const { return path_ + "/" + name; }

 private:
  std::string path_;
};

// True when the suites run on PostgreSQL (CORVINA_TEST_BACKEND=postgres:…).
bool OnPostgres();

// A new database with the schema applied (and the demo data on request):
// an SQLite file in `dir`, or on PostgreSQL a database of its own, copied
// from a template made once per cluster and dropped at the end. `path` is
// what `--db` takes for it.
struct TestDatabase {
  explicit TestDatabase(bool demo = false);
  ~TestDatabase();
  TestDatabase(const TestDatabase&) = delete;
  TestDatabase& operator=(const TestDatabase&) = delete;
  TempDir dir;
  std::string path;
  ConnectionPtr connection;
};

// The module loaded from this build, initialised with a session on a fresh
// database and a scripted dialog.
struct ModuleHarness {
  explicit ModuleHarness(bool demo = false);
  TestDatabase db;
  std::shared_ptr<ScriptedDialog> dialog;
  std::shared_ptr<HostSession> session;
  LoadedModule loaded;
  IAppModule& module;
};

// A module item opened on the harness's session exactly as the host opens it
// (the card started, the form loaded). Fails the test when no form comes.
std::unique_ptr<OpenedItem> OpenItem(ModuleHarness& harness, const std::string& name,
                                     const std::string& kind = "card");

// The control `name` of the item's form as a `T`; fails the test when absent.
template <class T>
T& ControlOf(const OpenedItem& item, const std::string& name) {
  Control* c = item.GetForm() ? item.GetForm()->FindControl(name) : nullptr;
  T* typed = dynamic_cast<T*>(c);
  if (typed == nullptr) throw std::runtime_error("controllo mancante o di altro tipo: " + name);
  return *typed;
}

// The first column of the first row of a query, as a long (0 when no row).
long QueryLong(const ConnectionPtr& connection, const std::string& sql);

// Runs a shell command, returning its exit status and its standard output.
int RunCommand(const std::string& command, std::string& output);

// Runs `corvina script --db <db> <scenario>.jsonl` and checks its output line
// by line against <scenario>.expected (each differing line is a failure
// naming its number). Returns the program's exit status.
int RunRecordedScenario(const std::string& db, const std::string& scenario);

}  // namespace corvina20::test
