// The sub-commands of the `corvina` program, each registered on the command
// line parser by its own function.
#pragma once

#include <CLI/CLI.hpp>

namespace corvina20::app {

// The database a command works on when --db is not given: $CORVINA_DB, else
// var/demo.db.
std::string DefaultDatabase();

void AddCopyCommand(CLI::App& app);
void AddInitCommand(CLI::App& app);
void AddItemsCommand(CLI::App& app);
void AddParamsCommand(CLI::App& app);
void AddScriptCommand(CLI::App& app);
void AddServeCommand(CLI::App& app);
void AddUsersCommand(CLI::App& app);

}  // namespace corvina20::app
