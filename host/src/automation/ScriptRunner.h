// The loop behind `corvina script`: reads user actions, one JSON object a
// line, performs each on a workspace and prints one JSON line per result and
// one per dialog or error on the way. It is also the workspace's modal loop:
// while a modal form waits, the next lines are its actions, and the line that
// showed it prints its result once the form has closed. Not for: opening the
// database or choosing the input (the command does that).
#pragma once

#include <istream>

#include "automation/Workspace.h"

namespace corvina20 {

class ScriptRunner {
 public:
  // Installs itself as `workspace`'s modal loop; `print` gets every line.
  ScriptRunner(Workspace& workspace, std::istream& in, Emit print);
  ~ScriptRunner();
  ScriptRunner(const ScriptRunner&) = delete;
  ScriptRunner& operator=(const ScriptRunner&) = delete;

  // Runs every line to the end of the input. A malformed line or an action
  // that cannot be carried out prints its error with "line":N and the run
  // goes on. Returns false when any line failed.
  bool Run();

 private:
  // Reads and performs the next non-blank line; false at the end of input.
  bool Step();

  Workspace& workspace_;
  std::istream& in_;
  Emit print_;
  int number_ = 0;  // the line read last
  bool failed_ = false;
};

}  // namespace corvina20
