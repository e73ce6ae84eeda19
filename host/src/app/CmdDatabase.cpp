// `corvina init` and `corvina params`: creating databases and reading or
// writing host parameters.
#include <cstdlib>
#include <filesystem>
#include <iostream>

#include "app/Commands.h"
#include "corvina20/HostParameters.h"
#include "data/Database.h"
#include "session/HostSession.h"

namespace corvina20::app {

std::string DefaultDatabase() {
  if (const char* db = std::getenv("CORVINA_DB"); db != nullptr && *db != '\0') return db;
  return "var/demo.db";
}

void AddInitCommand(CLI::App& app) {
  auto* cmd = app.add_subcommand("init", "Crea un database o lo aggiorna all'ultimo schema");
  auto demo = std::make_shared<bool>(false);
  auto path = std::make_shared<std::string>();
  cmd->add_flag("--demo", *demo, "Carica i dati dimostrativi in un database senza anagrafiche");
  cmd->add_option("DB", *path, "File del database")->required();
  cmd->callback([demo, path] {
    std::filesystem::path p(*path);
    // A server's address names no folder to make.
    if (p.has_parent_path() && path->find("://") == std::string::npos)
      std::filesystem::create_directories(p.parent_path());
    auto connection = OpenDatabase(*path);
    int applied = InitDatabase(*connection, *demo);
    std::cout << *path << ": " << applied << " file di schema applicati"
              << (*demo ? ", dati dimostrativi presenti" : "") << "\n";
  });
}

void AddParamsCommand(CLI::App& app) {
  auto* cmd = app.add_subcommand("params", "Legge o scrive i parametri dell'host");
  cmd->require_subcommand(1);
  auto db = std::make_shared<std::string>(DefaultDatabase());
  auto key = std::make_shared<std::string>();
  auto value = std::make_shared<std::string>();

  auto* get = cmd->add_subcommand("get", "Mostra il valore di un parametro");
  get->add_option("--db", *db, "File del database");
  get->add_option("KEY", *key, "Chiave del parametro")->required();
  get->callback([db, key] {
    auto connection = OpenDatabase(*db);
    Variant v = HostParameters(connection, Today()).ReadParameter(*key);
    if (v.IsNull()) {
      std::cerr << "corvina: parametro " << *key << " non impostato\n";
      std::exit(3);
    }
    std::cout << v.ToString() << "\n";
  });

  auto* set = cmd->add_subcommand("set", "Imposta il valore di un parametro");
  set->add_option("--db", *db, "File del database");
  set->add_option("KEY", *key, "Chiave del parametro")->required();
  set->add_option("VALUE", *value, "Valore")->required();
  set->callback([db, key, value] {
    auto connection = OpenDatabase(*db);
    HostParameters(connection, Today()).WriteParameter(*key, Variant(*value));
    std::cout << *key << " = " << *value << "\n";
  });
}

}  // namespace corvina20::app
