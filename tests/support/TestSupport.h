// What every suite needs: a temporary folder, a fresh SQLite database with
// the real schema, and the real module loaded through IAppModule on a session
// whose dialog is scripted.
#pragma once

#include <memory>
#include <string>

#include "corvina20/Connection.h"
#include "items/ModuleLoader.h"
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

// A new database file with the schema applied (and the demo data on request).
struct TestDatabase {
  explicit TestDatabase(bool demo = false);
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

// Runs a shell command, returning its exit status and its standard output.
int RunCommand(const std::string& command, std::string& output);

}  // namespace corvina20::test
