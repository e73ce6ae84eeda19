// Where message display ends up: the host's dialog. The module's call is
// synchronous; a dialog implementation may block (the web host parks the
// session's UI thread until the browser answers) or answer from a script.
// Modal forms end up here too when the session has no workspace to show
// them in (the tests' sessions).
#pragma once

#include <deque>
#include <functional>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "corvina20/Session.h"

namespace corvina20 {

class Dialog {
 public:
  virtual ~Dialog();
  // Shows the message and returns the button pressed.
  virtual int Show(const MessageRequest& request) = 0;
  // The folder the user picked, nullopt when cancelled.
  virtual std::optional<std::string> ChooseFolder(std::string_view title) = 0;
  // Shows `form` modally (already loaded) and returns when the user is done
  // with it; a form still open afterwards is closed unconfirmed by the
  // session. This default shows nothing: the form closes at once, as if the
  // user had closed its window.
  virtual void ShowForm(Form& form);
};

// A dialog for tests: each message must be the next expected one (same number,
// or same text for a literal message; same style when one is given) and gets
// the planned answer. An unexpected message is recorded, answered with Cancel
// (the safest button), and reported by Problems(). Modal forms take their
// turn in the same order: a form planned with ExpectForm is handed to its
// planned user, who types and clicks on it as a person would.
class ScriptedDialog final : public Dialog {
 public:
  void Expect(std::int32_t number, int answer, std::optional<int> style = std::nullopt);
  void ExpectText(std::string text, int answer, std::optional<int> style = std::nullopt);
  void PlanFolder(std::optional<std::string> folder);
  // The next thing shown must be the modal form named `form`; `user` then
  // acts on it (Type, Press…). Left open by `user` (or with no user), the
  // form counts as closed by its window, unconfirmed. An unexpected form is
  // recorded and closed the same way.
  void ExpectForm(std::string form, std::function<void(Form&)> user = {});

  int Show(const MessageRequest& request) override;
  std::optional<std::string> ChooseFolder(std::string_view title) override;
  void ShowForm(Form& form) override;

  // Every message shown, in order.
  const std::vector<MessageRequest>& Shown() const { return shown_; }
  // "" when every message was expected and every expectation met; otherwise a
  // readable list of what went wrong.
  std::string Problems() const;

 private:
  struct Expectation {
    std::optional<std::int32_t> number;
    std::string text;
    std::optional<int> style;
    int answer = kAnswerCancel;
    std::string form;                   // set for a modal form
    std::function<void(Form&)> user;
  };
  std::deque<Expectation> expected_;
  std::deque<std::optional<std::string>> folders_;
  std::vector<MessageRequest> shown_;
  std::vector<std::string> problems_;
};

}  // namespace corvina20
