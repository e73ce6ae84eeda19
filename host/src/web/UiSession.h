// One browser session's user-interface thread. The module's events run on
// it one at a time, as on a desktop host's UI thread. When the module shows a
// message the thread parks until the browser answers: the HTTP request that
// started the action returns with the pending dialog, and the request that
// carries the answer resumes the thread and returns with the action's result
// (or the next dialog). A modal form the module shows parks the thread the
// same way, in a nested loop that takes the session's next actions (those on
// the modal form) one at a time: the request that showed it returns with the
// modal form, each later request returns while it stays open, and the one
// that closes it returns with the suspended action's result. Closing the
// session (logout, expiry) answers nothing: a parked dialog gets the answer
// that changes nothing and a modal form closes unconfirmed, on an abandoned
// connection, so a save waiting on either writes nothing; every card still in
// new or edit mode is cancelled before the thread ends.
#pragma once

#include <chrono>
#include <condition_variable>
#include <deque>
#include <functional>
#include <memory>
#include <mutex>
#include <optional>
#include <string>
#include <thread>

#include <nlohmann/json.hpp>

#include "corvina20/Connection.h"

namespace corvina20::web {

// What an action (or an answer) came to when the request returns.
struct Outcome {
  nlohmann::ordered_json events = nlohmann::ordered_json::array();  // dialogs answered, errors shown
  std::optional<nlohmann::ordered_json> result;   // the action's result, when it finished
  std::optional<nlohmann::ordered_json> dialog;   // the dialog waiting for an answer
  std::optional<nlohmann::ordered_json> modal;    // the modal form waiting: its "opened" line
  std::optional<nlohmann::ordered_json> error;    // the action failed: {"number","source","description"}
};

class UiSession {
 public:
  // Opens a connection to `database` (its backend borrowed from the
  // server's pool while an action runs) and the module on its thread.
  // Throws corvina20::Error when the database or the module cannot be opened.
  UiSession(std::string user, const std::string& database);
  ~UiSession();  // closes (see Close)
  UiSession(const UiSession&) = delete;
  UiSession& operator=(const UiSession&) = delete;

  const std::string& User() const { return user_; }

  // Runs an action (the workspace's JSON actions) on the UI thread and waits
  // until it finishes, parks on a dialog or leaves a modal form waiting.
  // While a dialog waits, or an action runs, another action is refused (the
  // Outcome carries an error); while a modal form waits, the action runs
  // (the workspace refuses those for other forms).
  Outcome Submit(const nlohmann::ordered_json& action);
  // Answers the waiting dialog and waits as Submit does. With no dialog
  // waiting, or a button the dialog does not show (its style's buttons), the
  // Outcome carries an error and the dialog, if any, keeps waiting.
  Outcome Answer(int button);
  // The dialog waiting for an answer, if any.
  std::optional<nlohmann::ordered_json> PendingDialog();
  // The modal form waiting for actions (its "opened" line), if any.
  std::optional<nlohmann::ordered_json> PendingModal();

  // Ends the session: aborts a parked dialog, cancels open card edits, stops
  // the thread. Idempotent, and safe to call from several threads at once
  // (each returns when the thread has ended).
  void Close();

  // Time of the last request, for expiry.
  std::chrono::steady_clock::time_point LastUse();

 private:
  struct Impl;
  std::unique_ptr<Impl> impl_;
  std::string user_;
};

}  // namespace corvina20::web
