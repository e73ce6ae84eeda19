// Where message display ends up: the host's dialog. The module's call is
// synchronous; a dialog implementation may block (the web host parks the
// session's UI thread until the browser answers) or answer from a script.
#pragma once

#include <deque>
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
};

// A dialog for tests: each message must be the next expected one (same number,
// or same text for a literal message; same style when one is given) and gets
// the planned answer. An unexpected message is recorded, answered with Cancel
// (the safest button), and reported by Problems().
class ScriptedDialog final : public Dialog {
 public:
  void Expect(std::int32_t number, int answer, std::optional<int> style = std::nullopt);
  void ExpectText(std::string text, int answer, std::optional<int> style = std::nullopt);
  void PlanFolder(std::optional<std::string> folder);

  int Show(const MessageRequest& request) override;
  std::optional<std::string> ChooseFolder(std::string_view title) override;

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
    int answer;
  };
  std::deque<Expectation> expected_;
  std::deque<std::optional<std::string>> folders_;
  std::vector<MessageRequest> shown_;
  std::vector<std::string> problems_;
};

}  // namespace corvina20
