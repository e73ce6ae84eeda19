// Opening items; see OpenedItem.h.
#include "items/OpenedItem.h"

#include "corvina20/Error.h"

namespace corvina20 {

std::unique_ptr<OpenedItem> OpenModuleItem(IAppModule& module, const std::string& kind,
                                           const std::string& name, const ConnectionPtr& connection) {
  auto opened = std::make_unique<OpenedItem>();
  opened->name = name;
  opened->kind = kind;
  if (kind == "card") module.CreateCardItem(name, opened->item);
  else if (kind == "report") module.CreateReportItem(name, opened->item);
  else if (kind == "activeform") module.CreateActiveFormItem(name, opened->item);
  else
    throw Error(kErrHost, "Corvina20.Items",
                "Tipo di elemento sconosciuto: " + kind + " (card, report, activeform)");
  Form* form = opened->GetForm();
  if (!form) return opened;
  for (const auto& c : form->Controls())
    if (auto* card = dynamic_cast<Card*>(c.get())) {
      opened->card = card;
      break;
    }
  if (opened->card) opened->card->Start(connection);
  form->Load();
  return opened;
}

}  // namespace corvina20
