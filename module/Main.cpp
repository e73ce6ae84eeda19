// Main's IAppModule operations, each under its own error trap, and the
// library's exported entry points.
#include "module/Main.h"

#include "module/ItemFactory.h"
#include "module/modErrorHandling.h"
#include "module/modMainModule.h"

namespace vantor20 {

void Main::Init(SessionPtr& application) {
  // Kept as given, nothing checked: the host owns the session.
  objApplication = application;
}

void Main::CreateCardItem(std::string_view itemName, corvina20::CardItem& item) {
  try {
    FormPtr form = CreateCardForm(itemName);
    if (!form) return;  // unknown name: the item is left alone
    item.AttachItemForm(itemName, form);
    // `form` goes out of scope here: the item holds the only reference.
  } catch (...) {
    RaiseError(-1, "CreateCardItem");
  }
}

void Main::CreateReportItem(std::string_view itemName, corvina20::ReportItem& item) {
  try {
    FormPtr form = CreateReportForm(itemName);
    if (!form) return;
    item.AttachItemForm(itemName, form);
  } catch (...) {
    RaiseError(-1, "CreateReportItem");
  }
}

void Main::CreateActiveFormItem(std::string_view itemName, corvina20::ActiveFormItem& item) {
  try {
    // Unlike cards and reports, an unknown name still reaches the item, with
    // an empty form: the host decides what an item without a form shows.
    FormPtr form = CreateActiveForm(itemName);
    item.AttachItemForm(itemName, form);
  } catch (...) {
    RaiseError(-1, "CreateActiveFormItem");
  }
}

void Main::CreateBatchItem(std::string_view, corvina20::BatchItem&) {
  // The module offers no batch items.
}

}  // namespace vantor20

extern "C" {

__attribute__((visibility("default"))) corvina20::IAppModule* CorvinaCreateModule() {
  return new vantor20::Main();
}

__attribute__((visibility("default"))) void CorvinaDestroyModule(corvina20::IAppModule* module) {
  delete module;
}
}
