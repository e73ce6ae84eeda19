// The end of a card's checks before an action: the collected error list is
// reported as error 235 at the handler's location (the action stops), and
// the collected warning list is put to the user with question 386 (only Yes
// goes on). Every card with check lists ends them here, the same way.
#pragma once

#include <string>
#include <string_view>

namespace vantor20 {

// The error that stops an action whose checks found errors.
inline constexpr int kErrCheckList = 235;
// The question that puts the warnings to the user.
inline constexpr int kQuestionWarnings = 386;

// Shows error 235 with `errors` as its description and a trace whose first
// procedure line is `location` ("AnagraficaClienti.crdAnagraficaClienti_
// ActionBefore"). The error is raised with `source` (the application name
// unless a card's checks name their own procedure, as the agent card's
// "ControlliOK" does), so the trace's head names it. Never raises.
void ReportErrorList(std::string_view location, const std::string& errors,
                     std::string_view source = {});

// Errors first: a non-empty `errors` is reported (with `source`, as above)
// and the answer is false. Then a non-empty `warnings` is asked with
// `question` (386 unless a card asks its own): true only on Yes. Both
// empty: true.
bool ConfirmCheckLists(std::string_view location, const std::string& errors,
                       const std::string& warnings, int question = kQuestionWarnings,
                       std::string_view source = {});

}  // namespace vantor20
