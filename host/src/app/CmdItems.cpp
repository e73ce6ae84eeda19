// `corvina items`: the module's items by kind, as its factory serves them.
// Every catalogue item is asked of the loaded module; the listing shows the
// form it gave (with a report's type) or that it gave none.
#include <fmt/format.h>

#include <iostream>

#include "app/Commands.h"
#include "data/Database.h"
#include "items/HostItem.h"
#include "items/ItemCatalogue.h"
#include "items/ModuleLoader.h"
#include "session/HostSession.h"

namespace corvina20::app {
namespace {

std::string Describe(const HostItem& item) {
  const FormPtr& form = item.GetForm();
  if (item.AttachCount() == 0) return "(nessuna maschera)";
  if (!form) return "(elemento senza maschera)";
  std::string text = form->Name();
  for (const char* property : {"TipoRubrica", "TipoEtichetta"}) {
    Variant v = form->Property(property);
    if (!v.IsEmpty()) text += fmt::format(" {}={}", property, v.ToString());
  }
  return text;
}

}  // namespace

void AddItemsCommand(CLI::App& app) {
  auto* cmd = app.add_subcommand("items", "Elenca gli elementi del modulo per tipo");
  auto db = std::make_shared<std::string>(DefaultDatabase());
  cmd->add_option("--db", *db, "File del database");
  cmd->callback([db] {
    auto connection = OpenDatabase(*db);
    SessionPtr session = std::make_shared<HostSession>(connection, std::make_shared<ScriptedDialog>());
    LoadedModule loaded(DefaultModulePath());
    loaded.Module().Init(session);
    std::string kind;
    for (const CatalogueItem& entry : ReadItemCatalogue()) {
      if (entry.kind == "host") continue;
      if (entry.kind != kind) {
        kind = entry.kind;
        std::cout << (kind == "card" ? "Schede" : kind == "report" ? "Stampe" : "Maschere attive")
                  << ":\n";
      }
      HostItem item;
      if (entry.kind == "card") loaded.Module().CreateCardItem(entry.name, item);
      else if (entry.kind == "report") loaded.Module().CreateReportItem(entry.name, item);
      else loaded.Module().CreateActiveFormItem(entry.name, item);
      std::cout << fmt::format("  {:<28} {:<34} {}\n", entry.name, entry.caption, Describe(item));
    }
  });
}

}  // namespace corvina20::app
