// corvina: the reference host's command line. Sub-commands create databases,
// list the module's items and read or write host parameters; every failure
// ends with a message on standard error and a non-zero exit status.
#include <iostream>

#include "app/Commands.h"
#include "corvina20/Error.h"

int main(int argc, char** argv) {
  CLI::App app{"corvina: host of the Vantor20 master-data module"};
  app.require_subcommand(1);
  corvina20::app::AddCopyCommand(app);
  corvina20::app::AddInitCommand(app);
  corvina20::app::AddItemsCommand(app);
  corvina20::app::AddParamsCommand(app);
  corvina20::app::AddScriptCommand(app);
  corvina20::app::AddServeCommand(app);
  corvina20::app::AddUsersCommand(app);
  try {
    app.parse(argc, argv);
  } catch (const CLI::ParseError& e) {
    return app.exit(e);
  } catch (const corvina20::Error& e) {
    std::cerr << "corvina: errore " << e.Number() << ": " << e.Description() << "\n";
    return 1;
  } catch (const std::exception& e) {
    std::cerr << "corvina: " << e.what() << "\n";
    return 1;
  }
  return 0;
}
