// HostSession: the session object behind the module's module-wide reference.
#include "session/HostSession.h"

#include <ctime>
#include <iostream>

#include "corvina20/Error.h"
#include "corvina20/MervoStatus.h"
#include "session/ContactConversion.h"

namespace corvina20 {

DateTime Today() {
  std::time_t now = std::time(nullptr);
  std::tm local{};
  localtime_r(&now, &local);
  return DateTime::FromParts(local.tm_year + 1900, local.tm_mon + 1, local.tm_mday);
}

std::string FillPlaceholders(std::string_view text, const std::vector<std::string>& args) {
  std::string out(text);
  std::size_t from = 0;
  for (const std::string& arg : args) {
    std::size_t at = out.find("%s", from);
    if (at == std::string::npos) break;
    out.replace(at, 2, arg);
    from = at + arg.size();
  }
  return out;
}

HostSession::HostSession(ConnectionPtr connection, std::shared_ptr<Dialog> dialog,
                         SessionOptions options)
    : connection_(std::move(connection)),
      dialog_(std::move(dialog)),
      options_(std::move(options)),
      workingDate_(options_.workingDate.serial == 0 ? Today() : options_.workingDate) {}

HostParameters HostSession::Parameters() { return HostParameters(connection_, workingDate_); }

std::string HostSession::TranslateText(std::string_view text,
                                       const std::vector<std::string>& args) {
  // Italian is the reference language: the dictionary's phrase, filled.
  std::string phrase = MervoStatus().TranslateFromDict(text, "", "", "", "", "");
  return FillPlaceholders(phrase, args);
}

int HostSession::ShowMessage(const MessageRequest& request) { return dialog_->Show(request); }

void HostSession::ShowModalForm(const FormPtr& form) {
  if (!form) throw Error(kErrHost, "Corvina20.Session", "Nessuna maschera da mostrare");
  for (const Form* shown : modals_)
    if (shown == form.get())
      throw Error(kErrHost, "Corvina20.Session", "La maschera " + form->Name() + " è già aperta");
  form->BeginModal();
  modals_.push_back(form.get());
  struct Pop {
    std::vector<const Form*>& list;
    ~Pop() { list.pop_back(); }
  } pop{modals_};
  try {
    std::unique_ptr<OpenedItem> opened = OpenForm(form, "modal", connection_);
    if (options_.showModalForm) options_.showModalForm(std::move(opened));
    else dialog_->ShowForm(*form);
  } catch (...) {
    form->CloseModal();  // an error while showing it: the form is gone, unconfirmed
    throw;
  }
  // Still open: the user closed its window, or nobody will ever act on it
  // (the session ended, the script ran out): closed without confirmation.
  form->CloseModal();
}

std::string HostSession::DocumentPath() {
  return options_.documentPath.empty() ? DataDirectory() + "/models" : options_.documentPath;
}

void HostSession::OpenItem(std::string_view itemName, const std::vector<Variant>& args) {
  if (options_.openItem) {
    options_.openItem(itemName, args);
    return;
  }
  std::clog << "corvina: apertura richiesta dell'elemento " << itemName << "\n";
}

void HostSession::Notify(std::string_view event, const std::vector<Variant>& args) {
  std::string entry(event);
  for (const Variant& a : args) entry += " " + a.Describe();
  notifications_.push_back(std::move(entry));
  if (options_.notify) options_.notify(event, args);
}

void HostSession::ConvertContactToCustomer(std::int32_t idAnagrafica, bool /*jobCosting*/,
                                           bool /*quotes*/) {
  // The party keeps its key: its quotations and job-costing rows follow it
  // as they are, so the two flags ask nothing more of this host.
  corvina20::ConvertContactToCustomer(connection_, Parameters(), workingDate_, idAnagrafica);
}

void HostSession::SetPrintDefault(std::string_view key, const std::vector<Variant>& values) {
  printDefaults_[std::string(key)] = values;
}

std::vector<Variant> HostSession::PrintDefault(std::string_view key) const {
  auto it = printDefaults_.find(key);
  return it == printDefaults_.end() ? std::vector<Variant>{} : it->second;
}

std::optional<std::string> HostSession::BrowseForFolder(std::string_view title) {
  return dialog_->ChooseFolder(title);
}

}  // namespace corvina20
