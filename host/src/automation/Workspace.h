// One user's workspace: a session on the database, the module loaded through
// IAppModule, and the forms the user opened. It carries out the user's actions
// given as JSON objects (open an item, press a card button, type into a
// control, edit a grid, choose a popup item, answer dialogs, read the state)
// exactly as a person's actions would run, and reports every dialog and error
// on the way. `corvina script` and the web host's API both drive it, so the two
// cannot drift apart.
//
// A modal form the module shows (Session::ShowModalForm) becomes an open form
// of the workspace while the action that showed it stays suspended inside the
// module's call: the workspace asks its driver's modal loop for the user's
// next actions, which run (through Perform, nested) on the modal form until
// it closes; then the module's call returns and the suspended action goes on.
// The script runner's loop reads the next lines, the web host's takes the
// next requests on the session's UI thread. An item a form asks the host to
// open (Session::OpenItem) becomes a new open form the same way. Not for:
// transport (files, HTTP) or threads.
#pragma once

#include <deque>
#include <functional>
#include <map>
#include <memory>
#include <string>
#include <vector>

#include <nlohmann/json_fwd.hpp>

#include "corvina20/Error.h"
#include "corvina20/Form.h"
#include "items/ModuleLoader.h"
#include "items/OpenedItem.h"
#include "session/Dialog.h"
#include "session/HostSession.h"

namespace corvina20 {

// Where the workspace reports dialogs and errors as they happen.
using Emit = std::function<void(const nlohmann::ordered_json& line)>;

// Runs the user's next action (through Workspace::Perform, reporting its
// result as the driver does) while the modal form `modal` (its "opened"
// line) waits; returns false when no action will ever come (the script ran
// out, the session is ending), which closes the form unconfirmed.
using ModalLoop = std::function<bool(const nlohmann::ordered_json& modal)>;

// A dialog answered from a queue of planned answers, else a default answer;
// every message shown is reported through the workspace's emitter.
class QueuedDialog final : public Dialog {
 public:
  explicit QueuedDialog(int defaultAnswer) : defaultAnswer_(defaultAnswer) {}
  void Queue(const std::vector<int>& answers);
  void SetEmitter(Emit emit) { emit_ = std::move(emit); }
  int Show(const MessageRequest& request) override;
  std::optional<std::string> ChooseFolder(std::string_view title) override;

 private:
  std::deque<int> answers_;
  int defaultAnswer_;
  Emit emit_;
};

class Workspace {
 public:
  // Opens the module on `connection` with `dialog` for message display.
  Workspace(ConnectionPtr connection, std::shared_ptr<Dialog> dialog);
  ~Workspace();

  // Carries out one action; dialogs and errors raised on the way go to `emit`
  // before the action's own result, which is returned. Throws
  // corvina20::Error for an action that cannot be carried out (unknown
  // control, wrong card mode, malformed action…) after reporting nothing.
  // A modal form shown on the way is reported by the line
  // {"opened":…,"form":…,"formId":N,"modal":true} and driven by the modal
  // loop; when it closes, {"closed":N,"modal":true,"opener":M} follows. While
  // it is open, actions go to it: an action for another form (or an "open")
  // is refused; "state", "answers", "param" and "query" stay allowed.
  nlohmann::ordered_json Perform(const nlohmann::ordered_json& action, const Emit& emit);

  // Who drives modal forms. Without one, a modal form closes at once,
  // unconfirmed (after its opened and closed lines).
  void SetModalLoop(ModalLoop loop) { modalLoop_ = std::move(loop); }

  // Cancels every open card that is in new or edit mode (a session that
  // ends keeps nothing half-typed).
  void CancelEdits();

  // The current form's description and values (what {"state":true} prints).
  nlohmann::ordered_json State() const;
  HostSession& Session() { return *session_; }
  // The id of the form opened last (0 when none); actions name a form with
  // "formId", else they go to the form opened last.
  int LastFormId() const { return lastId_; }

 private:
  OpenedItem& Current() const;
  OpenedItem& Select(const nlohmann::ordered_json& action);
  nlohmann::ordered_json Open(const nlohmann::ordered_json& action);
  nlohmann::ordered_json Press(const std::string& button);
  nlohmann::ordered_json Grid(const nlohmann::ordered_json& action);
  // {"list":{…}}: a page of the current card's record list (docs/script.md).
  nlohmann::ordered_json List(const nlohmann::ordered_json& request);
  // Session::ShowModalForm as the workspace serves it (see the top).
  void ShowModal(std::unique_ptr<OpenedItem> opened);
  // Session::OpenItem as the workspace serves it: an item of the module
  // opens as a new form of the workspace (a card loaded on the first
  // argument, when given), reported by the line {"opened":…,"form":…,
  // "formId":N,"key":…} like an "open" (key only for a card); a host item, or one nobody serves, is told
  // to the user as a host message "«caption» non è installato in questo host.".
  void OpenRequested(std::string_view name, const std::vector<Variant>& args);
  // Session::Notify as the workspace serves it: "Refresh" with an item name
  // shows again, from the database, the record of every open form of that
  // item whose card is browsing one; other notices are only recorded.
  void Notified(std::string_view event, const std::vector<Variant>& args);

  std::shared_ptr<HostSession> session_;
  std::unique_ptr<LoadedModule> module_;
  std::map<int, std::unique_ptr<OpenedItem>> forms_;
  int lastId_ = 0;     // the form opened last
  int nextId_ = 1;
  int selected_ = 0;   // the form the action in progress works on
  std::vector<int> modals_;  // the modal forms open, innermost last
  ModalLoop modalLoop_;
  Emit emit_;          // the emitter of the action in progress
};

// JSON from a Variant (dates as "yyyy-mm-dd[ hh:mm:ss]", amounts as numbers)
// and back (strings stay text: the control converts what is typed).
nlohmann::ordered_json ToJson(const Variant& value);
Variant FromJson(const nlohmann::ordered_json& value);

// The error line {"error":{"number":…,"source":"…","description":"…"}}.
nlohmann::ordered_json ErrorLine(const Error& error);

}  // namespace corvina20
