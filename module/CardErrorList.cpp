// Reporting a card's check lists.
#include "module/CardErrorList.h"

#include "module/Host.h"
#include "module/modCardError.h"
#include "module/modMainModule.h"

namespace vantor20 {

void ReportErrorList(std::string_view location, const std::string& errors,
                     std::string_view source) {
  try {
    // A fresh error: the trace's head names the application (or the
    // checks' own procedure), the next line the handler.
    throw corvina20::Error(kErrCheckList, std::string(source.empty() ? kAppName : source), errors);
  } catch (...) {
    CaptureCardError(location);
    ShowCardError();
  }
}

bool ConfirmCheckLists(std::string_view location, const std::string& errors,
                       const std::string& warnings, int question, std::string_view source) {
  if (!errors.empty()) {
    ReportErrorList(location, errors, source);
    return false;
  }
  if (warnings.empty()) return true;
  return AskMessage(question, warnings) == corvina20::kAnswerYes;
}

}  // namespace vantor20
