// The host's implementation of the session the module receives: one database
// connection, a dialog for message display, the working date, the document
// folder and hooks for opening items and showing modal forms. The command line, the web host and the
// tests each make one per user session.
#pragma once

#include <functional>
#include <map>
#include <memory>
#include <string>
#include <vector>

#include "corvina20/Session.h"
#include "items/OpenedItem.h"
#include "session/Dialog.h"

namespace corvina20 {

struct SessionOptions {
  DateTime workingDate;      // serial 0 means today
  std::string documentPath;  // "" means <data>/models
  // Called for OpenItem; when unset the request is only logged.
  std::function<void(std::string_view, const std::vector<Variant>&)> openItem;
  // Called for ShowModalForm with the form opened (card started, loaded):
  // shows it and returns once it is closed or will never be. When unset the
  // dialog shows it (Dialog::ShowForm).
  std::function<void(std::unique_ptr<OpenedItem>)> showModalForm;
  // Called for Notify after the notification is recorded; when unset it is
  // only recorded.
  std::function<void(std::string_view, const std::vector<Variant>&)> notify;
};

class HostSession final : public Session {
 public:
  // REQUIRES: connection and dialog not null.
  HostSession(ConnectionPtr connection, std::shared_ptr<Dialog> dialog,
              SessionOptions options = {});

  ConnectionPtr GetConnection() override { return connection_; }
  HostParameters Parameters() override;
  DateTime WorkingDate() override { return workingDate_; }
  std::string TranslateText(std::string_view text, const std::vector<std::string>& args) override;
  int ShowMessage(const MessageRequest& request) override;
  void ShowModalForm(const FormPtr& form) override;
  std::string DocumentPath() override;
  void OpenItem(std::string_view itemName, const std::vector<Variant>& args) override;
  std::optional<std::string> BrowseForFolder(std::string_view title) override;
  void Notify(std::string_view event, const std::vector<Variant>& args) override;
  void ConvertContactToCustomer(std::int32_t idAnagrafica, bool jobCosting, bool quotes) override;
  void SetPrintDefault(std::string_view key, const std::vector<Variant>& values) override;
  // The print default `key` as last set; empty when never set.
  std::vector<Variant> PrintDefault(std::string_view key) const;
  // The notifications received, oldest first ("BeginUpdate", "Refresh AnagraficaContatti").
  const std::vector<std::string>& Notifications() const { return notifications_; }

  void SetWorkingDate(DateTime date) { workingDate_ = date; }
  Dialog& GetDialog() { return *dialog_; }

 private:
  ConnectionPtr connection_;
  std::shared_ptr<Dialog> dialog_;
  SessionOptions options_;
  std::vector<const Form*> modals_;  // the modal forms shown now, innermost last
  DateTime workingDate_;
  std::vector<std::string> notifications_;
  std::map<std::string, std::vector<Variant>, std::less<>> printDefaults_;
};

// Today's date at midnight, local time.
DateTime Today();

// Fills each "%s" of `text` in order with `args`; surplus args are ignored,
// missing ones leave "%s".
std::string FillPlaceholders(std::string_view text, const std::vector<std::string>& args);

}  // namespace corvina20
