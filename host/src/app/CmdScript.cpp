// `corvina script`: runs a file of UI actions, one JSON object a line, through
// a workspace on the database, printing one JSON line per result and one per
// dialog or error on the way (automation/ScriptRunner). A malformed line is
// reported with its number and the run goes on; the exit status is 1 when any
// line failed.
#include <fstream>
#include <iostream>

#include <nlohmann/json.hpp>

#include "app/Commands.h"
#include "automation/ScriptRunner.h"
#include "automation/Workspace.h"
#include "corvina20/Error.h"
#include "data/Database.h"

namespace corvina20::app {
namespace {

int RunScript(std::istream& in, const std::string& db, int defaultAnswer) {
  auto connection = OpenDatabase(db);
  InitDatabase(*connection, false);
  auto dialog = std::make_shared<QueuedDialog>(defaultAnswer);
  Workspace workspace(connection, dialog);
  ScriptRunner runner(workspace, in, [](const nlohmann::ordered_json& line) {
    std::cout << line.dump() << "\n" << std::flush;
  });
  return runner.Run() ? 0 : 1;
}

}  // namespace

void AddScriptCommand(CLI::App& app) {
  auto* cmd = app.add_subcommand("script", "Esegue un file di azioni (JSON Lines) sulle maschere del modulo");
  auto db = std::make_shared<std::string>(DefaultDatabase());
  auto file = std::make_shared<std::string>();
  auto answer = std::make_shared<int>(6);
  cmd->add_option("--db", *db, "File del database (creato se manca)");
  cmd->add_option("--default-answer", *answer, "Risposta ai messaggi senza risposta in coda (6 = Sì)");
  cmd->add_option("FILE", *file, "File di azioni, - per lo standard input")->required();
  cmd->callback([db, file, answer] {
    int status;
    if (*file == "-") {
      status = RunScript(std::cin, *db, *answer);
    } else {
      std::ifstream in(*file);
      if (!in) throw Error(kErrHost, "corvina", "File di azioni non trovato: " + *file);
      status = RunScript(in, *db, *answer);
    }
    if (status != 0) std::exit(status);
  });
}

}  // namespace corvina20::app
