// Opening items; see OpenedItem.h.
#include "items/OpenedItem.h"

#include "corvina20/Error.h"

namespace corvina20 {
namespace {

// Starts the form's card (the first one it lists) and raises its Load.
void Start(OpenedItem& opened, const ConnectionPtr& connection) {
  Form* form = opened.GetForm();
  for (const auto& c : form->Controls())
    if (auto* card = dynamic_cast<Card*>(c.get())) {
      opened.card = card;
      break;
    }
  if (opened.card) opened.card->Start(connection);
  form->Load();
}

}  // namespace

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
  if (!opened->GetForm()) return opened;
  Start(*opened, connection);
  return opened;
}

std::unique_ptr<OpenedItem> OpenForm(FormPtr form, const std::string& kind,
                                     const ConnectionPtr& connection) {
  auto opened = std::make_unique<OpenedItem>();
  opened->name = form->Name();
  opened->kind = kind;
  opened->item.AttachItemForm(opened->name, form);
  Start(*opened, connection);
  return opened;
}

}  // namespace corvina20
