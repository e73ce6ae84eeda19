// The script runner; see ScriptRunner.h.
#include "automation/ScriptRunner.h"

#include <string>

#include <nlohmann/json.hpp>

#include "core/Text.h"
#include "corvina20/Error.h"

namespace corvina20 {

using json = nlohmann::ordered_json;

ScriptRunner::ScriptRunner(Workspace& workspace, std::istream& in, Emit print)
    : workspace_(workspace), in_(in), print_(std::move(print)) {
  // A modal form takes the next lines; the action that showed it is still
  // on the stack below and prints its own result when the form has closed.
  workspace_.SetModalLoop([this](const json&) { return Step(); });
}

ScriptRunner::~ScriptRunner() { workspace_.SetModalLoop({}); }

bool ScriptRunner::Run() {
  while (Step()) {
  }
  return !failed_;
}

bool ScriptRunner::Step() {
  std::string line;
  do {
    if (!std::getline(in_, line)) return false;
    ++number_;
  } while (text::Trim(line).empty());
  const int number = number_;
  json action;
  try {
    action = json::parse(line);
  } catch (const nlohmann::json::parse_error& e) {
    failed_ = true;
    print_({{"error", {{"number", nullptr}, {"source", "script"},
                       {"description", "riga " + std::to_string(number) + ": JSON non valido: " + e.what()}}},
            {"line", number}});
    return true;
  }
  try {
    print_(workspace_.Perform(action, print_));
  } catch (const Error& e) {
    failed_ = true;
    json error = ErrorLine(e);
    error["line"] = number;
    print_(error);
  } catch (const std::exception& e) {
    failed_ = true;
    print_({{"error", {{"number", nullptr}, {"source", "script"},
                       {"description", "riga " + std::to_string(number) + ": " + e.what()}}},
            {"line", number}});
  }
  return true;
}

}  // namespace corvina20
