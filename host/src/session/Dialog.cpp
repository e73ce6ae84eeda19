// The scripted dialog of tests.
#include "session/Dialog.h"

#include <fmt/format.h>

#include "corvina20/Form.h"

namespace corvina20 {
namespace {

std::string Describe(const MessageRequest& r) {
  return fmt::format("{} (stile {}): \"{}\"", r.number ? std::to_string(*r.number) : "testo",
                     r.style, r.text);
}

}  // namespace

Dialog::~Dialog() = default;

void Dialog::ShowForm(Form&) {}

void ScriptedDialog::ExpectForm(std::string form, std::function<void(Form&)> user) {
  Expectation e;
  e.form = std::move(form);
  e.user = std::move(user);
  expected_.push_back(std::move(e));
}

void ScriptedDialog::ShowForm(Form& form) {
  if (expected_.empty() || expected_.front().form.empty()) {
    problems_.push_back("maschera modale inattesa " + form.Name());
    return;
  }
  Expectation e = expected_.front();
  expected_.pop_front();
  if (e.form != form.Name()) {
    problems_.push_back("attesa la maschera modale " + e.form + ", mostrata " + form.Name());
    return;
  }
  if (e.user) e.user(form);
}

void ScriptedDialog::Expect(std::int32_t number, int answer, std::optional<int> style) {
  expected_.push_back({number, "", style, answer, "", {}});
}

void ScriptedDialog::ExpectText(std::string text, int answer, std::optional<int> style) {
  expected_.push_back({std::nullopt, std::move(text), style, answer, "", {}});
}

void ScriptedDialog::PlanFolder(std::optional<std::string> folder) {
  folders_.push_back(std::move(folder));
}

int ScriptedDialog::Show(const MessageRequest& request) {
  shown_.push_back(request);
  if (expected_.empty() || !expected_.front().form.empty()) {
    problems_.push_back("messaggio inatteso " + Describe(request));
    return kAnswerCancel;
  }
  Expectation e = expected_.front();
  expected_.pop_front();
  bool same = e.number ? request.number == e.number : (!request.number && request.text == e.text);
  if (!same || (e.style && *e.style != request.style)) {
    problems_.push_back(fmt::format("atteso {} (stile {}), mostrato {}",
                                    e.number ? std::to_string(*e.number) : "\"" + e.text + "\"",
                                    e.style ? std::to_string(*e.style) : "qualsiasi",
                                    Describe(request)));
  }
  return e.answer;
}

std::optional<std::string> ScriptedDialog::ChooseFolder(std::string_view title) {
  if (folders_.empty()) {
    problems_.push_back("scelta della cartella inattesa: " + std::string(title));
    return std::nullopt;
  }
  auto f = folders_.front();
  folders_.pop_front();
  return f;
}

std::string ScriptedDialog::Problems() const {
  std::string out;
  for (const auto& p : problems_) out += p + "\n";
  for (const auto& e : expected_)
    out += !e.form.empty() ? "maschera modale attesa e mai mostrata: " + e.form + "\n"
                           : "messaggio atteso e mai mostrato: " +
                                 (e.number ? std::to_string(*e.number) : "\"" + e.text + "\"") + "\n";
  return out;
}

}  // namespace corvina20
